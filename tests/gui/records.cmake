# The record-screen framework, on a test screen of its own, and the crew screen on it.
tandrill_add_test(tst_recordscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_recordscreen.cpp
    LIBS tandrill_gui_core GUI BOTH_ENGINES)
tandrill_add_test(tst_crewscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_crewscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
tandrill_add_test(tst_quickfindscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_quickfindscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
