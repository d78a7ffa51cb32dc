# The system options screen, the error report screen with its sink, and the exchange log.
tandrill_add_test(tst_setupscreen SOURCES tst_setupscreen.cpp
    LIBS tandrill_gui_core GUI BOTH_ENGINES)
# The report goes to a small SMTP server inside the test.
tandrill_add_test(tst_sendemailscreen SOURCES tst_sendemailscreen.cpp
    ${CMAKE_SOURCE_DIR}/tests/setup/SmtpSink.h
    LIBS tandrill_gui_core Qt6::Network GUI BOTH_ENGINES)
target_include_directories(tst_sendemailscreen PRIVATE ${CMAKE_SOURCE_DIR}/tests/setup)
tandrill_add_test(tst_logscreen SOURCES tst_logscreen.cpp LIBS tandrill_gui_core GUI)
