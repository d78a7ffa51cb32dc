# The screens of the work order cycle, wired to their logic.
tandrill_add_test(tst_overdueboardscreen SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_overdueboardscreen.cpp LIBS tandrill_gui_workorder GUI BOTH_ENGINES)
# The History section of the equipment screen.
tandrill_add_test(tst_equipmenthistorysection SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_equipmenthistorysection.cpp LIBS tandrill_gui_master GUI BOTH_ENGINES)
# The question a post asks when a next date has already gone by.
tandrill_add_test(tst_servicedateconfirmationscreen SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_servicedateconfirmationscreen.cpp LIBS tandrill_gui_workorder GUI
    BOTH_ENGINES)
# Tab 1 of the work order screen: recording and posting.
tandrill_add_test(tst_workorderrecordtab SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_workorderrecordtab.cpp LIBS tandrill_gui_workorder GUI BOTH_ENGINES)
# The time dialog of a line.
tandrill_add_test(tst_servicetimescreen SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_servicetimescreen.cpp LIBS tandrill_gui_workorder GUI BOTH_ENGINES)
# frmWorkorder: its filter and the print tab.
tandrill_add_test(tst_workorderscreen SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_workorderscreen.cpp LIBS tandrill_gui_workorder GUI BOTH_ENGINES)
