nox_win_tests(LABEL imglist PREFIX ImgList SOURCES imglist_test.cpp LIBS nox_ui)
