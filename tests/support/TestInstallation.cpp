#include "TestInstallation.h"

#include "DataFile.h"
#include "Options.h"
#include "Schema.h"
#include "Sql.h"
#include "Store.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

/** Runs work on a connection of its own to the data of settings. */
bool onConnection(const ConnectionSettings& settings,
                  const std::function<bool(QSqlDatabase&)>& work, QString* error)
{
    const QString connection = u"tandrill-test-admin"_s;
    DatabaseError dbError;
    if (!Database::openForCreate(settings, connection, &dbError)) {
        *error = dbError.text;
        return false;
    }
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::database(connection, false);
        ok = work(db);
    }
    Database::close(connection);
    return ok;
}

bool adminExec(const ConnectionSettings& settings, const QString& sql, QString* error)
{
    ConnectionSettings plain = settings;
    plain.schema.clear();
    return onConnection(
        plain,
        [&](QSqlDatabase& db) {
            QSqlQuery q(db);
            return q.exec(sql) || (*error = q.lastError().text(), false);
        },
        error);
}

/** A new installation in home, the way the program makes one; pg gets its schema. */
bool createInstallation(const QString& home, ConnectionSettings* pg, QString* error)
{
    DataFile::NewInstallation request;
    request.chiefPassword = u"chief"_s;
    request.version = QStringLiteral(TANDRILL_VERSION);
    if (TestInstallation::wantsPostgres()) {
        if (!TestInstallation::postgresSettings(&request.connection, error) ||
            !TestInstallation::createPostgresSchema(&request.connection, error)) {
            return false;
        }
        *pg = request.connection;
    }
    return DataFile::create(Installation(home), request, error);
}

/** The installation of this process that the others are copied from. */
struct Original
{
    QTemporaryDir dir;
    ConnectionSettings pg;
    QString error;
    bool valid = false;
};
std::unique_ptr<Original> original;

void dropOriginal()
{
    if (original && !original->pg.schema.isEmpty()) {
        TestInstallation::dropPostgresSchema(original->pg);
    }
    original.reset();
}

const Original& theOriginal()
{
    if (!original) {
        original = std::make_unique<Original>();
        // Dropped while the application object lives, before the SQL drivers go.
        qAddPostRoutine(dropOriginal);
        original->valid = createInstallation(original->dir.path(), &original->pg, &original->error);
    }
    return *original;
}

bool copyFiles(const QString& from, const QString& to, QString* error)
{
    QDirIterator it(from, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = to + source.mid(from.size());
        if (!(it.fileInfo().isDir()
                  ? QDir().mkpath(target)
                  : QDir().mkpath(QFileInfo(target).path()) && QFile::copy(source, target))) {
            *error = u"Cannot copy "_s + source;
            return false;
        }
    }
    return true;
}

/** Gives the new schema of to the tables, rows and key counters of the schema of from. */
bool copyTables(const ConnectionSettings& from, const ConnectionSettings& to, QString* error)
{
    return onConnection(
        to,
        [&](QSqlDatabase& db) {
            QSqlQuery q(db);
            bool ok =
                db.transaction() && Schema::instance().create(db, SqlDialect(to.engine), error);
            const auto run = [&](QSqlQuery& query, const QString& sql, const QVariantList& values) {
                if (ok && !(Sql::exec(query, sql, values) && (!query.isSelect() || query.next()))) {
                    *error = query.lastError().text() + u" in "_s + sql;
                    ok = false;
                }
            };
            for (const Schema::Table& table : Schema::instance().tables()) {
                run(q, u"INSERT INTO %1 SELECT * FROM %2.%1"_s.arg(table.name, from.schema), {});
                const QString key = table.columns.first().name.toLower();
                if (table.columns.first().type != Schema::Type::AutoKey) {
                    continue;
                }
                // The counter of new keys goes on where the original's stands.
                run(q, u"SELECT pg_get_serial_sequence(?, ?)"_s,
                    {from.schema + u'.' + table.name.toLower(), key});
                QSqlQuery counter(db);
                run(counter, u"SELECT last_value, is_called FROM "_s + q.value(0).toString(), {});
                run(q, u"SELECT setval(pg_get_serial_sequence(?, ?), ?, ?)"_s,
                    {table.name.toLower(), key, counter.value(0), counter.value(1)});
            }
            return ok ? db.commit() : (db.rollback(), false);
        },
        error);
}

/** A copy of the original in the installation's folder (and a schema of its own in pg). */
bool copyOriginal(const Installation& installation, ConnectionSettings* pg, QString* error)
{
    const Original& from = theOriginal();
    if (!from.valid) {
        *error = from.error;
        return false;
    }
    Store store(installation.storeFile());
    if (!copyFiles(from.dir.path(), installation.home(), error) || !store.load(error)) {
        return false;
    }
    const QString key = QString::fromLatin1(Installation::MainKey);
    store.setValue(key, u"PATH"_s, installation.home() + u'/');
    store.setValue(key, u"SYSFOLDER"_s, installation.path(u"doc"_s) + u'/');
    if (!from.pg.schema.isEmpty()) {
        *pg = from.pg;
        if (!TestInstallation::createPostgresSchema(pg, error) ||
            !copyTables(from.pg, *pg, error)) {
            return false;
        }
        pg->writeTo(store);
    }
    return store.save(error);
}

} // namespace

TestInstallation::TestInstallation(const QDate& today, Making making)
{
    if (!m_dir.isValid()) {
        m_error = u"No temporary folder"_s;
        return;
    }
    const Installation installation(m_dir.path());
    if (making == Fresh ? !createInstallation(m_dir.path(), &m_pgSettings, &m_error)
                        : !copyOriginal(installation, &m_pgSettings, &m_error)) {
        return;
    }
    m_session = std::make_unique<Session>(installation, m_prompter);
    m_session->clock().setToday(today);
    m_session->setFailureSink(&m_failures);
    DatabaseError dbError;
    if (!m_session->loadStore(&m_error)) {
        return;
    }
    Options::setRegistryValue(*m_session, u"GUID"_s, Options::newGuid());
    if (!m_session->openDatabase(&dbError)) {
        m_error = dbError.text;
        return;
    }
    m_session->rights().setAll(true);
    m_valid = true;
}

TestInstallation::~TestInstallation()
{
    m_session.reset();
    if (!m_pgSettings.schema.isEmpty()) {
        dropPostgresSchema(m_pgSettings);
    }
}

bool TestInstallation::wantsPostgres()
{
    return qEnvironmentVariable("TANDRILL_TEST_ENGINE") == QLatin1String("pg");
}

bool TestInstallation::postgresSettings(ConnectionSettings* settings, QString* reason)
{
    const QString conninfo = qEnvironmentVariable("TANDRILL_TEST_PG");
    if (conninfo.isEmpty()) {
        *reason = u"PostgreSQL not configured: TANDRILL_TEST_PG is not set"_s;
        return false;
    }
    QHash<QString, QString> parts;
    for (const QString& pair : conninfo.split(u' ', Qt::SkipEmptyParts)) {
        parts.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
    }
    settings->engine = SqlDialect::Engine::PostgreSQL;
    settings->host = parts.value(u"host"_s);
    settings->port = parts.value(u"port"_s, QString::number(settings->port)).toInt();
    settings->user = parts.value(u"user"_s);
    settings->databaseName = parts.value(u"dbname"_s, u"postgres"_s);
    settings->password = parts.value(u"password"_s);
    return true;
}

bool TestInstallation::engineAvailable(QString* reason)
{
    if (!wantsPostgres()) {
        return true;
    }
    ConnectionSettings settings;
    if (!postgresSettings(&settings, reason)) {
        return false;
    }
    if (!adminExec(settings, u"SELECT 1"_s, reason)) {
        *reason = u"PostgreSQL not reachable: "_s + *reason;
        return false;
    }
    return true;
}

bool TestInstallation::createPostgresSchema(ConnectionSettings* settings, QString* error)
{
    settings->schema = u"t_%1"_s.arg(QRandomGenerator::global()->generate64(), 0, 16);
    if (adminExec(*settings, u"CREATE SCHEMA "_s + settings->schema, error)) {
        return true;
    }
    settings->schema.clear();
    return false;
}

void TestInstallation::dropPostgresSchema(const ConnectionSettings& settings)
{
    QString ignored;
    adminExec(settings, u"DROP SCHEMA "_s + settings.schema + u" CASCADE"_s, &ignored);
}
