#include "DataHelpers.h"

#include "ErrorHandler.h"
#include "Schema.h"
#include "Session.h"
#include "Sql.h"

#include <QSqlError>
#include <QSqlQuery>

namespace DataHelpers {

namespace {

const QString Module = QStringLiteral("General Function");

bool reportBadName(Session& session, const QString& procedure, qint64 number)
{
    const QString text = number == InvalidTableNumber ? QStringLiteral("Invalid Table Name")
                                                      : QStringLiteral("Invalid Column Name");
    errorHandler(session, Module, procedure, number, text);
    return false;
}

/** Vets names that arrive from callers before they become SQL text. */
bool checkNames(Session& session, const QString& procedure, const QString& table,
                const QStringList& columns = {})
{
    const Schema& schema = Schema::instance();
    if (!schema.hasTable(table)) {
        return reportBadName(session, procedure, InvalidTableNumber);
    }
    for (const QString& column : columns) {
        if (!schema.hasColumn(table, column)) {
            return reportBadName(session, procedure, InvalidColumnNumber);
        }
    }
    return true;
}

/** Splits "Col DESC, Col2" into its column names; false when it is not of that form. */
bool orderColumns(const QString& orderBy, QStringList* columns)
{
    for (const QString& part : orderBy.split(u',', Qt::SkipEmptyParts)) {
        const QStringList words = part.simplified().split(u' ');
        const bool directionOk =
            words.size() == 1 ||
            (words.size() == 2 &&
             (words[1].compare(QLatin1String("ASC"), Qt::CaseInsensitive) == 0 ||
              words[1].compare(QLatin1String("DESC"), Qt::CaseInsensitive) == 0));
        if (!directionOk) {
            return false;
        }
        columns->append(words[0]);
    }
    return true;
}

void reportQueryFailure(Session& session, const QString& procedure, const QSqlError& error)
{
    errorHandler(session, Sql::failure(Module, procedure, error));
}

/** The table readers tell a missing object and a faulty statement apart from other failures. */
void reportReadFailure(Session& session, const QString& procedure, const QSqlError& error)
{
    const QString code = error.nativeErrorCode();
    const QString text = error.databaseText();
    if (code == QLatin1String("42P01") || text.contains(QLatin1String("no such table"))) {
        reportBadName(session, procedure, InvalidTableNumber);
    } else if (code == QLatin1String("42703") || code == QLatin1String("42601") ||
               text.contains(QLatin1String("no such column")) ||
               text.contains(QLatin1String("syntax error"))) {
        reportBadName(session, procedure, InvalidColumnNumber);
    } else {
        reportQueryFailure(session, procedure, error);
    }
}

Rows readAll(QSqlQuery& q)
{
    Rows rows;
    while (q.next()) {
        rows.append(q.record());
    }
    return rows;
}

using FailureReport = void (*)(Session&, const QString&, const QSqlError&);

Rows select(Session& session, const QString& procedure, const QString& sql,
            const QVariantList& values, FailureReport report = reportQueryFailure)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q, sql, values)) {
        report(session, procedure, q.lastError());
        return {};
    }
    return readAll(q);
}

/** True when the query gives at least one row; false (reported) on failure. */
bool anyRow(Session& session, const QString& procedure, const QString& sql, const QVariant& value)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q, sql, {value})) {
        reportQueryFailure(session, procedure, q.lastError());
        return false;
    }
    return q.next();
}

QVariant asNumber(const QVariant& value, bool* ok)
{
    const QString text = value.toString().trimmed();
    const qlonglong whole = text.toLongLong(ok);
    if (*ok) {
        return whole;
    }
    const double real = text.toDouble(ok);
    return *ok ? QVariant(real) : QVariant();
}

bool inRanges(int code, std::initializer_list<std::pair<int, int>> ranges)
{
    for (const auto& [low, high] : ranges) {
        if (code >= low && code <= high) {
            return true;
        }
    }
    return false;
}

qint64 nextId(Session& session, const QString& procedure, const QString& column,
              const QString& table)
{
    if (!checkNames(session, procedure, table, {column})) {
        return 0;
    }
    QSqlQuery q(session.db());
    if (!Sql::exec(q, QStringLiteral("SELECT MAX(%1) FROM %2").arg(column, table))) {
        reportQueryFailure(session, procedure, q.lastError());
        return 0;
    }
    return (q.next() ? q.value(0).toLongLong() : 0) + 1;
}

Rows readTable(Session& session, const QString& procedure, const QString& table,
               const SqlFilter& filter, const QString& orderBy)
{
    QStringList orderNames;
    if (!orderColumns(orderBy, &orderNames)) {
        reportBadName(session, procedure, InvalidColumnNumber);
        return {};
    }
    if (!checkNames(session, procedure, table, orderNames)) {
        return {};
    }
    QString sql = QStringLiteral("SELECT * FROM ") + table;
    if (!filter.where.trimmed().isEmpty()) {
        sql += QStringLiteral(" WHERE ") + filter.where;
    }
    if (!orderNames.isEmpty()) {
        sql += QStringLiteral(" ORDER BY ") + orderBy.simplified();
    }
    return select(session, procedure, sql, filter.values, reportReadFailure);
}

bool recordUsed(Session& session, const QString& procedure, const QString& table,
                const QString& column, const QVariant& value, const QString& kind)
{
    if (!checkNames(session, procedure, table, {column})) {
        return false;
    }
    if (kind.compare(QLatin1String("N"), Qt::CaseInsensitive) != 0) {
        // Text keys and names are one and the same whatever their case.
        return anyRow(session, procedure,
                      QStringLiteral("SELECT 1 FROM %1 WHERE LOWER(%2) = LOWER(?) LIMIT 1")
                          .arg(table, column),
                      value.toString());
    }
    bool ok = false;
    const QVariant number = asNumber(value, &ok);
    if (!ok) {
        errorHandler(session, Module, procedure, TypeMismatchNumber,
                     QStringLiteral("Type mismatch"));
        return false;
    }
    return anyRow(session, procedure,
                  QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ? LIMIT 1").arg(table, column),
                  number);
}

} // namespace

QVariant replaceNull(const QVariant& value, const QVariant& replacement)
{
    return value.isNull() ? replacement : value;
}

bool isBlank(const QString& text)
{
    return text.trimmed().isEmpty();
}

bool typeCheck(int keyCode, KeyData data, KeyEvent event)
{
    if (event == KeyEvent::Press) {
        switch (data) {
        case KeyData::Text:
            return inRanges(keyCode, {{65, 90}, {97, 122}, {32, 32}, {8, 8}, {13, 13}});
        case KeyData::WholeNumber:
            return inRanges(keyCode, {{48, 57}, {8, 8}, {13, 13}});
        case KeyData::Decimal:
            return inRanges(keyCode, {{48, 57}, {8, 8}, {13, 13}, {46, 46}});
        }
        return false;
    }
    switch (data) {
    case KeyData::Text:
        return inRanges(keyCode, {{65, 90},
                                  {8, 9},
                                  {12, 13},
                                  {16, 20},
                                  {32, 40},
                                  {27, 27},
                                  {44, 46},
                                  {92, 93},
                                  {112, 123},
                                  {144, 145}});
    case KeyData::WholeNumber:
        return inRanges(keyCode, {{48, 57},
                                  {96, 105},
                                  {8, 8},
                                  {12, 13},
                                  {16, 20},
                                  {33, 40},
                                  {27, 27},
                                  {44, 46},
                                  {92, 93},
                                  {112, 123},
                                  {144, 145}});
    case KeyData::Decimal:
        return inRanges(keyCode, {{48, 57}, {8, 8}, {13, 13}, {46, 46}});
    }
    return false;
}

bool typeCheck(int keyCode, const QVariant& dataType, const QVariant& eventType)
{
    const QString type = dataType.toString().trimmed().toUpper();
    const QString event = eventType.toString().trimmed().toUpper();
    KeyData data;
    if (type == QLatin1String("STRING") || type == QLatin1String("0")) {
        data = KeyData::Text;
    } else if (type == QLatin1String("INT") || type == QLatin1String("1")) {
        data = KeyData::WholeNumber;
    } else if (type == QLatin1String("DOUBLE") || type == QLatin1String("2")) {
        data = KeyData::Decimal;
    } else {
        return false;
    }
    if (event == QLatin1String("KEYPRESS") || event == QLatin1String("2")) {
        return typeCheck(keyCode, data, KeyEvent::Press);
    }
    if (event == QLatin1String("KEYUP") || event == QLatin1String("KEYDOWN") ||
        event == QLatin1String("0") || event == QLatin1String("1")) {
        return typeCheck(keyCode, data, KeyEvent::UpDown);
    }
    return false;
}

int changeCase(int keyCode)
{
    return keyCode >= 97 && keyCode <= 122 ? keyCode - 32 : keyCode;
}

qint64 generateId(Session& session, const QString& column, const QString& table)
{
    return nextId(session, QStringLiteral("GenerateID"), column, table);
}

qint64 generateIdWithIndicator(Session& session, const QString& column, const QString& table)
{
    return nextId(session, QStringLiteral("GenerateIDWithIndicator"), column, table);
}

qint64 generateUniqueId(const QDateTime& moment)
{
    return moment.toString(QStringLiteral("MMddHHmmss")).toLongLong();
}

Rows read(Session& session, const QString& module, const QString& procedure, const QString& sql,
          const QVariantList& values)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q, sql, values)) {
        errorHandler(session, Sql::failure(module, procedure, q.lastError()));
        return {};
    }
    return readAll(q);
}

Rows tableInfo(Session& session, const QString& table, const SqlFilter& filter,
               const QString& orderBy)
{
    return readTable(session, QStringLiteral("GetTableInfo"), table, filter, orderBy);
}

Rows tableInfoWithIndicator(Session& session, const QString& table, const SqlFilter& filter,
                            const QString& orderBy)
{
    return readTable(session, QStringLiteral("GetTableInfoWithIndicator"), table, filter, orderBy);
}

Rows indicatorInfo(Session& session, qint64 parentId, bool showAll, bool orderByName)
{
    QString sql = QStringLiteral("SELECT * FROM tblIndicator WHERE ParentID = ?");
    if (!showAll) {
        sql += QStringLiteral(" AND Show = -1");
    }
    // Names stand in the order a reader expects, whatever the engine's collation.
    sql += orderByName ? QStringLiteral(" ORDER BY LOWER(ItemName), ItemID")
                       : QStringLiteral(" ORDER BY ItemID");
    return select(session, QStringLiteral("GetIndicatorInfo"), sql, {parentId}, reportReadFailure);
}

Rows crewInfo(Session& session)
{
    return select(session, QStringLiteral("GetCrewInfo"),
                  QStringLiteral("SELECT CrewID, CAST(CrewNumber AS TEXT) || '   ' || "
                                 "COALESCE(Description, '') AS CrewNumber FROM tblCrew "
                                 "ORDER BY tblCrew.CrewNumber"),
                  {});
}

qint64 crewIdByService(Session& session, qint64 id, const QString& table)
{
    const QString procedure = QStringLiteral("GetCrewIDByService");
    const QString key = table.compare(QLatin1String("tblWoServiceUsed"), Qt::CaseInsensitive) == 0
                            ? QStringLiteral("NServiceUsedID")
                            : QStringLiteral("ServiceUsedID");
    if (!checkNames(session, procedure, table, {key, QStringLiteral("CrewID")})) {
        return 0;
    }
    const Rows rows =
        select(session, procedure,
               QStringLiteral("SELECT CrewID FROM %1 WHERE %2 = ?").arg(table, key), {id});
    return rows.isEmpty() ? 0 : rows.last().value(0).toLongLong();
}

bool isRecordUsed(Session& session, const QString& table, const QString& column,
                  const QVariant& value, const QString& kind)
{
    return recordUsed(session, QStringLiteral("IsRecordUsed"), table, column, value, kind);
}

bool isDuplicate(Session& session, const QString& table, const QString& column,
                 const QString& newValue, const QString& oldValue, bool numeric)
{
    if (newValue.trimmed().toUpper() == oldValue.trimmed().toUpper()) {
        return false;
    }
    return recordUsed(session, QStringLiteral("IsDuplicate"), table, column, newValue,
                      numeric ? QStringLiteral("N") : QStringLiteral("S"));
}

qint64 recordCount(Session& session, const QString& table, const SqlFilter& filter)
{
    const QString procedure = QStringLiteral("GetRecordCount");
    if (!checkNames(session, procedure, table)) {
        return 0;
    }
    QString sql = QStringLiteral("SELECT COUNT(*) AS RecCount FROM ") + table;
    if (!filter.where.trimmed().isEmpty()) {
        sql += QStringLiteral(" WHERE ") + filter.where;
    }
    const Rows rows = select(session, procedure, sql, filter.values);
    return rows.isEmpty() ? 0 : rows.first().value(0).toLongLong();
}

} // namespace DataHelpers
