#include "Session.h"

#include "ErrorHandler.h"
#include "Sql.h"

#include <QAtomicInteger>
#include <QSqlError>
#include <QSqlQuery>
#include <utility>

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
    runHeldWrites();
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

bool Session::holdsSideWrites() const
{
    return !m_open || (m_transactionOpen && m_dialect.isSqlite());
}

bool Session::writeAside(SideWrite write, QSqlError* error)
{
    if (holdsSideWrites()) {
        m_heldWrites.append(std::move(write));
        return true;
    }
    QSqlQuery q(db2());
    if (write.statements(q)) {
        return true;
    }
    if (error) {
        *error = q.lastError();
    }
    return false;
}

void Session::holdOption(const QString& key, const QString& value)
{
    m_heldOptions.insert(key.toLower(), value);
}

std::optional<QString> Session::heldOption(const QString& key) const
{
    const auto found = m_heldOptions.constFind(key.toLower());
    return found == m_heldOptions.cend() ? std::nullopt : std::optional<QString>(*found);
}

void Session::setTransactionOpen(bool open)
{
    m_transactionOpen = open;
    if (!open) {
        runHeldWrites();
    }
}

void Session::runHeldWrites()
{
    if (holdsSideWrites()) {
        return;
    }
    // Taken first: a failure reported below may hold or run writes of its own.
    const QList<SideWrite> held = std::exchange(m_heldWrites, {});
    m_heldOptions.clear();
    for (const SideWrite& write : held) {
        QSqlQuery q(db2());
        if (!write.statements(q)) {
            errorHandler(*this, Sql::failure(write.module, write.procedure, q.lastError()));
        }
    }
}
