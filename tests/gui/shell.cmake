# The main screen, the dialog prompter, the update check, the command line
# and the start of the desktop program.
tandrill_add_test(tst_mainscreen SOURCES tst_mainscreen.cpp HttpStub.h
    LIBS tandrill_gui_core GUI BOTH_ENGINES)
tandrill_add_test(tst_messageboxprompter SOURCES tst_messageboxprompter.cpp
    LIBS tandrill_gui_core GUI)
tandrill_add_test(tst_updatecheck SOURCES tst_updatecheck.cpp LIBS tandrill_gui_core)
tandrill_add_test(tst_maincommandline SOURCES tst_maincommandline.cpp LIBS tandrill_gui_core)

# Runs the built program itself: its exit codes and messages at start, and a screenshot.
tandrill_add_test(tst_desktopstart SOURCES tst_desktopstart.cpp
    LIBS tandrill_gui_core GUI BOTH_ENGINES)
add_dependencies(tst_desktopstart tandrill)
target_compile_definitions(tst_desktopstart PRIVATE TANDRILL_PROGRAM="$<TARGET_FILE:tandrill>")
