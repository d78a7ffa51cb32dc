#include "Schema.h"

#include "UserRights.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

using T = SqlDialect::ColumnType;

QList<Schema::Column> cols(std::initializer_list<std::pair<const char*, T>> list)
{
    QList<Schema::Column> result;
    for (const auto& [name, type] : list) {
        result.append({QString::fromLatin1(name), type});
    }
    return result;
}

void addNamed(QList<Schema::Column>& columns, const char* prefix, int first, int last, T type)
{
    for (int i = first; i <= last; ++i) {
        columns.append({QString::fromLatin1(prefix) + QString::number(i), type});
    }
}

/** The schedule columns that master services and services on equipment share. */
QList<Schema::Column> scheduleColumns()
{
    QList<Schema::Column> c = cols({{"JobNo", T::Text},
                                    {"Name", T::Text},
                                    {"CrewID", T::Long},
                                    {"CostCenterID", T::Long},
                                    {"Period", T::Text},
                                    {"EInterval", T::Long},
                                    {"RenewalOn", T::Text},
                                    {"SeparateWo", T::Flag},
                                    {"LaborEstimate", T::Double},
                                    {"CostEstimate", T::Double}});
    for (const char* day : {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun", "FirstW", "SecondW",
                            "ThirdW", "ForthW", "LastW", "Dom"}) {
        c.append({QString::fromLatin1(day), T::Pattern});
    }
    addNamed(c, "DOM", 1, 5, T::Int);
    for (const char* month :
         {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dece"}) {
        c.append({QString::fromLatin1(month), T::Pattern});
    }
    c.append({QStringLiteral("Note"), T::Text});
    return c;
}

QList<Schema::Column> equipmentColumns()
{
    QList<Schema::Column> c = cols({
        {"EquipmentID", T::Key},
        {"EquipmentName", T::Text},
        {"UnitNo", T::Text},
        {"Capacity", T::Text},
        {"EquipmentSerialNo", T::Text},
        {"AttachedTo", T::Text},
        {"Bar_Code", T::Text},
        {"EquipmentYear", T::Text},
        {"EquipmentType", T::Long},
        {"EquipmentMake", T::Long},
        {"EquipmentModel", T::Long},
        {"InstalledDate", T::Date},
        {"SiteID", T::Long},
        {"LocationID", T::Long},
        {"CrewID", T::Long},
        {"Inactive", T::Flag},
        {"LeaseOwnedLeased", T::Int},
        {"LeaseCompany", T::Long},
        {"LeaseStartDate", T::Date},
        {"LeaseEndDate", T::Date},
        {"LeasePeriod", T::Int},
        {"LeaseInterval", T::Long},
        {"LeasePayment", T::Double},
        {"WarrantyStartDate", T::Date},
        {"WarrantyEndDate", T::Date},
        {"WarrantyPeriod", T::Int},
        {"WarrantyInterval", T::Long},
        {"Notes", T::Text},
    });
    addNamed(c, "UserDefined", 1, 10, T::Text);
    c += cols({
        {"EngineSize", T::Text},
        {"EngineSerialNo", T::Text},
        {"Cycle", T::Text},
        {"EngineMake", T::Long},
        {"EngineModel", T::Long},
        {"EngineFuelType", T::Long},
        {"VehicleOwnedLeased", T::Int},
        {"BeginingHub", T::Double},
        {"StateLicensed", T::Long},
        {"LicenseNo", T::Text},
        {"StickerNumber", T::Text},
        {"LicenseRenewalDate", T::Date},
        {"PermanentLicense", T::Int},
        {"InspectionDate", T::Date},
        {"VehicleFuelType", T::Long},
        {"Tyre", T::Text},
        {"Rear_Tires", T::Text},
        {"Weight", T::Text},
        {"Vin", T::Text},
        {"Body", T::Long},
        {"Chassis", T::Long},
        {"Trans", T::Long},
        {"VehicleEngineType", T::Long},
        {"VehicleEngineNo", T::Text},
        {"VehicleColor", T::Text},
        {"VehicleEngineModel", T::Text},
        {"SupplierID", T::Long},
        {"SupplierPartNo", T::Text},
        {"ManufactureID", T::Long},
        {"ManufacturePartNo", T::Text},
        {"AcquisitionDate", T::Date},
        {"AcquisitionCost", T::Double},
        {"AdditionalCost", T::Double},
        {"PurchaseNotes", T::Text},
        {"Totalcost", T::Double},
        {"SalvageValue", T::Double},
        {"LifeYears", T::Long},
    });
    return c;
}

QList<Schema::Column> partListColumns(const char* owner)
{
    return cols({{owner, T::Long},
                 {"PartID", T::Text},
                 {"QuantityRequired", T::Double},
                 {"Price", T::Double},
                 {"SupplierID", T::Long}});
}

QList<Schema::Column> serviceUsedColumns()
{
    QList<Schema::Column> c =
        cols({{"ServiceUsedID", T::AutoKey}, {"EquipmentID", T::Long}, {"ServiceID", T::Long}});
    c += scheduleColumns();
    c += cols({{"LastDateScheduled", T::Date},
               {"LastDatePerformed", T::Date},
               {"NextScheduledDate", T::Date},
               {"NextScheduledCount", T::Long}});
    // Any non-zero number means inactive; inserts that leave it out make an active service.
    c.append({QStringLiteral("Inactive"), T::Int, false, QStringLiteral("0")});
    return c;
}

QList<Schema::Column> workOrderLineColumns()
{
    return cols({
        {"NserviceUsedID", T::AutoKey},
        {"WorkOrderNo", T::Long},
        {"ServiceUsedID", T::Long},
        {"ServiceID", T::Long},
        {"EquipmentID", T::Long},
        {"LastDateScheduled", T::Date},
        {"LastDatePerformed", T::Date},
        {"NextScheduledDate", T::Date},
        {"Name", T::Text},
        {"CrewID", T::Long},
        {"CostCenterID", T::Long},
        {"SeparateWo", T::Flag},
        {"LaborEstimate", T::Double},
        {"CostEstimate", T::Double},
        {"Note", T::Text},
        {"Period", T::Text},
        {"JobNo", T::Text},
        {"Completed", T::YesNo},
        {"Skip", T::YesNo},
        {"StartTime", T::Time},
        {"EndTime", T::Time},
        {"Workhrs", T::Time},
        {"CountValue", T::Long},
        {"SupplierID", T::Long},
    });
}

QList<Schema::Column> historyColumns()
{
    return cols({
        {"WorkOrderNo", T::Long},
        {"ServiceUsedID", T::Long},
        {"EquipmentID", T::Long},
        {"ServiceID", T::Long},
        {"ServiceName", T::Text},
        {"CrewID", T::Long},
        {"CrewNumber", T::Long},
        {"LastDateScheduled", T::Date},
        {"LastDatePerformed", T::Date},
        {"NextScheduledDate", T::Date},
        {"CostCenterID", T::Text},
        {"SeparateWo", T::Flag},
        {"LaborEstimate", T::Double},
        {"CostEstimate", T::Double},
        {"Note", T::Text},
        {"Period", T::Text},
        {"JobNo", T::Text},
        {"CountValue", T::Long},
        {"Skip", T::YesNo},
        {"StartTime", T::Time},
        {"EndTime", T::Time},
        {"Workhrs", T::Time},
        {"SupplierID", T::Long},
        {"SupplierName", T::Text},
        {"StartDate", T::Date},
        {"CompleteDate", T::Date},
    });
}

QList<Schema::Column> userColumns()
{
    QList<Schema::Column> c =
        cols({{"UserName", T::TextKey}, {"Password", T::Text}, {"EmployeeID", T::Text}});
    for (int right = 0; right < UserRights::Count; ++right) {
        c.append({UserRights::columnName(UserRights::Right(right)), T::Flag});
    }
    return c;
}

} // namespace

const Schema& Schema::instance()
{
    static const Schema schema;
    return schema;
}

Schema::Schema()
{
    QList<Column> workorder = cols({{"WorkOrderNo", T::AutoKey},
                                    {"EquipmentID", T::Long},
                                    {"Printed", T::YesNo},
                                    {"Complete", T::YesNo},
                                    {"CompletedDate", T::Date}});
    workorder.append({QStringLiteral("WoDate"), T::Date, true});

    QList<Column> crewHistory =
        cols({{"EquipmentID", T::Long}, {"CrewNumber", T::Text}, {"CrewDescription", T::Text}});
    crewHistory.append({QStringLiteral("CrewDate"), T::DateTime, true});

    QList<Column> services = cols({{"ServiceID", T::Key}});
    services += scheduleColumns();

    m_tables = {
        {QStringLiteral("tblEquipment"), equipmentColumns()},
        {QStringLiteral("tblEquipmentCount"), cols({{"EquipmentID", T::Long},
                                                    {"ChangeDate", T::Date},
                                                    {"CountType", T::Text},
                                                    {"CountValue", T::Long}})},
        {QStringLiteral("tblEquipmentCrewHistory"), crewHistory},
        {QStringLiteral("tblEquipmentDepreciation"), cols({{"EquipmentID", T::Long},
                                                           {"EndofYear", T::Long},
                                                           {"AnnualDepreciation", T::Double},
                                                           {"AccumualtedDepreciation", T::Double},
                                                           {"BookValue", T::Double}})},
        {QStringLiteral("tblEquipmentImage"),
         cols({{"EquipmentID", T::Long}, {"ImageName", T::Text}, {"imagedata", T::Blob}})},
        {QStringLiteral("tblEquipmentDocument"),
         cols({{"EquipmentID", T::Long}, {"DocumentName", T::Text}})},
        {QStringLiteral("tblEquipmentPart"), partListColumns("EquipmentID")},
        {QStringLiteral("tblEquipmentScan"),
         cols({{"EquipmentID", T::Long}, {"ScanTime", T::DateTime}, {"ScanStatus", T::Text}})},
        {QStringLiteral("tblServices"), services},
        {QStringLiteral("tblServicesPart"), partListColumns("ServiceID")},
        {QStringLiteral("tblServiceUsed"), serviceUsedColumns()},
        {QStringLiteral("tblServiceUsedPart"), partListColumns("ServiceUsedID")},
        {QStringLiteral("tblTempServicePart"),
         cols({{"PartID", T::Text}, {"Quantity", T::Double}, {"Price", T::Double}})},
        {QStringLiteral("tblWorkorder"), workorder},
        {QStringLiteral("tblWoServiceUsed"), workOrderLineColumns()},
        {QStringLiteral("tblWoPartUsed"), cols({{"ServiceUsedID", T::Long},
                                                {"PartID", T::Text},
                                                {"QuantityRequired", T::Double},
                                                {"QuantityUsed", T::Double},
                                                {"Price", T::Double},
                                                {"Used", T::YesNo},
                                                {"SupplierID", T::Long}})},
        {QStringLiteral("tblWOServiceUsedHistory"), historyColumns()},
        {QStringLiteral("tblWoPartHistory"), cols({{"ServiceusedID", T::Long},
                                                   {"PartID", T::Text},
                                                   {"Description", T::Text},
                                                   {"PartCategoryID", T::Text},
                                                   {"Price", T::Double},
                                                   // The supplier's name, kept if it goes.
                                                   {"SupplierID", T::Text},
                                                   {"QuantityRequired", T::Double},
                                                   {"QuantityUsed", T::Double}})},
        {QStringLiteral("tblPart"), cols({{"PartID", T::TextKey},
                                          {"Description", T::Text},
                                          {"PartCategoryID", T::Long},
                                          {"Quantity", T::Double},
                                          {"Price", T::Double},
                                          {"SupplierID", T::Long},
                                          {"QtyMax", T::Double},
                                          {"QtyMin", T::Double},
                                          {"Inactive", T::YesNo},
                                          {"Notes", T::Text},
                                          {"Bin", T::Text},
                                          {"Bar_Code", T::Text},
                                          {"TrackInventory", T::YesNo}})},
        {QStringLiteral("tblSupplier"), cols({{"SupplierID", T::Key},
                                              {"Name", T::Text},
                                              {"Tax", T::Text},
                                              {"Terms", T::Text},
                                              {"CreditLimit", T::Double},
                                              {"Email", T::Text},
                                              {"WebSite", T::Text},
                                              {"Address", T::Text},
                                              {"Address2", T::Text},
                                              {"City", T::Text},
                                              {"State", T::Long},
                                              {"Zip", T::Text},
                                              {"Phone", T::Text},
                                              {"Fax", T::Text},
                                              {"Atten", T::Text},
                                              {"LicenseNo", T::Text},
                                              {"ContactName", T::Text},
                                              {"Notes", T::Text}})},
        {QStringLiteral("tblEmployee"), cols({{"EmployeeID", T::TextKey}, {"FirstName", T::Text},
                                              {"InitialName", T::Text},   {"Lastname", T::Text},
                                              {"BirthDate", T::Date},     {"Gender", T::Text},
                                              {"Address", T::Text},       {"City", T::Text},
                                              {"State", T::Long},         {"Country", T::Long},
                                              {"Zip", T::Text},           {"Phone", T::Text},
                                              {"CellPhone", T::Text},     {"Email", T::Text},
                                              {"Pager", T::Text},         {"SS", T::Text},
                                              {"LicenseNo", T::Text},     {"Site", T::Long},
                                              {"Skills", T::Text},        {"Crew", T::Long},
                                              {"EmpPosition", T::Long},   {"LaborCost", T::Double},
                                              {"LaborRate", T::Double},   {"Inactive", T::Flag},
                                              {"IncludeWoList", T::Flag}})},
        {QStringLiteral("tblIndicator"), cols({{"ItemID", T::AutoKey},
                                               {"ParentId", T::Long},
                                               {"ItemName", T::Text},
                                               {"Show", T::YesNo},
                                               {"FSize", T::Int}})},
        {QStringLiteral("tblCrew"),
         cols({{"CrewID", T::AutoKey}, {"CrewNumber", T::Long}, {"Description", T::Text}})},
        {QStringLiteral("tblCostCenter"),
         cols({{"CostCenterID", T::AutoKey}, {"Description", T::Text}, {"Budget", T::Double}})},
        {QStringLiteral("tblSite"), cols({{"SiteID", T::AutoKey},
                                          {"SiteName", T::Text},
                                          {"Address", T::Text},
                                          {"City", T::Text},
                                          {"StateID", T::Long},
                                          {"Zip", T::Text}})},
        {QStringLiteral("tblLocation"), cols({{"LocationID", T::AutoKey},
                                              {"LocationName", T::Text},
                                              {"Description", T::Text},
                                              {"Site", T::Long}})},
        {QStringLiteral("tblSysOption"), cols({{"SysOption", T::Text}, {"itemValue", T::Text}})},
        {QStringLiteral("tblUser"), userColumns()},
        {QStringLiteral("tblGridSetting"), cols({{"FormName", T::Text},
                                                 {"Tablename", T::Text},
                                                 {"FieldName", T::Text},
                                                 {"Width", T::Long},
                                                 {"FPosition", T::Int},
                                                 {"SortType", T::Int}})},
        {QStringLiteral("tblTableFields"), cols({{"TableName", T::Text},
                                                 {"FieldName", T::Text},
                                                 {"FieldDesc", T::Text},
                                                 {"FieldType", T::Text},
                                                 {"RowID", T::Long}})},
        {QStringLiteral("tblErrorList"), cols({{"ErrNumber", T::Long},
                                               {"ErrDescription", T::Text},
                                               {"LineNumber", T::Long},
                                               {"UserMsg", T::Text},
                                               {"ModuleName", T::Text},
                                               {"ProcedureName", T::Text},
                                               {"ErrDateTime", T::DateTime},
                                               {"UserEmail", T::Text}})},
    };

    auto idx = [this](const char* table, std::initializer_list<const char*> columns) {
        QStringList names;
        for (const char* c : columns) {
            names.append(QString::fromLatin1(c));
        }
        m_indexes.append({QString::fromLatin1(table), names});
    };
    idx("tblEquipment", {"UnitNo"});
    idx("tblEquipment", {"CrewID"});
    idx("tblEquipment", {"SiteID", "LocationID"});
    idx("tblEquipmentCount", {"EquipmentID", "CountType", "ChangeDate"});
    idx("tblEquipmentCrewHistory", {"EquipmentID"});
    idx("tblEquipmentDepreciation", {"EquipmentID"});
    idx("tblEquipmentImage", {"EquipmentID"});
    idx("tblEquipmentDocument", {"EquipmentID"});
    idx("tblEquipmentPart", {"EquipmentID"});
    idx("tblEquipmentScan", {"EquipmentID", "ScanTime"});
    idx("tblServicesPart", {"ServiceID"});
    // A machine's due services: with the date alone the engine would walk every machine's.
    idx("tblServiceUsed", {"EquipmentID", "NextScheduledDate"});
    idx("tblServiceUsed", {"ServiceID"});
    // The due lists and the board read every service of a window from this index alone.
    idx("tblServiceUsed", {"NextScheduledDate", "Inactive", "EquipmentID", "CrewID"});
    idx("tblServiceUsed", {"CrewID"});
    idx("tblServiceUsedPart", {"ServiceUsedID"});
    idx("tblWorkorder", {"EquipmentID"});
    idx("tblWoServiceUsed", {"ServiceUsedID"});
    idx("tblWoServiceUsed", {"WorkOrderNo"});
    idx("tblWoServiceUsed", {"EquipmentID"});
    idx("tblWoPartUsed", {"ServiceUsedID"});
    idx("tblWOServiceUsedHistory", {"EquipmentID"});
    idx("tblWOServiceUsedHistory", {"ServiceUsedID"});
    idx("tblWOServiceUsedHistory", {"WorkOrderNo"});
    idx("tblWoPartHistory", {"ServiceusedID"});
    idx("tblWoPartHistory", {"PartID"});
    idx("tblIndicator", {"ParentId"});
    idx("tblLocation", {"Site"});
    idx("tblEmployee", {"Crew"});
    idx("tblGridSetting", {"FormName", "Tablename"});
    idx("tblTableFields", {"TableName"});

    // Keys and names the user types compare without regard to case, as in LOWER(col) = LOWER(?).
    auto caseBlind = [this](const char* table, const char* column, bool unique) {
        m_indexes.append({QString::fromLatin1(table), {QString::fromLatin1(column)}, true, unique});
    };
    caseBlind("tblPart", "PartID", true);
    caseBlind("tblEmployee", "EmployeeID", true);
    caseBlind("tblUser", "UserName", true);
    caseBlind("tblSysOption", "SysOption", true);
    caseBlind("tblEquipment", "UnitNo", false);
    caseBlind("tblIndicator", "ItemName", false);
}

const Schema::Table* Schema::table(const QString& name) const
{
    for (const Table& t : m_tables) {
        if (t.name.compare(name, Qt::CaseInsensitive) == 0) {
            return &t;
        }
    }
    return nullptr;
}

const Schema::Column* Schema::column(const QString& tableName, const QString& columnName) const
{
    const Table* t = table(tableName);
    if (!t) {
        return nullptr;
    }
    for (const Column& c : t->columns) {
        if (c.name.compare(columnName, Qt::CaseInsensitive) == 0) {
            return &c;
        }
    }
    return nullptr;
}

QString Schema::createTable(const Table& table, const SqlDialect& dialect) const
{
    QStringList parts;
    for (const Column& c : table.columns) {
        QString def = c.name + u' ' + dialect.columnType(c.type);
        if (c.filledWithToday) {
            def += QStringLiteral(" DEFAULT ") + dialect.currentDateDefault(c.type);
        } else if (!c.defaultValue.isEmpty()) {
            def += QStringLiteral(" DEFAULT ") + c.defaultValue;
        }
        // Inserts that leave a flag out mean "no": such a row must meet the filters on "no".
        if (c.type == Type::YesNo) {
            def += QStringLiteral(" DEFAULT 0 CHECK (%1 IN (-1, 0))").arg(c.name);
        } else if (c.type == Type::Flag) {
            def += QStringLiteral(" DEFAULT '0' CHECK (%1 IN ('0', '1'))").arg(c.name);
        } else if (c.type == Type::Pattern) {
            def += QStringLiteral(" DEFAULT '0'");
        }
        parts.append(def);
    }
    return QStringLiteral("CREATE TABLE %1 (%2)").arg(table.name, parts.join(QStringLiteral(", ")));
}

QString Schema::createIndex(const Index& index, int number) const
{
    const QString columns = index.caseBlind ? QStringLiteral("LOWER(%1)").arg(index.columns.first())
                                            : index.columns.join(QStringLiteral(", "));
    return QStringLiteral("CREATE %1INDEX ix_%2_%3 ON %4 (%5)")
        .arg(index.unique ? QStringLiteral("UNIQUE ") : QString(), index.table.toLower())
        .arg(number)
        .arg(index.table, columns);
}

QStringList Schema::createStatements(const SqlDialect& dialect) const
{
    QStringList statements;
    for (const Table& t : m_tables) {
        statements.append(createTable(t, dialect));
    }
    int number = 0;
    for (const Index& i : m_indexes) {
        statements.append(createIndex(i, ++number));
    }
    return statements;
}

bool Schema::create(QSqlDatabase& db, const SqlDialect& dialect, QString* error) const
{
    QSqlQuery query(db);
    for (const QString& statement : createStatements(dialect)) {
        if (!query.exec(statement)) {
            if (error) {
                *error = query.lastError().text() + QStringLiteral("\n") + statement;
            }
            return false;
        }
    }
    return true;
}
