#pragma once

#include "Clock.h"
#include "Database.h"
#include "Installation.h"
#include "PlatformInfo.h"
#include "SqlDialect.h"
#include "Store.h"
#include "UserRights.h"

#include <QSqlDatabase>
#include <QString>

class FailureSink;
class Prompter;

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
     * Where options and the error list are read and written: the second connection,
     * so that they stand apart from work in progress on the main one. SQLite allows one
     * writer, so while the main connection holds a transaction there they go through
     * it instead of waiting for it and failing.
     */
    QSqlDatabase sideDb() const;

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
    void setTransactionOpen(bool open) { m_transactionOpen = open; }

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
};
