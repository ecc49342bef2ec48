nox_pure_tests(LABEL dialog-plan PREFIX DialogPlan SOURCES dialog_plan_test.cpp LIBS nox_dialog)
