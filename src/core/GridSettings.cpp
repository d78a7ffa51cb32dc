#include "GridSettings.h"

#include "ErrorHandler.h"
#include "Session.h"
#include "Sql.h"
#include "Transaction.h"

#include <QSqlError>
#include <QSqlQuery>

namespace GridSettings {

namespace {

const QString Module = QStringLiteral("General Function");

SortType toSortType(int stored)
{
    switch (stored) {
    case int(SortType::Ascending):
        return SortType::Ascending;
    case int(SortType::Descending):
        return SortType::Descending;
    default:
        return SortType::None;
    }
}

bool failed(Session& session, const QString& procedure, const QSqlError& error)
{
    errorHandler(session, Sql::failure(Module, procedure, error));
    return false;
}

} // namespace

QList<Column> load(Session& session, const QString& formName, const QString& tableName)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(
            q,
            QStringLiteral("SELECT FieldName, Width, FPosition, SortType FROM tblGridSetting "
                           "WHERE LOWER(FormName) = LOWER(?) AND LOWER(Tablename) = LOWER(?) "
                           "ORDER BY FPosition"),
            {formName, tableName})) {
        failed(session, QStringLiteral("SetGridSetting"), q.lastError());
        return {};
    }
    QList<Column> columns;
    while (q.next()) {
        columns.append({q.value(0).toString(), q.value(1).toInt(), q.value(2).toInt(),
                        toSortType(q.value(3).toInt())});
    }
    return columns;
}

bool save(Session& session, const QString& formName, const QString& tableName,
          const QList<Column>& columns)
{
    const QString procedure = QStringLiteral("SaveGridSetting");
    if (columns.isEmpty()) {
        return true;
    }
    Transaction transaction(session);
    if (!transaction.isActive()) {
        errorHandler(session, Module, procedure, 1, transaction.error());
        return false;
    }
    QSqlQuery q(session.db());
    if (!Sql::exec(
            q,
            QStringLiteral("DELETE FROM tblGridSetting "
                           "WHERE LOWER(FormName) = LOWER(?) AND LOWER(Tablename) = LOWER(?)"),
            {formName, tableName})) {
        return failed(session, procedure, q.lastError());
    }
    for (const Column& column : columns) {
        if (!Sql::exec(q,
                       QStringLiteral("INSERT INTO tblGridSetting (Tablename, Width, FieldName, "
                                      "FormName, FPosition, SortType) VALUES (?, ?, ?, ?, ?, ?)"),
                       {tableName, column.width, column.fieldName, formName, column.position,
                        int(column.sortType)})) {
            return failed(session, procedure, q.lastError());
        }
    }
    if (!transaction.commit()) {
        errorHandler(session, Module, procedure, 1, transaction.error());
        return false;
    }
    return true;
}

} // namespace GridSettings
