#include "CliHome.h"

#include "CommandLine.h"
#include "TestInstallation.h"

using namespace Qt::StringLiterals;

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
        m_error = u"No temporary folder"_s;
        return;
    }
    m_valid = !TestInstallation::wantsPostgres() ||
              (TestInstallation::postgresSettings(&m_pg, &m_error) &&
               TestInstallation::createPostgresSchema(&m_pg, &m_error));
}

CliHome::~CliHome()
{
    if (!m_pg.schema.isEmpty()) {
        TestInstallation::dropPostgresSchema(m_pg);
    }
}

QStringList CliHome::initWords(const QStringList& extra) const
{
    QStringList words{u"init"_s};
    if (!m_pg.schema.isEmpty()) {
        words << u"--pg-host"_s << m_pg.host << u"--pg-port"_s << QString::number(m_pg.port)
              << u"--pg-database"_s << m_pg.databaseName << u"--pg-user"_s << m_pg.user
              << u"--pg-schema"_s << m_pg.schema;
        if (!m_pg.password.isEmpty()) {
            words << u"--pg-password"_s << m_pg.password;
        }
    }
    return words + extra;
}

bool CliHome::init(const QStringList& extra, const QDate& today)
{
    const CliResult r = run(initWords(extra), today);
    m_error = r.err;
    return r.code == 0;
}

CliResult CliHome::run(const QStringList& words, const QDate& today) const
{
    return runCli(QStringList{u"--home"_s, home(), u"--today"_s, today.toString(Qt::ISODate)} +
                  words);
}

QString CliHome::value(const QString& statement) const
{
    const CliResult r = run({u"sql"_s, statement});
    const QString field = r.out.section(u'\n', 1, 1);
    if (r.code != 0 || r.out.count(u'\n') != 2) {
        qWarning("no single value: %s", qPrintable(r.out + r.err));
        return QString();
    }
    return field.startsWith(u'"') ? field.mid(1, field.size() - 2).replace(u"\"\""_s, u"\""_s)
                                  : field;
}
