nox_pure_tests(LABEL interapp-rule PREFIX InterappRule SOURCES interapp_rule_test.cpp LIBS nox_tools
               EXTRA_LABELS interapp)
nox_win_tests(LABEL interapp PREFIX InterappWin SOURCES interapp_test.cpp LIBS nox_tools)
