#include "DataSession.h"

#include <QDir>
#include <QFileInfo>

DataSession::DataSession(const CliContext& context)
    : m_context(context), m_prompter(&context.err),
      m_session(Installation(context.home), m_prompter), m_failures(m_session, context.err)
{
    m_session.clock().setToday(context.today);
    m_session.setFailureSink(&m_failures);
    // The command line has no login: whoever runs it may do everything.
    m_session.rights().setAll(true);
}

bool DataSession::checkInstallation()
{
    const Installation& installation = m_session.installation();
    if (!QDir(installation.home()).exists()) {
        m_context.err << QStringLiteral("There is no installation in %1: the folder does not "
                                        "exist. Make one with: tandrill-cli init")
                             .arg(installation.home())
                      << Qt::endl;
        return false;
    }
    if (!installation.isInstalled()) {
        m_context.err << QStringLiteral("There is no installation in %1: it holds no %2. Make "
                                        "one with: tandrill-cli init")
                             .arg(installation.home(),
                                  QFileInfo(installation.storeFile()).fileName())
                      << Qt::endl;
        return false;
    }
    return true;
}

bool DataSession::open()
{
    if (!checkInstallation()) {
        return false;
    }
    QString error;
    if (!m_session.loadStore(&error)) {
        m_context.err << QStringLiteral("The installation's settings cannot be used. ") << error
                      << Qt::endl;
        return false;
    }
    DatabaseError dbError;
    if (!m_session.openDatabase(&dbError)) {
        m_context.err << QStringLiteral("modData_Conntect (ConnectToDB)") << u'\n' << dbError.number
                      << u'\n' << dbError.text << Qt::endl;
        return false;
    }
    return true;
}
