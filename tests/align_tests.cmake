nox_pure_tests(LABEL align PREFIX Align SOURCES align_test.cpp LIBS nox_ui)
