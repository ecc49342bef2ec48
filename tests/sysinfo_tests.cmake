nox_pure_tests(LABEL sysinfo PREFIX SysInfo SOURCES sysinfo_test.cpp LIBS nox_tools)
nox_win_tests(LABEL sysinfo PREFIX SysInfoWin SOURCES sysinfo_win_test.cpp LIBS nox_tools)
