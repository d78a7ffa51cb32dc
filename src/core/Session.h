#pragma once

#include "Clock.h"
#include "Database.h"
#include "Installation.h"
#include "PlatformInfo.h"
#include "SqlDialect.h"
#include "Store.h"
#include "UserRights.h"

#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <functional>
#include <optional>

class FailureSink;
class Prompter;
class QSqlError;
class QSqlQuery;

/**
 * Everything one run of the program knows: where the installation is, the
 * store, the two connections, the user and rights, the clock, and where
 * questions and failures go. Handed to whoever needs it; there are no globals.
 */
class Session
{
public:
    Session(const Installation& installation, Prompter& prompter);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Installation& installation() const { return m_installation; }
    Store& store() { return m_store; }
    const Store& store() const { return m_store; }
    Clock& clock() { return m_clock; }
    const Clock& clock() const { return m_clock; }
    QDate today() const { return m_clock.today(); }

    Prompter& prompter() const { return *m_prompter; }
    void setPrompter(Prompter& prompter) { m_prompter = &prompter; }
    /** Where failures go; none means they are only kept in the error list. */
    FailureSink* failureSink() const { return m_failureSink; }
    void setFailureSink(FailureSink* sink) { m_failureSink = sink; }

    /** Reads the store; false with a reason when it cannot be read. */
    bool loadStore(QString* error);
    ConnectionSettings connectionSettings() const;

    /** Opens the main and the second connection to the data. */
    bool openDatabase(DatabaseError* error);
    void closeDatabase();
    bool isOpen() const { return m_open; }

    /** The main connection: almost all reading and writing. */
    QSqlDatabase db() const;
    /** The second connection: options, and work independent of the main one. */
    QSqlDatabase db2() const;
    const SqlDialect& dialect() const { return m_dialect; }
    /**
     * A write that stands apart from the work on the main connection (an option, a
     * kept failure): its statements on a query of the second connection, true when
     * they succeed, and where a failure of a held write is reported.
     */
    struct SideWrite
    {
        QString module;
        QString procedure;
        std::function<bool(QSqlQuery&)> statements;
    };
    /**
     * Runs write on the second connection, so that a revert of the main one's work
     * cannot take it back. It is held, and true returned, while it cannot run yet:
     * before the data is open, and on SQLite, which allows one writer, while the main
     * connection holds a transaction. Held writes run in order as soon as the data
     * opens or the transaction ends, whichever way; their failures go to the error
     * road. A write that runs at once and fails gives false and, with error, why.
     */
    bool writeAside(SideWrite write, QSqlError* error = nullptr);
    /** An option held under its key (any case) until the held writes run. */
    void holdOption(const QString& key, const QString& value);
    std::optional<QString> heldOption(const QString& key) const;
    bool holdsSideWrites() const;

    QString userName() const { return m_userName; }
    void setUserName(const QString& name) { m_userName = name; }
    bool updateFailed() const { return m_updateFailed; }
    void setUpdateFailed(bool failed) { m_updateFailed = failed; }
    const PlatformInfo& platform() const { return m_platform; }
    void setPlatform(const PlatformInfo& info) { m_platform = info; }
    UserRights& rights() { return m_rights; }
    const UserRights& rights() const { return m_rights; }

    /** Set while a transaction is open on the main connection; see Transaction. */
    bool transactionOpen() const { return m_transactionOpen; }
    void setTransactionOpen(bool open);

private:
    Installation m_installation;
    Store m_store;
    Clock m_clock;
    Prompter* m_prompter;
    FailureSink* m_failureSink = nullptr;
    SqlDialect m_dialect;
    QString m_mainName;
    QString m_secondName;
    bool m_open = false;
    QString m_userName;
    bool m_updateFailed = false;
    PlatformInfo m_platform;
    UserRights m_rights;
    bool m_transactionOpen = false;
    QList<SideWrite> m_heldWrites;
    QHash<QString, QString> m_heldOptions;

    void runHeldWrites();
};
