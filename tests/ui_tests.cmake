nox_win_tests(LABEL ui PREFIX Ui SOURCES ui_test.cpp LIBS nox_ui)
