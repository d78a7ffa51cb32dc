#include "QuickFind.h"

#include "ErrorHandler.h"
#include "Options.h"
#include "Schema.h"
#include "Session.h"
#include "Sql.h"
#include "SqlValue.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

const QString Module = QStringLiteral("frmQuickFind");

enum class Inactive { None, TextFlag, YesNo };

// Captions with blanks and capitals are the grid's column names, so every
// column carries a quoted alias that both engines hand back as written.
const QString CrewText = QStringLiteral(
    "CASE WHEN tblCrew.CrewID <> 0 THEN CAST(tblCrew.CrewNumber AS TEXT) || '   ' || "
    "COALESCE(tblCrew.Description, '') ELSE '' END");

} // namespace

struct QuickFind::Query
{
    const char* table;
    const char* key;
    Inactive inactive;
    const char* option;
    std::optional<UserRights::Right> addRight;
    QString select;
};

const QuickFind::Query* QuickFind::queryOf(const QString& table)
{
    static const QuickFind::Query queries[] = {
        {"tblEquipment", "EquipmentID", Inactive::TextFlag, "EQUIPMENTINACTIVE", UserRights::EqAdd,
         QStringLiteral(
             "SELECT tblEquipment.EquipmentID AS \"EquipmentID\", tblEquipment.UnitNo AS \"Unit "
             "No\", tblEquipment.EquipmentName AS \"Name\", tblIndicator.ItemName AS \"Type\", "
             "tblIndicator_1.ItemName AS \"Make\", tblIndicator_2.ItemName AS \"Model\", "
             "tblEquipment.EquipmentSerialNo AS \"Serial No\", tblSite.SiteName AS \"Site\", "
             "tblLocation.LocationName AS \"Location\", %1 AS \"Assigned to\", "
             "tblEquipment.Inactive AS \"Inactive\", tblEquipment.LicenseNo AS \"License\" "
             "FROM tblEquipment "
             "LEFT JOIN tblIndicator ON tblEquipment.EquipmentType = tblIndicator.ItemID "
             "LEFT JOIN tblIndicator tblIndicator_1 "
             "ON tblEquipment.EquipmentMake = tblIndicator_1.ItemID "
             "LEFT JOIN tblIndicator tblIndicator_2 "
             "ON tblEquipment.EquipmentModel = tblIndicator_2.ItemID "
             "LEFT JOIN tblSite ON tblEquipment.SiteID = tblSite.SiteID "
             "LEFT JOIN tblLocation ON tblEquipment.LocationID = tblLocation.LocationID "
             "LEFT JOIN tblCrew ON tblEquipment.CrewID = tblCrew.CrewID")
             .arg(CrewText)},
        {"tblPart", "PartID", Inactive::YesNo, "PARTINACTIVE", UserRights::PaAdd,
         QStringLiteral(
             "SELECT tblPart.PartID AS \"PartID\", tblPart.PartID AS \"Part Number\", "
             "tblPart.Description AS \"Description\", tblIndicator.ItemName AS \"Part Category\", "
             "tblPart.Quantity AS \"Qty on Hand\", tblPart.Price AS \"Price\", "
             "tblSupplier.Name AS \"Supplier\", tblPart.Inactive AS \"Inactive\" "
             "FROM tblPart LEFT JOIN tblIndicator ON tblPart.PartCategoryID = tblIndicator.ItemID "
             "LEFT JOIN tblSupplier ON tblPart.SupplierID = tblSupplier.SupplierID")},
        {"tblEmployee", "EmployeeID", Inactive::None, nullptr, std::nullopt,
         QStringLiteral(
             "SELECT tblEmployee.EmployeeID AS \"EmployeeID\", tblEmployee.EmployeeID AS "
             "\"Employee Number\", tblEmployee.FirstName AS \"First Name\", "
             "tblEmployee.InitialName AS \"Initial\", tblEmployee.Lastname AS \"Last Name\", "
             "tblEmployee.Address AS \"Address\", tblEmployee.City AS \"City\", "
             "tblIndicator.ItemName AS \"State\", tblIndicator_1.ItemName AS \"Country\", "
             "tblEmployee.Zip AS \"Zip\", tblEmployee.Phone AS \"Phone\", "
             "tblEmployee.CellPhone AS \"Cell Phone\", tblEmployee.Email AS \"Email\", "
             "tblEmployee.Pager AS \"Pager\", tblSite.SiteName AS \"Site\", "
             "tblEmployee.Skills AS \"Skills\", %1 AS \"Crew\", "
             "tblIndicator_2.ItemName AS \"Position\", tblEmployee.LaborCost AS \"Labor Cost\", "
             "tblEmployee.LaborRate AS \"Labor Rate\", tblEmployee.Inactive AS \"Inactive\" "
             "FROM tblEmployee "
             "LEFT JOIN tblIndicator ON tblEmployee.State = tblIndicator.ItemID "
             "LEFT JOIN tblIndicator tblIndicator_1 ON tblEmployee.Country = tblIndicator_1.ItemID "
             "LEFT JOIN tblSite ON tblEmployee.Site = tblSite.SiteID "
             "LEFT JOIN tblCrew ON tblEmployee.Crew = tblCrew.CrewID "
             "LEFT JOIN tblIndicator tblIndicator_2 "
             "ON tblEmployee.EmpPosition = tblIndicator_2.ItemID")
             .arg(CrewText)},
        {"tblSupplier", "SupplierID", Inactive::None, nullptr, std::nullopt,
         QStringLiteral(
             "SELECT tblSupplier.SupplierID AS \"SupplierID\", tblSupplier.Name AS \"Name\", "
             "tblSupplier.Phone AS \"Phone\", tblSupplier.Fax AS \"Fax\", "
             "tblSupplier.Address AS \"Address\", tblSupplier.Tax AS \"Tax\", "
             "tblSupplier.Terms AS \"Terms\", tblSupplier.CreditLimit AS \"Credit Limit\", "
             "tblSupplier.Email AS \"Email\", tblSupplier.WebSite AS \"WebSite\", "
             "tblSupplier.Address2 AS \"Address2\", tblSupplier.City AS \"City\", "
             "tblIndicator.ItemName AS \"State\", tblSupplier.Zip AS \"Zip\", "
             "tblSupplier.Atten AS \"Atten\", tblSupplier.LicenseNo AS \"License No\", "
             "tblSupplier.ContactName AS \"Contact Name\" "
             "FROM tblSupplier LEFT JOIN tblIndicator ON tblSupplier.State = tblIndicator.ItemID")},
        {"tblLocation", "LocationID", Inactive::None, nullptr, std::nullopt,
         QStringLiteral("SELECT tblLocation.LocationID AS \"LocationID\", "
                        "tblLocation.LocationName AS \"LocationName\", "
                        "tblLocation.Description AS \"Description\", tblSite.SiteName AS \"Site\" "
                        "FROM tblLocation LEFT JOIN tblSite ON tblLocation.Site = tblSite.SiteID")},
    };
    for (const QuickFind::Query& query : queries) {
        if (table.compare(QLatin1String(query.table), Qt::CaseInsensitive) == 0) {
            return &query;
        }
    }
    return nullptr;
}

namespace {

bool isNumeric(Schema::Type type)
{
    switch (type) {
    case Schema::Type::AutoKey:
    case Schema::Type::Key:
    case Schema::Type::Long:
    case Schema::Type::Int:
    case Schema::Type::Double:
    case Schema::Type::YesNo:
        return true;
    default:
        return false;
    }
}

QString inactiveCondition(Inactive form, const QString& table, bool showInactive)
{
    const QString column = table + QStringLiteral(".Inactive");
    if (form == Inactive::TextFlag) {
        return showInactive ? QStringLiteral("(%1 = '1' OR %1 = '0')").arg(column)
                            : column + QStringLiteral(" = '0'");
    }
    if (form == Inactive::YesNo) {
        return showInactive ? QStringLiteral("(%1 = -1 OR %1 = 0)").arg(column)
                            : column + QStringLiteral(" = 0");
    }
    return QString();
}

QString fieldKind(const QString& fieldType)
{
    return fieldType.trimmed().toUpper();
}

} // namespace

QuickFind::QuickFind(Session& session, const QString& table)
    : m_session(session), m_table(table), m_query(queryOf(table))
{
    if (m_query) {
        m_table = QString::fromLatin1(m_query->table);
    }
}

QString QuickFind::keyColumn() const
{
    return m_query ? QString::fromLatin1(m_query->key) : QString();
}

bool QuickFind::hasInactiveChoice() const
{
    return m_query && m_query->option;
}

QString QuickFind::optionName() const
{
    return hasInactiveChoice() ? QString::fromLatin1(m_query->option) : QString();
}

bool QuickFind::showInactive()
{
    return hasInactiveChoice() && Options::option(m_session, optionName(), true).trimmed() == u"1";
}

void QuickFind::setShowInactive(bool show)
{
    if (hasInactiveChoice()) {
        Options::setOption(m_session, optionName(),
                           show ? QStringLiteral("1") : QStringLiteral("0"), true);
    }
}

QString QuickFind::orderBy(const QString& mainField) const
{
    const QString key = m_table + u'.' + keyColumn();
    const Schema::Column* column = Schema::instance().column(m_table, mainField);
    if (!column) {
        return key;
    }
    const QString main = m_table + u'.' + column->name;
    // Nulls first and letters without case, on either engine, as the rows were always listed.
    return isNumeric(column->type) ? QStringLiteral("%1 ASC NULLS FIRST, %2").arg(main, key)
                                   : QStringLiteral("LOWER(%1) ASC NULLS FIRST, %2").arg(main, key);
}

QuickFind::Loaded QuickFind::load(const Request& request)
{
    if (!m_query) {
        return {};
    }
    QStringList conditions;
    QVariantList values;
    const QString inactive = inactiveCondition(m_query->inactive, m_table, showInactive());
    if (!inactive.isEmpty()) {
        conditions.append(inactive);
    }
    if (!request.exclude.isEmpty()) {
        const bool numericKey = isNumeric(Schema::instance().column(m_table, keyColumn())->type);
        for (const QString& key : request.exclude) {
            values.append(numericKey ? QVariant(key.trimmed().toLongLong()) : QVariant(key));
        }
        conditions.append(QStringLiteral("%1.%2 NOT IN (%3)")
                              .arg(m_table, keyColumn(),
                                   QStringList(values.size(), QStringLiteral("?")).join(u',')));
    }
    if (request.partCategory != 0 && m_table == u"tblPart") {
        conditions.append(QStringLiteral("tblPart.PartCategoryID = ?"));
        values.append(request.partCategory);
    }
    QString sql = m_query->select;
    if (!conditions.isEmpty()) {
        sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    }
    sql += QStringLiteral(" ORDER BY ") + orderBy(request.mainField);

    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q, sql, values)) {
        report(q.lastError().text());
        return {};
    }
    Loaded loaded;
    const QSqlRecord shape = q.record();
    for (int i = 0; i < shape.count(); ++i) {
        loaded.columns.append(shape.fieldName(i));
    }
    while (q.next()) {
        loaded.rows.append(q.record());
    }
    return loaded;
}

QList<QuickFind::Field> QuickFind::fields(const QStringList& columns, const QStringList& leftOut)
{
    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q,
                   QStringLiteral("SELECT DISTINCT FieldName, FieldDesc, FieldType, RowID "
                                  "FROM tblTableFields WHERE LOWER(TableName) = LOWER(?) "
                                  "ORDER BY RowID"),
                   {m_table})) {
        report(q.lastError().text());
        return {};
    }
    QList<Field> found;
    while (q.next()) {
        Field field{q.value(0).toString(), q.value(1).toString(), fieldKind(q.value(2).toString())};
        // A caption the query does not give has no column to search.
        if (columns.contains(field.caption, Qt::CaseInsensitive) &&
            !leftOut.contains(field.caption, Qt::CaseInsensitive)) {
            found.append(field);
        }
    }
    return found;
}

bool QuickFind::mayAdd() const
{
    return m_query && (!m_query->addRight || m_session.rights().has(*m_query->addRight));
}

int QuickFind::mainFieldIndex(const QList<Field>& fields, const QString& mainField)
{
    for (int i = 0; i < fields.size(); ++i) {
        if (fields[i].name.compare(mainField, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return 0;
}

QuickFind::Look QuickFind::look(const QString& column)
{
    if (column == u"Labor Cost" || column == u"Labor Rate" || column == u"Price") {
        return Look::Money;
    }
    return column == u"Inactive" ? Look::Tick : Look::Plain;
}

QuickFind::InputRule QuickFind::inputRule(const QString& fieldType)
{
    const QString kind = fieldKind(fieldType);
    if (kind == u"INT") {
        return {10, QRegularExpression(QStringLiteral("[0-9]*"))};
    }
    if (kind == u"DECIMAL") {
        return {15, QRegularExpression(QStringLiteral("-?[0-9]*\\.?[0-9]*"))};
    }
    if (kind == u"DATETIME") {
        return {10, QRegularExpression(QStringLiteral("[0-9/-]*"))};
    }
    return {50, QRegularExpression(QStringLiteral(".*"))};
}

void QuickFind::report(const QString& text)
{
    errorHandler(m_session, Module, QStringLiteral("ShowQuickFindMain - ") + m_table,
                 DataHelpers::InvalidColumnNumber, text);
}

QuickFindColumn::QuickFindColumn(const QVariantList& values, const QString& fieldType)
    : m_count(values.size())
{
    const QString kind = fieldKind(fieldType);
    if (kind == u"INT" || kind == u"DECIMAL") {
        m_kind = Kind::Number;
        for (const QVariant& value : values) {
            bool ok = false;
            const double number = value.toDouble(&ok);
            m_numbers.append(ok && !value.isNull() ? std::optional<double>(number) : std::nullopt);
        }
    } else if (kind == u"DATETIME") {
        m_kind = Kind::Day;
        for (const QVariant& value : values) {
            m_days.append(SqlValue::toDate(value));
        }
    } else {
        for (const QVariant& value : values) {
            m_texts.append(value.isNull() ? QString() : value.toString().toCaseFolded());
        }
    }
}

int QuickFindColumn::find(const QString& text) const
{
    if (text.isEmpty()) {
        return m_count > 0 ? 0 : -1;
    }
    if (m_kind == Kind::Text) {
        const QString wanted = text.toCaseFolded();
        for (qsizetype i = 0; i < m_texts.size(); ++i) {
            if (!m_texts[i].isNull() && m_texts[i].startsWith(wanted)) {
                return int(i);
            }
        }
        return -1;
    }
    if (m_kind == Kind::Number) {
        bool ok = false;
        const double wanted = text.trimmed().toDouble(&ok);
        for (qsizetype i = 0; ok && i < m_numbers.size(); ++i) {
            if (m_numbers[i] == wanted) {
                return int(i);
            }
        }
        return -1;
    }
    QDate wanted = QDate::fromString(text.trimmed(), Qt::ISODate);
    if (!wanted.isValid()) {
        wanted = QDate::fromString(text.trimmed(), QStringLiteral("M/d/yyyy"));
    }
    return wanted.isValid() ? int(m_days.indexOf(wanted)) : -1;
}
