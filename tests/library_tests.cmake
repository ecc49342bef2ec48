# The libraries installed and used by a program outside the tree (tests/consumer/).
if(NOT WIN32)
  add_test(NAME library.consumer
           COMMAND ${CMAKE_COMMAND} -DBUILD=${CMAKE_BINARY_DIR}
                   -DSOURCE=${CMAKE_CURRENT_SOURCE_DIR}/consumer
                   -DWORK=${CMAKE_BINARY_DIR}/consumer-test -DCXX=${CMAKE_CXX_COMPILER}
                   "-DFLAGS=${CMAKE_CXX_FLAGS}" "-DLINK_FLAGS=${CMAKE_EXE_LINKER_FLAGS}"
                   -P ${CMAKE_CURRENT_SOURCE_DIR}/consumer/run_consumer.cmake)
  set_tests_properties(library.consumer PROPERTIES LABELS "library;native" TIMEOUT 300)
endif()
if(WIN32)
  string(REPLACE ";" "|" nox_run "${CMAKE_CROSSCOMPILING_EMULATOR}")
  add_test(NAME library.consumer
           COMMAND ${CMAKE_COMMAND} -DBUILD=${CMAKE_BINARY_DIR}
                   -DSOURCE=${CMAKE_CURRENT_SOURCE_DIR}/consumer
                   -DWORK=${CMAKE_BINARY_DIR}/consumer-test -DTOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
                   "-DRUN=${nox_run}" -P ${CMAKE_CURRENT_SOURCE_DIR}/consumer/run_consumer.cmake)
  set_tests_properties(library.consumer PROPERTIES LABELS "library;windows" TIMEOUT 600)
endif()
# The package DLL's export table against what the unit headers mark for export.
nox_win_tests(LABEL library PREFIX LibraryExports SOURCES library_win_test.cpp LIBS nox_rtl)
if(WIN32)
  set_source_files_properties(library_win_test.cpp PROPERTIES
    COMPILE_DEFINITIONS "NOX_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}\"")
  add_dependencies(win_tests WNOXD13_64)
endif()
