#include "Session.h"

#include <QAtomicInteger>

namespace {

QString uniqueConnectionName(const char* role)
{
    static QAtomicInteger<int> counter;
    return QStringLiteral("tandrill-%1-%2").arg(QLatin1String(role)).arg(++counter);
}

} // namespace

Session::Session(const Installation& installation, Prompter& prompter)
    : m_installation(installation), m_store(installation.storeFile()), m_prompter(&prompter),
      m_mainName(uniqueConnectionName("main")), m_secondName(uniqueConnectionName("second"))
{}

Session::~Session()
{
    closeDatabase();
}

bool Session::loadStore(QString* error)
{
    return m_store.load(error);
}

ConnectionSettings Session::connectionSettings() const
{
    return ConnectionSettings::fromStore(m_store, m_installation);
}

bool Session::openDatabase(DatabaseError* error)
{
    closeDatabase();
    const ConnectionSettings settings = connectionSettings();
    m_dialect = SqlDialect(settings.engine);
    if (!Database::open(settings, m_mainName, error)) {
        return false;
    }
    if (!Database::open(settings, m_secondName, error)) {
        Database::close(m_mainName);
        return false;
    }
    m_open = true;
    return true;
}

void Session::closeDatabase()
{
    if (!m_open) {
        return;
    }
    Database::close(m_secondName);
    Database::close(m_mainName);
    m_open = false;
    m_transactionOpen = false;
}

QSqlDatabase Session::db() const
{
    return QSqlDatabase::database(m_mainName, false);
}

QSqlDatabase Session::db2() const
{
    return QSqlDatabase::database(m_secondName, false);
}

QSqlDatabase Session::sideDb() const
{
    return m_transactionOpen && m_dialect.isSqlite() ? db() : db2();
}
