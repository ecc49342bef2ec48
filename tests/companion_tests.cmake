# The companion program under test is found by its build path.
nox_win_tests(LABEL companion PREFIX Companion SOURCES companion_test.cpp LIBS nox_tools)
if(WIN32)
  target_compile_definitions(win_tests PRIVATE NOX_COMPANION_EXE="$<TARGET_FILE:NOXPlugIn>")
  add_dependencies(win_tests NOXPlugIn)
endif()
