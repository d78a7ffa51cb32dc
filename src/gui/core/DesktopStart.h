#pragma once

#include "ErrorReportSink.h"
#include "PrintedFailureSink.h"
#include "Startup.h"

class QTextStream;
class Session;

/**
 * The desktop program's start once its command line is read: the road of
 * failures (the error report screen, or the error stream where no display can
 * show it), the start-up in its fixed order, and the program's own documents.
 * It lives as long as the run, since it holds the start's lock and the sinks.
 */
class DesktopStart
{
public:
    /** headless: no display, so failures are printed to errors instead of shown. */
    DesktopStart(Session& session, bool headless, QTextStream& errors);
    ~DesktopStart();
    DesktopStart(const DesktopStart&) = delete;
    DesktopStart& operator=(const DesktopStart&) = delete;

    /** True when the main window may open; false when the run ends here. */
    bool run();

private:
    Session& m_session;
    PrintedFailureSink m_printedFailures;
    ErrorReportSink m_reportedFailures;
    Startup m_startup;
};
