# The planted-fault tool (cmake/mutants.py) on a scratch tree of its own: sources restored
# after failed builds, SIGINT and a hard kill, the same seed giving the same faults.
if(NOT WIN32)
  find_program(NOX_PYTHON3 python3 HINTS /usr/bin)
  if(NOX_PYTHON3)
    add_test(NAME mutants COMMAND ${NOX_PYTHON3} ${CMAKE_CURRENT_SOURCE_DIR}/mutants_test.py
                                  ${PROJECT_SOURCE_DIR}/cmake/mutants.py)
    set_tests_properties(mutants PROPERTIES LABELS "mutants;native" TIMEOUT 120)
  endif()
endif()
