#include "DesktopStart.h"

#include "HelpFiles.h"
#include "Session.h"

DesktopStart::DesktopStart(Session& session, bool headless, QTextStream& errors)
    : m_session(session), m_printedFailures(session, errors), m_reportedFailures(session),
      m_startup(session)
{
    if (headless) {
        session.setFailureSink(&m_printedFailures);
    } else {
        session.setFailureSink(&m_reportedFailures);
    }
}

DesktopStart::~DesktopStart()
{
    m_session.setFailureSink(nullptr);
}

bool DesktopStart::run()
{
    if (m_startup.run() == Startup::Outcome::Exit) {
        return false;
    }
    QString error;
    if (!HelpFiles::installMissing(m_session, QStringLiteral(":/bundled"), &error)) {
        qWarning("%s", qPrintable(error)); // help then says the file is missing; the run goes on
    }
    return true;
}
