#pragma once

#include "DataHelpers.h"
#include "Transaction.h"

#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <optional>

class Session;

/**
 * The writes of one manager procedure: a transaction that joins an open one,
 * every statement prepared and bound, and the first failure reported through
 * errorHandler under the procedure's module and name. After a failure the
 * scope runs nothing more and commit() answers false, and what it wrote is
 * undone: its own transaction is rolled back, or, when it joined an open one
 * (a record screen's edit), its savepoint, so that the edit stays usable.
 * A statement run again with other values reuses its prepared form, which
 * is what keeps loops over thousands of rows near the engine's own speed.
 *
 *     WriteScope write(session, Module, QStringLiteral("SaveRecord"));
 *     write.exec(QStringLiteral("DELETE FROM tblX WHERE XID = ?"), {id});
 *     return write.commit();
 */
class WriteScope
{
public:
    WriteScope(Session& session, const QString& module, const QString& procedure);
    WriteScope(const WriteScope&) = delete;
    WriteScope& operator=(const WriteScope&) = delete;

    /** False once anything failed (and was reported). */
    bool ok() const { return m_ok; }

    /** Runs one statement; returned takes the first column of the first row, when given. */
    bool exec(const QString& sql, const QVariantList& values = {}, QVariant* returned = nullptr);
    /** Rows of a statement read inside the same transaction. */
    Rows select(const QString& sql, const QVariantList& values = {});
    /** Reports a failure found by the caller's own rule and stops the scope. */
    void fail(const QString& description);

    /** Commits when this scope opened the transaction; false (reported) on any failure. */
    bool commit();

private:
    bool report(const QString& description);
    /** The statement prepared once for this scope; null (reported) when it does not prepare. */
    QSqlQuery* prepared(const QString& sql);
    bool run(QSqlQuery& q, const QString& sql, const QVariantList& values);

    Session& m_session;
    QString m_module;
    QString m_procedure;
    Transaction m_transaction;
    std::optional<Savepoint> m_savepoint;
    bool m_ok;
    // Declared after the transaction, so the statements are finished before it ends.
    QHash<QString, std::shared_ptr<QSqlQuery>> m_prepared;
};

/** One place a record may be used: a column of a table, and the word the user is told. */
struct RecordUse
{
    const char* table;
    const char* column;
    const char* shownName;
};

namespace DataHelpers {

/**
 * The shown name of the first use (in the order given) that holds value, or
 * empty text when none does: the answer of every CanDelete... walk. kind is
 * "S" for text keys, "N" for numbers, as isRecordUsed takes it.
 */
template <std::size_t N>
QString firstUse(Session& session, const RecordUse (&uses)[N], const QVariant& value,
                 const QString& kind)
{
    for (const RecordUse& use : uses) {
        if (isRecordUsed(session, QString::fromLatin1(use.table), QString::fromLatin1(use.column),
                         value, kind)) {
            return QString::fromLatin1(use.shownName);
        }
    }
    return QString();
}

} // namespace DataHelpers
