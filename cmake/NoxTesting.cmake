# Test registration shared by both builds.
#
# nox_pure_tests(LABEL <family> PREFIX <Suite> SOURCES <files...> LIBS <libs...>)
#   Tests of pure routines, from one source for both builds. Natively each family gets its
#   own executable. Under Wine every family goes into the one executable pure_tests.exe
#   (a Wine process start costs seconds) and ctest selects the family by its suite-name
#   prefix: every test suite of the family starts with <Suite> (FieldsRead, FieldsWrite...).
#   Optional: NAME <name> for a second registration of a family (default: the label), and
#   EXTRA_LABELS <labels...> for labels beside the family's (hostile, ...).
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${NOX_GTEST_DIR} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)

if(WIN32)
  add_executable(pure_tests)
  target_link_libraries(pure_tests PRIVATE GTest::gmock_main)
endif()

function(nox_pure_tests)
  cmake_parse_arguments(A "" "LABEL;PREFIX;NAME" "SOURCES;LIBS;EXTRA_LABELS" ${ARGN})
  if(NOT A_NAME)
    set(A_NAME ${A_LABEL})
  endif()
  if(WIN32)
    target_sources(pure_tests PRIVATE ${A_SOURCES})
    target_link_libraries(pure_tests PRIVATE ${A_LIBS})
    add_test(NAME win.${A_NAME} COMMAND pure_tests --gtest_filter=${A_PREFIX}*)
    set_tests_properties(win.${A_NAME} PROPERTIES LABELS "${A_LABEL};${A_EXTRA_LABELS};windows")
  else()
    add_executable(${A_NAME}_test ${A_SOURCES})
    target_link_libraries(${A_NAME}_test PRIVATE ${A_LIBS} GTest::gmock_main)
    add_test(NAME ${A_NAME} COMMAND ${A_NAME}_test)
    set_tests_properties(${A_NAME} PROPERTIES LABELS "${A_LABEL};${A_EXTRA_LABELS};native")
  endif()
endfunction()

# nox_win_tests(LABEL <family> PREFIX <Suite> SOURCES <files...> LIBS <libs...>)
#   Tests that need Win32 (windows, messages, processes, registry): windows build only, all
#   in the one executable win_tests.exe, selected by suite prefix as above; NAME and
#   EXTRA_LABELS as above. LOCKS names what the tests need to themselves while they run:
#   `desktop` for the clipboard and the keyboard focus, which every process shares. ALONE
#   runs them with no other test beside them (they change what every process sees, such as
#   the system's density); SOURCES may then be left out for tests of a source already
#   registered under another prefix.
function(nox_win_tests)
  cmake_parse_arguments(A "ALONE" "LABEL;PREFIX;NAME" "SOURCES;LIBS;EXTRA_LABELS;LOCKS" ${ARGN})
  if(NOT A_NAME)
    set(A_NAME ${A_LABEL})
  endif()
  if(WIN32)
    if(NOT TARGET win_tests)
      add_executable(win_tests ${PROJECT_SOURCE_DIR}/tests/unbuffered_output.cpp
                               ${PROJECT_SOURCE_DIR}/tests/win_tests.rc)
      target_link_libraries(win_tests PRIVATE GTest::gmock_main)
      # Beside designide.dll, which holds the IDE's globals for every module of a test.
      set_target_properties(win_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
    endif()
    target_sources(win_tests PRIVATE ${A_SOURCES})
    target_link_libraries(win_tests PRIVATE ${A_LIBS})
    add_test(NAME win32.${A_NAME} COMMAND win_tests --gtest_filter=${A_PREFIX}*)
    set_tests_properties(win32.${A_NAME} PROPERTIES LABELS "${A_LABEL};${A_EXTRA_LABELS};windows")
    if(A_LOCKS)
      set_tests_properties(win32.${A_NAME} PROPERTIES RESOURCE_LOCK "${A_LOCKS}")
    endif()
    if(A_ALONE)
      set_tests_properties(win32.${A_NAME} PROPERTIES RUN_SERIAL TRUE)
    endif()
  endif()
endfunction()
