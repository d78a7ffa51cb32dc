#pragma once

#include "Database.h"

#include <QString>

class Installation;

/** Makes a new installation: its folders, its store and a new data file. */
namespace DataFile {

struct NewInstallation
{
    ConnectionSettings connection; ///< the embedded file when its engine is SQLite
    QString chiefPassword;
    QString version;
};

/** False with a reason when an installation or data file is already there; nothing is changed then.
 */
bool create(const Installation& installation, const NewInstallation& request, QString* error);

/** Creates every table on an open connection and writes the rows a new data file starts with. */
bool createTables(QSqlDatabase& db, const SqlDialect& dialect, const QString& chiefPassword,
                  const QString& version, QString* error);

} // namespace DataFile
