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
    QSqlQuery plain(m_session.db());
    QSqlQuery* q = values.isEmpty() ? &plain : prepared(sql);
    if (!q || !run(*q, sql, values)) {
        return false;
    }
    if (returned) {
        *returned = q->next() ? q->value(0) : QVariant();
    }
    q->finish();
    return true;
}

Rows WriteScope::select(const QString& sql, const QVariantList& values)
{
    Rows rows;
    if (!m_ok) {
        return rows;
    }
    QSqlQuery plain(m_session.db());
    plain.setForwardOnly(true);
    QSqlQuery* q = values.isEmpty() ? &plain : prepared(sql);
    if (!q || !run(*q, sql, values)) {
        return rows;
    }
    while (q->next()) {
        rows.append(q->record());
    }
    q->finish();
    return rows;
}

QSqlQuery* WriteScope::prepared(const QString& sql)
{
    if (const auto found = m_prepared.constFind(sql); found != m_prepared.cend()) {
        return found->get();
    }
    auto q = std::make_shared<QSqlQuery>(m_session.db());
    q->setForwardOnly(true);
    if (!q->prepare(sql)) {
        errorHandler(m_session, Sql::failure(m_module, m_procedure, q->lastError()));
        m_ok = false;
        return nullptr;
    }
    m_prepared.insert(sql, q);
    return q.get();
}

bool WriteScope::run(QSqlQuery& q, const QString& sql, const QVariantList& values)
{
    // Statements without values are not prepared: PostgreSQL prepares no DDL.
    bool done = false;
    if (values.isEmpty()) {
        done = q.exec(sql);
    } else {
        for (int i = 0; i < values.size(); ++i) {
            q.bindValue(i, values.at(i));
        }
        done = q.exec();
    }
    if (!done) {
        errorHandler(m_session, Sql::failure(m_module, m_procedure, q.lastError()));
        m_ok = false;
    }
    return done;
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
