# Encodings, streams and text file formats: pure and file-only, so both builds.
nox_pure_tests(LABEL encoding PREFIX Encoding SOURCES encoding_test.cpp LIBS nox_tools)
