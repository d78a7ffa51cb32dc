#include "BatchInsert.h"

#include "Schema.h"

#include <QSqlError>

BatchInsert::BatchInsert(const QSqlDatabase& db, const QString& table, const QStringList& columns,
                         const QString& returning)
    : m_query(db), m_table(table), m_columnCount(int(columns.size())),
      m_returns(!returning.isEmpty())
{
    QStringList names = columns;
    if (m_returns) {
        names.append(returning);
    }
    if (!checkNames(table, names)) {
        return;
    }
    QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(table, columns.join(QStringLiteral(", ")),
                           QStringList(columns.size(), QStringLiteral("?")).join(u','));
    if (m_returns) {
        sql += QStringLiteral(" RETURNING ") + returning;
    }
    m_valid = m_query.prepare(sql);
    if (!m_valid) {
        m_error = QStringLiteral("%1: %2").arg(table, m_query.lastError().text());
    }
}

bool BatchInsert::checkNames(const QString& table, const QStringList& columns)
{
    const Schema& schema = Schema::instance();
    if (!schema.hasTable(table)) {
        m_error = QStringLiteral("There is no table %1.").arg(table);
        return false;
    }
    for (const QString& column : columns) {
        if (!schema.hasColumn(table, column)) {
            m_error = QStringLiteral("The table %1 has no column %2.").arg(table, column);
            return false;
        }
    }
    return true;
}

bool BatchInsert::insert(const QVariantList& values)
{
    if (!m_valid) {
        return false;
    }
    if (values.size() != m_columnCount) {
        m_error = QStringLiteral("%1: %2 values for %3 columns.")
                      .arg(m_table)
                      .arg(values.size())
                      .arg(m_columnCount);
        return false;
    }
    for (int i = 0; i < m_columnCount; ++i) {
        m_query.bindValue(i, values.at(i));
    }
    if (!m_query.exec()) {
        m_error = QStringLiteral("%1: %2").arg(m_table, m_query.lastError().text());
        return false;
    }
    if (m_returns) {
        if (!m_query.next()) {
            m_error = QStringLiteral("%1: the new row's key did not come back.").arg(m_table);
            return false;
        }
        m_returned = m_query.value(0).toLongLong();
        m_query.finish();
    }
    return true;
}
