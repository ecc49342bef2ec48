nox_pure_tests(LABEL streaming PREFIX Streaming SOURCES streaming_test.cpp LIBS nox_tools)
# Pictures, resources, components and printers on the system, under Wine.
nox_win_tests(LABEL streaming PREFIX StreamingWin SOURCES streaming_win_test.cpp LIBS nox_tools)
