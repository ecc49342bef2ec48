nox_pure_tests(LABEL inisettings PREFIX IniSettings SOURCES inisettings_test.cpp LIBS nox_tools)
# Values, lists, probes and real forms saved and restored, under Wine.
nox_win_tests(LABEL inisettings PREFIX IniSettingsWin SOURCES inisettings_win_test.cpp LIBS nox_tools)
