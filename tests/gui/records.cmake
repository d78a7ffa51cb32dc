# The record-screen framework, on a test screen of its own, and the screens on it.
tandrill_add_test(tst_recordscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_recordscreen.cpp
    LIBS tandrill_gui_core GUI BOTH_ENGINES)
tandrill_add_test(tst_crewscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_crewscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
tandrill_add_test(tst_sitescreens SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_sitescreens.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
tandrill_add_test(tst_indicatorscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_indicatorscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
# The parts register, the stock check-in and the part picker, wired to their logic.
tandrill_add_test(tst_partscreens SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_partscreens.cpp
    LIBS tandrill_gui_inventory GUI BOTH_ENGINES)
tandrill_add_test(tst_employeescreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_employeescreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
tandrill_add_test(tst_quickfindscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_quickfindscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
tandrill_add_test(tst_equipmentscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_equipmentscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
# The picture and crew assignment dialogs of a machine.
tandrill_add_test(tst_equipmentsmallscreens
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_equipmentsmallscreens.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
# The inspection and licence date readings, one screen for both.
tandrill_add_test(tst_datereadingscreen
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_datereadingscreen.cpp
    LIBS tandrill_gui_master GUI BOTH_ENGINES)
# The services screen in both modes and the service picker.
tandrill_add_test(tst_servicesscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_servicesscreen.cpp
    LIBS tandrill_gui_schedule GUI BOTH_ENGINES)
tandrill_add_test(tst_servicesmanagerscreen
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_servicesmanagerscreen.cpp
    LIBS tandrill_gui_schedule GUI BOTH_ENGINES)
# The meter reading form and the count sheet, wired to the reading logic.
tandrill_add_test(tst_countreadingscreen SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_countreadingscreen.cpp
    LIBS tandrill_gui_schedule GUI BOTH_ENGINES)
tandrill_add_test(tst_equipmentreadingscreen
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_equipmentreadingscreen.cpp
    LIBS tandrill_gui_schedule GUI BOTH_ENGINES)
# The Service and Counts sections of the equipment screen, wired to their logic.
tandrill_add_test(tst_equipmentservicesection SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tst_equipmentservicesection.cpp LIBS tandrill_gui_master GUI BOTH_ENGINES)
