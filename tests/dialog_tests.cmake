nox_pure_tests(LABEL dialog-plan PREFIX DialogPlan SOURCES dialog_plan_test.cpp LIBS nox_dialog
               EXTRA_LABELS dialog)
# The dialog itself, driven by window messages under Wine.
nox_win_tests(LABEL dialog PREFIX DialogTest SOURCES dialog_test.cpp LIBS nox_dialog LOCKS desktop)
# What screen readers learn of it.
nox_win_tests(LABEL a11y PREFIX DialogAccess SOURCES dialog_access_test.cpp
              LIBS nox_dialog oleacc oleaut32 LOCKS desktop)
# At another system density: it sets the density for the processes it starts, so it runs
# alone.
nox_win_tests(LABEL dialog NAME dialog-dpi PREFIX DialogDpi SOURCES dialog_dpi_test.cpp
              LIBS nox_dialog EXTRA_LABELS ui ALONE)
