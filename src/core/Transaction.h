#pragma once

#include <QString>

class Session;

/**
 * A transaction on the main connection that rolls back unless committed.
 * When the session already has one open (a record screen in edit), this
 * one joins it: it neither begins, commits nor rolls back, and the owner
 * of the open transaction decides.
 */
class Transaction
{
public:
    explicit Transaction(Session& session);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /** False when the transaction could not be opened; see error(). */
    bool isActive() const { return m_active; }
    bool ownsTransaction() const { return m_owner; }
    /** Commits when this guard opened the transaction; true when joined. False, with
     *  everything rolled back, when the engine could not commit the work whole. */
    bool commit();
    void rollback();
    QString error() const { return m_error; }

private:
    bool run(const QString& statement);
    void finish();

    Session& m_session;
    bool m_owner = false;
    bool m_active = false;
    QString m_error;
};

/**
 * A savepoint inside the open transaction: work that may fail is undone
 * alone, and the transaction stays usable (PostgreSQL refuses everything
 * after a failure until it is rolled back to a savepoint).
 * Rolls back to the savepoint unless release() is called.
 */
class Savepoint
{
public:
    Savepoint(Session& session, const QString& name);
    ~Savepoint();
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;

    bool isActive() const { return m_active; }
    QString error() const { return m_error; }
    /** Keeps the work done since the savepoint. */
    void release();

private:
    void finish(bool keep);

    Session& m_session;
    QString m_name;
    bool m_active = false;
    QString m_error;
};
