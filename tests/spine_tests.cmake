nox_pure_tests(LABEL spine-rules PREFIX SpineRules SOURCES spine_rules_test.cpp LIBS nox_host nox_package_rules
               EXTRA_LABELS spine)
# The frame and the package end to end, with the stand-in companion program.
nox_win_tests(LABEL spine PREFIX SpineFrame SOURCES spine_test.cpp LIBS nox_host_win version)
# The page at another system density.
nox_win_tests(LABEL spine NAME spine-dpi PREFIX SpineDpi EXTRA_LABELS ui ALONE)
if(WIN32)
  add_dependencies(win_tests WNOXD13_64 NOXPlugIn)
  target_compile_definitions(win_tests PRIVATE
    NOX_PACKAGE_DLL="$<TARGET_FILE:WNOXD13_64>" NOX_COMPANION_EXE="$<TARGET_FILE:NOXPlugIn>")
  # A program that starts and ends without a window, for a page that docks a stand-in.
  set_source_files_properties(spine_test.cpp PROPERTIES
    COMPILE_DEFINITIONS NOX_RECORDARGS_EXE="$<TARGET_FILE:recordargs>")
endif()
