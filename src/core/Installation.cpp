#include "Installation.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

Installation::Installation(QString home) : m_home(QDir::cleanPath(QDir(home).absolutePath())) {}

QString Installation::resolveHome(const QString& fromCommandLine)
{
    if (!fromCommandLine.isEmpty()) {
        return fromCommandLine;
    }
    const QString fromEnvironment = qEnvironmentVariable("TANDRILL_HOME");
    if (!fromEnvironment.isEmpty()) {
        return fromEnvironment;
    }
    return QDir::homePath() + QStringLiteral("/.local/share/Tandrill");
}

QStringList Installation::folderNames()
{
    return {QStringLiteral("Data"),
            QStringLiteral("Data/Backup"),
            QStringLiteral("Reports"),
            QStringLiteral("Custom Reports"),
            QStringLiteral("User Defined Reports"),
            QStringLiteral("XML_IN"),
            QStringLiteral("XML_OUT"),
            QStringLiteral("Log"),
            QStringLiteral("doc"),
            QStringLiteral("Script"),
            QStringLiteral("Lib")};
}

QString Installation::path(const QString& relative) const
{
    return m_home + u'/' + relative;
}

QString Installation::userFolder() const
{
    // Scratch space per user, apart from the installation that may be shared.
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/Tandrill");
}

bool Installation::isInstalled() const
{
    return QFileInfo::exists(storeFile());
}

bool Installation::createFolders(QString* error) const
{
    QDir root;
    for (const QString& name : folderNames()) {
        if (!root.mkpath(path(name))) {
            if (error) {
                *error = QStringLiteral("Cannot create the folder %1").arg(path(name));
            }
            return false;
        }
    }
    return true;
}
