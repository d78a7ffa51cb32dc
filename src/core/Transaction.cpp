#include "Transaction.h"

#include "Session.h"

#include <QSqlError>
#include <QSqlQuery>

Transaction::Transaction(Session& session) : m_session(session)
{
    if (session.transactionOpen()) {
        m_active = true;
        return;
    }
    m_active = run(session.dialect().beginWrite());
    if (m_active) {
        m_owner = true;
        session.setTransactionOpen(true);
    }
}

Transaction::~Transaction()
{
    if (m_owner) {
        rollback();
    }
}

bool Transaction::commit()
{
    if (!m_owner) {
        return m_active;
    }
    // PostgreSQL answers COMMIT of a transaction that a failed statement has aborted
    // with a silent ROLLBACK; any statement tells that state apart first.
    if (!m_session.dialect().isSqlite() && !run(QStringLiteral("SELECT 1"))) {
        rollback();
        return false;
    }
    const bool ok = run(QStringLiteral("COMMIT"));
    if (!ok) {
        rollback();
        return false;
    }
    finish();
    return true;
}

void Transaction::rollback()
{
    if (!m_owner) {
        return;
    }
    run(QStringLiteral("ROLLBACK"));
    finish();
}

bool Transaction::run(const QString& statement)
{
    QSqlQuery q(m_session.db());
    if (!q.exec(statement)) {
        m_error = q.lastError().text();
        return false;
    }
    return true;
}

void Transaction::finish()
{
    m_owner = false;
    m_active = false;
    m_session.setTransactionOpen(false);
}

Savepoint::Savepoint(Session& session, const QString& name) : m_session(session), m_name(name)
{
    QSqlQuery q(session.db());
    m_active = q.exec(QStringLiteral("SAVEPOINT ") + m_name);
    if (!m_active) {
        m_error = q.lastError().text();
    }
}

Savepoint::~Savepoint()
{
    finish(false);
}

void Savepoint::release()
{
    finish(true);
}

void Savepoint::finish(bool keep)
{
    if (!m_active) {
        return;
    }
    QSqlQuery q(m_session.db());
    if (!keep) {
        q.exec(QStringLiteral("ROLLBACK TO SAVEPOINT ") + m_name);
    }
    q.exec(QStringLiteral("RELEASE SAVEPOINT ") + m_name);
    m_active = false;
}
