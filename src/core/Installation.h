#pragma once

#include <QString>
#include <QStringList>

/**
 * The installation folder (the application folder) and the fixed names in it.
 */
class Installation
{
public:
    static constexpr auto AppName = "Korvelle";
    static constexpr auto MainKey = "Software\\Korvelle";
    static constexpr auto SyncKey = "Software\\Hesperon\\Korvelle";
    static constexpr auto DatabaseSection = "Database";
    /** The maker's pages: Host (of the update document), Site and Contact. */
    static constexpr auto WebKey = "Web";

    explicit Installation(QString home);

    /** --home, else TANDRILL_HOME, else ~/.local/share/Tandrill. */
    static QString resolveHome(const QString& fromCommandLine);

    /** The folders a first start creates, relative to the installation folder. */
    static QStringList folderNames();

    QString home() const { return m_home; }
    QString path(const QString& relative) const;
    QString dataFile() const { return path(QStringLiteral("Data/Korvelle.db")); }
    QString backupFolder() const { return path(QStringLiteral("Data/Backup")); }
    QString storeFile() const { return path(QStringLiteral("Tandrill.ini")); }
    QString logFile() const { return path(QStringLiteral("Log/TandrillLog.txt")); }
    QString userFolder() const;

    /** True when the installation folder holds a store. */
    bool isInstalled() const;
    /** Makes the folders that are missing; false with a reason when one cannot be made. */
    bool createFolders(QString* error) const;

private:
    QString m_home;
};
