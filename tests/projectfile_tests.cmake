nox_pure_tests(LABEL projectfile PREFIX ProjectFile SOURCES projectfile_test.cpp LIBS nox_tools)
