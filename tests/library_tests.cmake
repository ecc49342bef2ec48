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
