#include "WriteScope.h"

#include "ErrorHandler.h"
#include "Session.h"
#include "Sql.h"

#include <QSqlError>
#include <QSqlQuery>

WriteScope::WriteScope(Session& session, const QString& module, const QString& procedure)
    : m_session(session), m_module(module), m_procedure(procedure), m_transaction(session),
      m_ok(m_transaction.isActive())
{
    if (!m_ok) {
        errorHandler(m_session, m_module, m_procedure, 1, m_transaction.error());
        return;
    }
    if (!m_transaction.ownsTransaction()) {
        m_savepoint.emplace(session, QStringLiteral("write_scope"));
        if (!m_savepoint->isActive()) {
            report(m_savepoint->error());
        }
    }
}

bool WriteScope::exec(const QString& sql, const QVariantList& values, QVariant* returned)
{
    if (!m_ok) {
        return false;
    }
    QSqlQuery q(m_session.db());
    if (!Sql::exec(q, sql, values)) {
        errorHandler(m_session, Sql::failure(m_module, m_procedure, q.lastError()));
        m_ok = false;
        return false;
    }
    if (returned) {
        *returned = q.next() ? q.value(0) : QVariant();
    }
    return true;
}

Rows WriteScope::select(const QString& sql, const QVariantList& values)
{
    Rows rows;
    if (!m_ok) {
        return rows;
    }
    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q, sql, values)) {
        errorHandler(m_session, Sql::failure(m_module, m_procedure, q.lastError()));
        m_ok = false;
        return rows;
    }
    while (q.next()) {
        rows.append(q.record());
    }
    return rows;
}

void WriteScope::fail(const QString& description)
{
    if (m_ok) {
        report(description);
    }
}

bool WriteScope::commit()
{
    if (!m_ok) {
        m_transaction.rollback();
        return false;
    }
    if (!m_transaction.commit()) {
        return report(m_transaction.error());
    }
    if (m_savepoint) {
        m_savepoint->release();
    }
    return true;
}

bool WriteScope::report(const QString& description)
{
    errorHandler(m_session, m_module, m_procedure, 1, description);
    m_ok = false;
    return false;
}
