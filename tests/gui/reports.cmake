# The report preview.
tandrill_add_test(tst_reportpreview SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_reportpreview.cpp
    LIBS tandrill_gui_reports GUI)
