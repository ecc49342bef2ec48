nox_pure_tests(LABEL messaging PREFIX Messaging SOURCES messaging_test.cpp LIBS nox_rtl)
