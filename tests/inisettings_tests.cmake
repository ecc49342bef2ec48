nox_pure_tests(LABEL inisettings PREFIX IniSettings SOURCES inisettings_test.cpp LIBS nox_tools)
# Values, lists, probes and real forms saved and restored, under Wine.
nox_win_tests(LABEL inisettings PREFIX IniSettingsWin SOURCES inisettings_win_test.cpp LIBS nox_tools)
# Records as somebody may have edited them, through the reader and the restoring rules.
nox_pure_tests(LABEL inisettings NAME inisettings-hostile PREFIX IniSettingsHostile
               EXTRA_LABELS hostile SOURCES inisettings_hostile_test.cpp LIBS nox_tools)
# Texts of every script through every routine that writes an INI file.
nox_win_tests(LABEL inisettings NAME inisettings-unicode PREFIX UnicodeIni
              EXTRA_LABELS unicode inifile SOURCES unicode_ini_win_test.cpp LIBS nox_tools)
