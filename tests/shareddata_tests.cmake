nox_pure_tests(LABEL shareddata PREFIX SharedData SOURCES shareddata_test.cpp LIBS nox_data)
# The unit's start and stop work on a real system, under Wine.
nox_win_tests(LABEL shareddata PREFIX SharedDataWin SOURCES shareddata_win_test.cpp LIBS nox_data)
