nox_pure_tests(LABEL uihelpers PREFIX UiHelpers SOURCES uihelpers_test.cpp LIBS nox_tools)
# Lists, grids, headers, captions, popups and the system menu on real windows, under Wine.
nox_win_tests(LABEL uihelpers PREFIX UiHelpersWin SOURCES uihelpers_win_test.cpp LIBS nox_tools
              LOCKS desktop)
