# The development host, run as a program with a small package of the tests' own.
include_guard(GLOBAL)
nox_win_tests(LABEL devhost PREFIX DevHost SOURCES devhost_test.cpp LIBS nox_rtl)
if(WIN32)
  add_library(testpackage SHARED ${CMAKE_CURRENT_LIST_DIR}/testpackage/testpackage.cpp)
  target_link_libraries(testpackage PRIVATE nox_ui designide)
  set_target_properties(testpackage PROPERTIES PREFIX ""
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  add_dependencies(win_tests devhost testpackage)
  target_compile_definitions(win_tests PRIVATE
    NOX_DEVHOST_EXE="$<TARGET_FILE:devhost>" NOX_TEST_PACKAGE="$<TARGET_FILE:testpackage>")
endif()
