nox_pure_tests(LABEL streaming PREFIX Streaming SOURCES streaming_test.cpp LIBS nox_tools)
# Pictures, resources, components and printers on the system, under Wine.
nox_win_tests(LABEL streaming PREFIX StreamingWin SOURCES streaming_win_test.cpp LIBS nox_tools)
# Component streams written by someone else, read without the window system.
nox_pure_tests(LABEL streaming NAME streaming-hostile PREFIX StreamingHostile EXTRA_LABELS hostile
               SOURCES streaming_hostile_test.cpp LIBS nox_ui)
# Picture files from hostile bytes: their headers judged without the system, and what the
# loader makes of them under Wine.
nox_pure_tests(LABEL streaming NAME streaming-pictures PREFIX StreamingPictureHeaders
               EXTRA_LABELS hostile SOURCES picture_rules_test.cpp LIBS nox_ui)
nox_win_tests(LABEL streaming NAME streaming-pictures PREFIX StreamingPictureLoading
              EXTRA_LABELS hostile LIBS nox_tools)
nox_win_tests(LABEL streaming NAME streaming-hostile PREFIX StreamingHostileWin EXTRA_LABELS hostile
              SOURCES streaming_hostile_win_test.cpp LIBS nox_tools)
nox_win_tests(LABEL streaming NAME streaming-unicode PREFIX UnicodeStreaming EXTRA_LABELS unicode
              SOURCES unicode_streaming_win_test.cpp LIBS nox_tools)
# Every published property of every streamed class, saved and read back under Wine.
nox_win_tests(LABEL streaming NAME streaming-properties PREFIX StreamingProperties
              SOURCES streaming_properties_win_test.cpp LIBS nox_tools)
