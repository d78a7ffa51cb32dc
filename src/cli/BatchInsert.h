#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariantList>

/**
 * One INSERT statement prepared once and run for many rows, each with its
 * values bound. The table and column names are checked against the schema
 * first, so that a misspelt name fails with a clear reason before any row.
 */
class BatchInsert
{
public:
    /** With a returning column, each insert reads back that column of the new row. */
    BatchInsert(const QSqlDatabase& db, const QString& table, const QStringList& columns,
                const QString& returning = QString());

    /** False when the names are wrong or the statement could not be prepared; see error(). */
    bool isValid() const { return m_valid; }
    /** Inserts one row; the values in the order of the columns. */
    bool insert(const QVariantList& values);
    /** The returning column of the last row inserted. */
    qint64 returned() const { return m_returned; }
    /** Why the statement or the last row failed, naming the table. */
    QString error() const { return m_error; }

private:
    bool checkNames(const QString& table, const QStringList& columns);

    QSqlQuery m_query;
    QString m_table;
    int m_columnCount = 0;
    bool m_returns = false;
    bool m_valid = false;
    qint64 m_returned = 0;
    QString m_error;
};
