#include "CliHome.h"

#include "CommandLine.h"
#include "TestInstallation.h"

#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>

CliResult runCli(const QStringList& words)
{
    CliResult result;
    QTextStream out(&result.out);
    QTextStream err(&result.err);
    result.code = CommandLine::run(words, out, err);
    out.flush();
    err.flush();
    return result;
}

CliHome::CliHome()
{
    if (!m_dir.isValid()) {
        m_error = QStringLiteral("No temporary folder");
        return;
    }
    if (TestInstallation::wantsPostgres()) {
        if (!TestInstallation::postgresSettings(&m_pg, &m_error)) {
            return;
        }
        m_pg.schema = QStringLiteral("cli_%1").arg(QRandomGenerator::global()->generate64(), 0, 16);
        if (!adminExec(QStringLiteral("CREATE SCHEMA ") + m_pg.schema)) {
            m_pg.schema.clear();
            return;
        }
    }
    m_valid = true;
}

CliHome::~CliHome()
{
    if (!m_pg.schema.isEmpty()) {
        adminExec(QStringLiteral("DROP SCHEMA ") + m_pg.schema + QStringLiteral(" CASCADE"));
    }
}

bool CliHome::adminExec(const QString& statement)
{
    const QString name = QStringLiteral("cli-test-admin");
    ConnectionSettings plain = m_pg;
    plain.schema.clear();
    DatabaseError dbError;
    if (!Database::openForCreate(plain, name, &dbError)) {
        m_error = dbError.text;
        return false;
    }
    bool ok = false;
    {
        QSqlQuery q(QSqlDatabase::database(name, false));
        ok = q.exec(statement);
        if (!ok) {
            m_error = q.lastError().text();
        }
    }
    Database::close(name);
    return ok;
}

QStringList CliHome::initWords(const QStringList& extra) const
{
    QStringList words{QStringLiteral("init")};
    if (!m_pg.schema.isEmpty()) {
        words << QStringLiteral("--pg-host") << m_pg.host << QStringLiteral("--pg-port")
              << QString::number(m_pg.port) << QStringLiteral("--pg-database") << m_pg.databaseName
              << QStringLiteral("--pg-user") << m_pg.user << QStringLiteral("--pg-schema")
              << m_pg.schema;
        if (!m_pg.password.isEmpty()) {
            words << QStringLiteral("--pg-password") << m_pg.password;
        }
    }
    return words + extra;
}

CliResult CliHome::run(const QStringList& words, const QDate& today) const
{
    return runCli(QStringList{QStringLiteral("--home"), home(), QStringLiteral("--today"),
                              today.toString(Qt::ISODate)} +
                  words);
}

QStringList CliHome::sql(const QString& statement) const
{
    const CliResult r = run({QStringLiteral("sql"), statement});
    if (r.code != 0) {
        qWarning("sql failed: %s", qPrintable(r.err));
        return {};
    }
    return r.out.split(u'\n', Qt::SkipEmptyParts);
}

QString sqlValue(const CliHome& home, const QString& statement)
{
    const QStringList lines = home.sql(statement);
    if (lines.size() != 2) {
        return QString();
    }
    const QString field = lines.at(1);
    if (field.size() >= 2 && field.startsWith(u'"') && field.endsWith(u'"')) {
        return field.mid(1, field.size() - 2).replace(QStringLiteral("\"\""), QStringLiteral("\""));
    }
    return field;
}
