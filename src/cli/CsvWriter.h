#pragma once

#include <QString>
#include <QTextStream>
#include <QVariant>

class QSqlQuery;

/**
 * Rows as comma-separated text: a field with a comma, a quote or a line
 * break stands in quotes, its quotes doubled; NULL is an empty field. Days
 * print as yyyy-MM-dd and moments as yyyy-MM-dd HH:mm:ss on both engines.
 */
namespace CsvWriter {

/** One value as it stands in a field, quoted when it has to be. */
QString field(const QVariant& value);

/** The header row of the query's columns, then every row it returns; the number of rows. */
qint64 writeQuery(QSqlQuery& query, QTextStream& out);

} // namespace CsvWriter
