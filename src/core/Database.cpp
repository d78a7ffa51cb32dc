#include "Database.h"

#include "Installation.h"
#include "Store.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>

namespace {

constexpr qint64 CantOpen = 14; // the engine's "unable to open" code
constexpr qint64 NotADatabase = 26;

void fail(DatabaseError* error, qint64 number, const QString& text)
{
    if (error) {
        error->number = number;
        error->text = text;
    }
}

qint64 numberOf(const QSqlError& e, qint64 fallback)
{
    bool ok = false;
    const qint64 n = e.nativeErrorCode().toLongLong(&ok);
    return ok && n != 0 ? n : fallback;
}

bool execOne(QSqlDatabase& db, const QString& sql, DatabaseError* error, QString* answer = nullptr)
{
    QSqlQuery q(db);
    if (!q.exec(sql)) {
        fail(error, numberOf(q.lastError(), NotADatabase), q.lastError().text());
        return false;
    }
    if (answer && q.next()) {
        *answer = q.value(0).toString();
    }
    return true;
}

QString notDataFile(const ConnectionSettings& s)
{
    return QStringLiteral("'%1' is not a Tandrill data file.").arg(s.describe());
}

bool validSchemaName(const QString& name)
{
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return pattern.match(name).hasMatch();
}

bool openSqlite(const ConnectionSettings& s, const QString& name, bool requireSchema,
                DatabaseError* error)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(s.filePath);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open()) {
        fail(error, numberOf(db.lastError(), CantOpen), db.lastError().text());
        return false;
    }
    // The first read tells a damaged file from a database; the tables tell a foreign
    // one from a data file. Both before the journal mode, which writes to the file.
    if (!execOne(db, QStringLiteral("SELECT COUNT(*) FROM sqlite_master"), error)) {
        return false;
    }
    if (requireSchema && !Database::hasSchema(db)) {
        fail(error, NotADatabase, notDataFile(s));
        return false;
    }
    QString mode;
    if (!execOne(db, QStringLiteral("PRAGMA journal_mode=WAL"), error, &mode) ||
        !execOne(db, QStringLiteral("PRAGMA synchronous=NORMAL"), error)) {
        return false;
    }
    return true;
}

bool openPostgres(const ConnectionSettings& s, const QString& name, DatabaseError* error)
{
    if (!s.schema.isEmpty() && !validSchemaName(s.schema)) {
        fail(error, CantOpen, QStringLiteral("Invalid schema name: %1").arg(s.schema));
        return false;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
    db.setHostName(s.host);
    db.setPort(s.port);
    db.setDatabaseName(s.databaseName);
    db.setUserName(s.user);
    db.setPassword(s.password);
    // A server that does not answer must not freeze the program.
    db.setConnectOptions(QStringLiteral("connect_timeout=10"));
    if (!db.open()) {
        fail(error, numberOf(db.lastError(), CantOpen), db.lastError().text());
        return false;
    }
    if (!s.schema.isEmpty() &&
        !execOne(db, QStringLiteral("SET search_path TO ") + s.schema, error)) {
        return false;
    }
    return execOne(db, QStringLiteral("SET client_min_messages TO WARNING"), error);
}

bool openAny(const ConnectionSettings& s, const QString& name, bool requireSchema,
             DatabaseError* error)
{
    const bool ok = s.engine == SqlDialect::Engine::SQLite
                        ? openSqlite(s, name, requireSchema, error)
                        : openPostgres(s, name, error);
    if (!ok) {
        Database::close(name);
    }
    return ok;
}

} // namespace

ConnectionSettings ConnectionSettings::fromStore(const Store& store,
                                                 const Installation& installation)
{
    ConnectionSettings s;
    const QString section = QString::fromLatin1(Installation::DatabaseSection);
    const QString driver = store.value(section, QStringLiteral("Driver"));
    if (driver.compare(QLatin1String("QPSQL"), Qt::CaseInsensitive) != 0) {
        s.filePath = installation.dataFile();
        return s;
    }
    return postgresFromStore(store, section);
}

ConnectionSettings ConnectionSettings::postgresFromStore(const Store& store, const QString& section)
{
    ConnectionSettings s;
    s.engine = SqlDialect::Engine::PostgreSQL;
    s.host = store.value(section, QStringLiteral("Host"));
    const int port = store.value(section, QStringLiteral("Port")).toInt();
    s.port = port > 0 ? port : 5432;
    s.databaseName = store.value(section, QStringLiteral("Name"));
    s.user = store.value(section, QStringLiteral("User"));
    s.password = store.value(section, QStringLiteral("Password"));
    s.schema = store.value(section, QStringLiteral("Schema"));
    return s;
}

void ConnectionSettings::writeTo(Store& store) const
{
    if (engine == SqlDialect::Engine::SQLite) {
        return;
    }
    const QString section = QString::fromLatin1(Installation::DatabaseSection);
    store.setValue(section, QStringLiteral("Driver"), QStringLiteral("QPSQL"));
    store.setValue(section, QStringLiteral("Host"), host);
    store.setValue(section, QStringLiteral("Port"), QString::number(port));
    store.setValue(section, QStringLiteral("Name"), databaseName);
    store.setValue(section, QStringLiteral("User"), user);
    store.setValue(section, QStringLiteral("Password"), password);
    store.setValue(section, QStringLiteral("Schema"), schema);
}

QString ConnectionSettings::describe() const
{
    if (engine == SqlDialect::Engine::SQLite) {
        return filePath;
    }
    QString text =
        QStringLiteral("PostgreSQL database %1 on %2:%3").arg(databaseName, host).arg(port);
    if (!schema.isEmpty()) {
        text += QStringLiteral(", schema ") + schema;
    }
    return text;
}

bool Database::open(const ConnectionSettings& settings, const QString& connectionName,
                    DatabaseError* error)
{
    if (settings.engine == SqlDialect::Engine::SQLite && !QFileInfo::exists(settings.filePath)) {
        // Opening would make a new empty file in its place.
        fail(error, CantOpen,
             QStringLiteral("Could not find the data file '%1'.").arg(settings.filePath));
        return false;
    }
    if (!openAny(settings, connectionName, true, error)) {
        return false;
    }
    if (!hasSchema(QSqlDatabase::database(connectionName, false))) {
        fail(error, NotADatabase, notDataFile(settings));
        close(connectionName);
        return false;
    }
    return true;
}

bool Database::openForCreate(const ConnectionSettings& settings, const QString& connectionName,
                             DatabaseError* error)
{
    return openAny(settings, connectionName, false, error);
}

void Database::close(const QString& connectionName)
{
    {
        QSqlDatabase db = QSqlDatabase::database(connectionName, false);
        if (db.isOpen()) {
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(connectionName);
}

bool Database::hasSchema(const QSqlDatabase& db)
{
    QSqlQuery q(db);
    return q.exec(QStringLiteral("SELECT COUNT(*) FROM tblSysOption"));
}
