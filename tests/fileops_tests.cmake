nox_pure_tests(LABEL fileops PREFIX FileOps SOURCES fileops_test.cpp LIBS nox_tools)
# Copying, moving, attributes, file times, the clipboard and error texts, under Wine.
nox_win_tests(LABEL fileops PREFIX FileOpsWin SOURCES fileops_win_test.cpp LIBS nox_tools LOCKS desktop)
