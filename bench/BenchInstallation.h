#pragma once

// Where every benchmark starts: a new installation in a temporary folder, with an open session.

#include "DataFile.h"
#include "Database.h"
#include "Installation.h"
#include "ScriptedPrompter.h"
#include "Session.h"

#include <QString>
#include <QTemporaryDir>

class BenchInstallation
{
public:
    BenchInstallation() : m_installation(m_dir.path()), m_session(m_installation, m_prompter) {}

    /** Makes the data file and opens the session on it; false with the reason in error. */
    bool open(QString* error)
    {
        const DataFile::NewInstallation request{
            {}, QStringLiteral("bench"), QStringLiteral(TANDRILL_VERSION)};
        DatabaseError dbError;
        if (DataFile::create(m_installation, request, error) && m_session.loadStore(error) &&
            m_session.openDatabase(&dbError)) {
            return true;
        }
        error->append(dbError.text);
        return false;
    }

    const Installation& installation() const { return m_installation; }
    Session& session() { return m_session; }
    ScriptedPrompter& prompter() { return m_prompter; }
    QString filePath(const QString& name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    Installation m_installation;
    ScriptedPrompter m_prompter;
    Session m_session;
};

/** The fleet size asked for as the first argument, else 10,000 machines. */
inline int machinesAsked(int argc, char** argv)
{
    return argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
}
