nox_pure_tests(LABEL paths PREFIX Paths SOURCES paths_test.cpp LIBS nox_tools)
# The start work and the routines that ask the system, under Wine.
nox_win_tests(LABEL paths PREFIX PathsWin SOURCES paths_win_test.cpp LIBS nox_tools)
