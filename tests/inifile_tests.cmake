nox_win_tests(LABEL inifile PREFIX IniFile SOURCES inifile_test.cpp LIBS nox_rtl)
