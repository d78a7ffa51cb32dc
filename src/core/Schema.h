#pragma once

#include "SqlDialect.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

/**
 * Every table and column of the data file, in their canonical spelling.
 * The catalogue creates the tables on either engine and is the one place
 * that vets table and column names that arrive as data.
 */
class Schema
{
public:
    using Type = SqlDialect::ColumnType;

    struct Column
    {
        Column(const QString& name, Type type, bool filledWithToday = false,
               const QString& defaultValue = QString())
            : name(name), type(type), filledWithToday(filledWithToday), defaultValue(defaultValue)
        {}

        QString name;
        Type type;
        bool filledWithToday; ///< the engine fills it at insert
        QString defaultValue; ///< SQL default; flags take their "no" value anyway
    };
    struct Table
    {
        QString name;
        QList<Column> columns;
    };
    /** An index over columns; a case-blind one indexes LOWER(column) of its one column. */
    struct Index
    {
        QString table;
        QStringList columns;
        bool caseBlind = false;
        bool unique = false;
    };

    static const Schema& instance();

    const QList<Table>& tables() const { return m_tables; }
    const QList<Index>& indexes() const { return m_indexes; }

    const Table* table(const QString& name) const;
    const Column* column(const QString& table, const QString& column) const;
    bool hasTable(const QString& name) const { return table(name) != nullptr; }
    bool hasColumn(const QString& tableName, const QString& columnName) const
    {
        return column(tableName, columnName) != nullptr;
    }

    /** The statements that create every table and index on this engine. */
    QStringList createStatements(const SqlDialect& dialect) const;

    /** Creates every table and index; false with the failing statement's error. */
    bool create(QSqlDatabase& db, const SqlDialect& dialect, QString* error) const;

private:
    Schema();
    QString createTable(const Table& table, const SqlDialect& dialect) const;
    QString createIndex(const Index& index, int number) const;

    QList<Table> m_tables;
    QList<Index> m_indexes;
};
