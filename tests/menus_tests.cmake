nox_win_tests(LABEL menus PREFIX Menus SOURCES menus_test.cpp LIBS nox_ui LOCKS desktop)
