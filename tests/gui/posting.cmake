# The date confirmation asked while work orders are posted.
tandrill_add_test(tst_servicedateconfirmationscreen
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_servicedateconfirmationscreen.cpp
    LIBS tandrill_gui_workorder GUI BOTH_ENGINES)
