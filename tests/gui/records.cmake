# The record-screen framework, proven on the crew screen.
tandrill_add_test(tst_crewscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_crewscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
