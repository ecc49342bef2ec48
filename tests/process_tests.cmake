nox_pure_tests(LABEL process PREFIX Process SOURCES process_test.cpp LIBS nox_tools)
# Starting programs, shell links and file types under Wine, with recordargs.exe as the
# program that is started.
nox_win_tests(LABEL process PREFIX ProcessWin SOURCES process_win_test.cpp LIBS nox_tools)
if(WIN32)
  add_subdirectory(${CMAKE_CURRENT_SOURCE_DIR}/recordargs ${CMAKE_BINARY_DIR}/recordargs)
  add_dependencies(win_tests recordargs)
  # On the one source that needs it: a definition for all of win_tests rebuilds every suite.
  set_source_files_properties(process_win_test.cpp PROPERTIES
    COMPILE_DEFINITIONS NOX_RECORDARGS_EXE="$<TARGET_FILE:recordargs>")
endif()
