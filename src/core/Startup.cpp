#include "Startup.h"

#include "ErrorHandler.h"
#include "Options.h"
#include "Prompter.h"
#include "Session.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <sqlite3.h>

namespace {

const QString Module = QStringLiteral("General Function");
constexpr qint64 FileNotFound = 53;

/** A file in a folder named by a store value; an empty folder does not mean the working one. */
QString fileIn(const QString& folder, const QString& name)
{
    return QDir::cleanPath(folder + u'/' + name);
}

struct BackupError
{
    int number = 0;
    QString text;
};

/** True when the engine's integrity check passes on the database. */
bool isWhole(sqlite3* db)
{
    sqlite3_stmt* check = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &check, nullptr) != SQLITE_OK) {
        return false;
    }
    const bool whole =
        sqlite3_step(check) == SQLITE_ROW &&
        qstrcmp(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok") == 0;
    sqlite3_finalize(check);
    return whole;
}

/** Copies a live SQLite file with the engine's online backup: a consistent copy
 *  even while other connections are writing. */
bool copyDatabase(const QString& from, const QString& to, BackupError* error)
{
    sqlite3* source = nullptr;
    sqlite3* target = nullptr;
    int rc = sqlite3_open_v2(from.toUtf8().constData(), &source, SQLITE_OPEN_READONLY, nullptr);
    if (rc == SQLITE_OK) {
        rc = sqlite3_open_v2(to.toUtf8().constData(), &target,
                             SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    }
    if (rc == SQLITE_OK) {
        sqlite3_busy_timeout(source, 5000);
        sqlite3_backup* backup = sqlite3_backup_init(target, "main", source, "main");
        if (backup) {
            rc = sqlite3_backup_step(backup, -1);
            rc = rc == SQLITE_DONE ? sqlite3_backup_finish(backup)
                                   : (sqlite3_backup_finish(backup), rc);
        } else {
            rc = sqlite3_errcode(target);
        }
    }
    if (rc == SQLITE_OK) {
        // The copy stands alone as one file, and is only kept when it reads back whole.
        rc = sqlite3_exec(target, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
    }
    if (rc == SQLITE_OK && !isWhole(target)) {
        rc = SQLITE_CORRUPT;
    }
    if (rc != SQLITE_OK) {
        error->number = rc;
        error->text = QString::fromUtf8(sqlite3_errstr(rc));
    }
    sqlite3_close(target);
    sqlite3_close(source);
    return rc == SQLITE_OK;
}

} // namespace

Startup::Startup(Session& session)
    : m_session(session),
      m_launcher([](const QString& program) { return QProcess::startDetached(program, {}); })
{}

Startup::~Startup() = default;

void Startup::setProgramLauncher(std::function<bool(const QString&)> launcher)
{
    m_launcher = std::move(launcher);
}

void Startup::setLogin(std::function<bool(Session&)> login)
{
    m_login = std::move(login);
}

QString Startup::backupFileName(const QString& version)
{
    return QStringLiteral("Korvelle") + QString(version).remove(u'.') + QStringLiteral(".db");
}

QString Startup::lockFilePath(const QString& home)
{
    const QByteArray hash =
        QCryptographicHash::hash(QDir::cleanPath(home).toUtf8(), QCryptographicHash::Sha1)
            .toHex()
            .left(16);
    return QDir::tempPath() + QStringLiteral("/tandrill-") + QString::fromLatin1(hash) +
           QStringLiteral(".lock");
}

Startup::Outcome Startup::checkForUpdate()
{
    const QString version = Options::registryValue(m_session, QStringLiteral("Version"));
    const QString source = Options::registryValue(m_session, QStringLiteral("SRCPATH"));
    QString updateFolder;
    QString installed;
    // Plain text comparisons: this is how old and new installations are told apart.
    if (version <= QLatin1String("1.1.1") &&
        (version >= QLatin1String("1.1.0") || !source.isEmpty())) {
        updateFolder = source;
        installed = Options::registryValue(m_session, QStringLiteral("CLIENTVERSION"));
    } else {
        updateFolder =
            Options::registryValue(m_session, QStringLiteral("PATH")) + QStringLiteral("Client");
        installed = Options::registryValue(m_session, QStringLiteral("VERSION"));
    }
    const QString procedure = QStringLiteral("CheckForUpdate");
    QFile file(fileIn(updateFolder, QStringLiteral("update.txt")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        errorHandler(m_session, Module, procedure, FileNotFound,
                     QStringLiteral("File not found: %1").arg(file.fileName()));
        return Outcome::Continue;
    }
    const QString offered = QTextStream(&file).readLine().trimmed();
    if (offered <= installed.trimmed()) {
        return Outcome::Continue;
    }
    m_session.prompter().inform(QStringLiteral(
        "System found an update for Tandrill. It will start automatically in a moment."));
    const QString installer = fileIn(updateFolder, QStringLiteral("setup"));
    if (!m_launcher(installer)) {
        // Ending here would end every later start the same way, with no update made.
        errorHandler(m_session, Module, procedure, FileNotFound,
                     QStringLiteral("File not found: %1").arg(installer));
        return Outcome::Continue;
    }
    return Outcome::Exit;
}

bool Startup::backupDb()
{
    const ConnectionSettings settings = m_session.connectionSettings();
    if (settings.engine != SqlDialect::Engine::SQLite) {
        return true; // a server keeps its own backups
    }
    const QString version = Options::registryValue(m_session, QStringLiteral("VERSION"));
    const QString target =
        QDir(m_session.installation().backupFolder()).filePath(backupFileName(version));
    const QString partial = target + QStringLiteral(".part");
    BackupError error;
    QFile::remove(partial);
    if (!QFile::exists(settings.filePath)) {
        error = {SQLITE_CANTOPEN, QStringLiteral("File not found: %1").arg(settings.filePath)};
    } else if (copyDatabase(settings.filePath, partial, &error)) {
        QFile::remove(target);
        if (QFile::rename(partial, target)) {
            return true;
        }
        error = {SQLITE_CANTOPEN, QStringLiteral("Cannot write %1").arg(target)};
    }
    QFile::remove(partial);
    m_session.prompter().message(QStringLiteral("Main Funtions(BackupDB) ") +
                                     QString::number(error.number) + u' ' + error.text,
                                 Prompter::Buttons::Ok, Prompter::Icon::Critical);
    return false;
}

void Startup::reportConnectFailure(qint64 number, const QString& text)
{
    m_session.prompter().message(QStringLiteral("modData_Conntect (ConnectToDB)\n") +
                                     QString::number(number) + u'\n' + text,
                                 Prompter::Buttons::Ok, Prompter::Icon::Critical);
}

Startup::Outcome Startup::connectToDb()
{
    m_lock = std::make_unique<QLockFile>(lockFilePath(m_session.installation().home()));
    m_lock->setStaleLockTime(0);
    if (!m_lock->tryLock(100)) {
        m_session.prompter().message(QStringLiteral("Tandrill application is already open."),
                                     Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
        return Outcome::Exit;
    }
    if (!backupDb()) {
        m_session.prompter().message(QStringLiteral("Problem in taking backup of Database."),
                                     Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
    }
    if (Options::registryValue(m_session, QStringLiteral("GUID")).isEmpty()) {
        Options::setRegistryValue(m_session, QStringLiteral("GUID"), Options::newGuid());
    }
    DatabaseError error;
    if (!m_session.openDatabase(&error)) {
        reportConnectFailure(error.number, error.text);
        return Outcome::Exit;
    }
    // Without a login screen the switch is read and the start goes on with no user.
    if (Options::option(m_session, QStringLiteral("SECURITYONOFF")) == QLatin1String("1") &&
        m_login && !m_login(m_session)) {
        return Outcome::Exit;
    }
    setUserRole();
    return Outcome::Continue;
}

void Startup::setUserRole()
{
    // Until a user logs in, nobody is refused anything.
    if (m_session.userName().isEmpty()) {
        m_session.rights().setAll(true);
    }
}

Startup::Outcome Startup::run()
{
    if (checkForUpdate() == Outcome::Exit || connectToDb() == Outcome::Exit) {
        return Outcome::Exit;
    }
    m_session.setPlatform(PlatformInfo::read());
    QDir().mkpath(m_session.installation().userFolder());
    return Outcome::Continue;
}
