nox_win_tests(LABEL inifile PREFIX IniFile SOURCES inifile_test.cpp LIBS nox_rtl)
# The in-memory INI file: pure, natively and under Wine.
nox_pure_tests(LABEL inifile PREFIX IniFileMem SOURCES meminifile_test.cpp LIBS nox_rtl)
