#pragma once

#include "SqlDialect.h"

#include <QSqlDatabase>
#include <QString>

class Installation;
class Store;

/** Where the data lives: the embedded file, or a PostgreSQL server named in the store. */
struct ConnectionSettings
{
    SqlDialect::Engine engine = SqlDialect::Engine::SQLite;
    QString filePath; ///< SQLite
    QString host;     ///< PostgreSQL: host name or socket folder
    int port = 5432;
    QString databaseName;
    QString user;
    QString password;
    QString schema; ///< PostgreSQL: optional schema that holds the tables

    /** The store's [Database] section; absent means the embedded file of the installation. */
    static ConnectionSettings fromStore(const Store& store, const Installation& installation);
    /** A PostgreSQL server named in one section of the store (Host, Port, Name, User, ...). */
    static ConnectionSettings postgresFromStore(const Store& store, const QString& section);
    void writeTo(Store& store) const;
    QString describe() const;
};

/** A failure to reach the data, with the engine's number and text. */
struct DatabaseError
{
    qint64 number = 0;
    QString text;
};

namespace Database {

/** Opens one named connection; the data must already exist. */
bool open(const ConnectionSettings& settings, const QString& connectionName, DatabaseError* error);

/** Opens a connection for a data file that is about to be made. */
bool openForCreate(const ConnectionSettings& settings, const QString& connectionName,
                   DatabaseError* error);

void close(const QString& connectionName);

/** True when the connection holds the tables of a data file. */
bool hasSchema(const QSqlDatabase& db);

} // namespace Database
