#include "TestInstallation.h"

#include "DataFile.h"
#include "Options.h"

#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString AdminConnection = QStringLiteral("tandrill-test-admin");

bool adminExec(const ConnectionSettings& settings, const QString& sql, QString* error)
{
    DatabaseError dbError;
    ConnectionSettings plain = settings;
    plain.schema.clear();
    if (!Database::openForCreate(plain, AdminConnection, &dbError)) {
        *error = dbError.text;
        return false;
    }
    bool ok = false;
    {
        QSqlQuery q(QSqlDatabase::database(AdminConnection, false));
        ok = q.exec(sql);
        if (!ok) {
            *error = q.lastError().text();
        }
    }
    Database::close(AdminConnection);
    return ok;
}

} // namespace

TestInstallation::TestInstallation(const QDate& today)
{
    if (!m_dir.isValid()) {
        m_error = QStringLiteral("No temporary folder");
        return;
    }
    const Installation installation(m_dir.path());
    DataFile::NewInstallation request;
    request.chiefPassword = QStringLiteral("chief");
    request.version = QStringLiteral(TANDRILL_VERSION);
    if (wantsPostgres()) {
        if (!postgresSettings(&request.connection, &m_error) ||
            !createPostgresSchema(&request.connection)) {
            return;
        }
        m_pgSettings = request.connection;
    }
    if (!DataFile::create(installation, request, &m_error)) {
        return;
    }
    m_session = std::make_unique<Session>(installation, m_prompter);
    m_session->clock().setToday(today);
    m_session->setFailureSink(&m_failures);
    DatabaseError dbError;
    if (!m_session->loadStore(&m_error)) {
        return;
    }
    Options::setRegistryValue(*m_session, QStringLiteral("GUID"), Options::newGuid());
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
        dropPostgresSchema();
    }
}

bool TestInstallation::wantsPostgres()
{
    return qEnvironmentVariable("TANDRILL_TEST_ENGINE") == QLatin1String("pg");
}

bool TestInstallation::postgresSettings(ConnectionSettings* settings, QString* reason)
{
    const QString spec = qEnvironmentVariable("TANDRILL_TEST_PG");
    if (spec.isEmpty()) {
        *reason = QStringLiteral("PostgreSQL not configured: TANDRILL_TEST_PG is not set");
        return false;
    }
    settings->engine = SqlDialect::Engine::PostgreSQL;
    settings->databaseName = QStringLiteral("postgres");
    for (const QString& pair : spec.split(u' ', Qt::SkipEmptyParts)) {
        const QString key = pair.section(u'=', 0, 0);
        const QString value = pair.section(u'=', 1);
        if (key == QLatin1String("host")) {
            settings->host = value;
        } else if (key == QLatin1String("port")) {
            settings->port = value.toInt();
        } else if (key == QLatin1String("user")) {
            settings->user = value;
        } else if (key == QLatin1String("dbname")) {
            settings->databaseName = value;
        } else if (key == QLatin1String("password")) {
            settings->password = value;
        }
    }
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
    if (!adminExec(settings, QStringLiteral("SELECT 1"), reason)) {
        *reason = QStringLiteral("PostgreSQL not reachable: ") + *reason;
        return false;
    }
    return true;
}

bool TestInstallation::createPostgresSchema(ConnectionSettings* settings)
{
    settings->schema = QStringLiteral("t_%1").arg(QRandomGenerator::global()->generate64(), 0, 16);
    return adminExec(*settings, QStringLiteral("CREATE SCHEMA ") + settings->schema, &m_error);
}

void TestInstallation::dropPostgresSchema()
{
    QString ignored;
    adminExec(m_pgSettings,
              QStringLiteral("DROP SCHEMA ") + m_pgSettings.schema + QStringLiteral(" CASCADE"),
              &ignored);
}
