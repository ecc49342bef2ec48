nox_pure_tests(LABEL catalogue PREFIX Catalogue SOURCES catalogue_test.cpp LIBS nox_data)
# The registry object and the catalogue's look-ups, against the real registry under Wine.
nox_win_tests(LABEL catalogue PREFIX CatalogueRegistry SOURCES registry_test.cpp LIBS nox_data)
