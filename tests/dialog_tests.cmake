nox_pure_tests(LABEL dialog-plan PREFIX DialogPlan SOURCES dialog_plan_test.cpp LIBS nox_dialog
               EXTRA_LABELS dialog)
# The dialog itself, driven by window messages under Wine.
nox_win_tests(LABEL dialog PREFIX DialogTest SOURCES dialog_test.cpp LIBS nox_dialog LOCKS desktop)
