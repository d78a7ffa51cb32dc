#include "DataFile.h"

#include "Installation.h"
#include "PasswordHash.h"
#include "Schema.h"
#include "Sql.h"
#include "Store.h"
#include "UserRights.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSqlError>

namespace DataFile {

namespace {

const char* const ListNames[] = {"Country",
                                 "Unused",
                                 "Employee Position",
                                 "Equipment Type",
                                 "Fuel Type",
                                 "Lease Company",
                                 "Make Type",
                                 "Manufacture Type",
                                 "Model Type",
                                 "Part Category",
                                 "State",
                                 "Tire Type",
                                 "Vehicle Body Type",
                                 "Vehicle Chassis Type",
                                 "Vehicle Engine Type",
                                 "Vehicle Trans Type",
                                 "Engine Make"};

bool run(QSqlQuery& q, const QString& sql, const QVariantList& values, QString* error)
{
    if (Sql::exec(q, sql, values)) {
        return true;
    }
    if (error) {
        *error = q.lastError().text();
    }
    return false;
}

bool seedLists(QSqlDatabase& db, const SqlDialect& dialect, QString* error)
{
    QSqlQuery q(db);
    for (int i = 0; i < 17; ++i) {
        if (!run(
                q,
                QStringLiteral("INSERT INTO tblIndicator (ItemID, ParentId, ItemName, Show, FSize) "
                               "VALUES (?, 0, ?, -1, 0)"),
                {i + 1, QString::fromLatin1(ListNames[i])}, error)) {
            return false;
        }
    }
    // The engine numbers new items after the fixed lists.
    if (!dialect.isSqlite()) {
        return run(q,
                   QStringLiteral("ALTER TABLE tblIndicator ALTER COLUMN ItemID RESTART WITH 18"),
                   {}, error);
    }
    return true;
}

bool seedChief(QSqlDatabase& db, const QString& password, QString* error)
{
    const QString hashed = PasswordHash::hash(password);
    if (hashed.isEmpty()) {
        *error = QStringLiteral("The password could not be hashed.");
        return false;
    }
    QStringList columns{QStringLiteral("UserName"), QStringLiteral("Password"),
                        QStringLiteral("EmployeeID")};
    QVariantList values{QStringLiteral("Chief"), hashed, QString()};
    for (int r = 0; r < UserRights::Count; ++r) {
        columns.append(UserRights::columnName(UserRights::Right(r)));
        values.append(QStringLiteral("1"));
    }
    QSqlQuery q(db);
    const QString marks = QStringList(columns.size(), QStringLiteral("?")).join(u',');
    return run(q,
               QStringLiteral("INSERT INTO tblUser (%1) VALUES (%2)")
                   .arg(columns.join(QStringLiteral(", ")), marks),
               values, error);
}

bool seedOptions(QSqlDatabase& db, const QString& version, QString* error)
{
    QList<std::pair<QString, QString>> options{
        {QStringLiteral("GEN_COMPANY_NAME"), QString()},
        {QStringLiteral("GEN_COMPANY_ADDRESS1"), QString()},
        {QStringLiteral("GEN_COMPANY_ADDRESS2"), QString()},
        {QStringLiteral("GEN_COMPANY_PHONE"), QString()},
        {QStringLiteral("GEN_COMPANY_EMAIL"), QString()},
        {QStringLiteral("GEN_COMPANY_WEBSITE"), QString()},
        {QStringLiteral("SERVICE_LATE_YELLOW"), QStringLiteral("7")},
        {QStringLiteral("SERVICE_LATE_RED"), QStringLiteral("30")},
        {QStringLiteral("COUNT_READING_DELAY"), QStringLiteral("7")},
        {QStringLiteral("SECURITYONOFF"), QStringLiteral("0")},
        {QStringLiteral("DBVERSION"), QString(version).remove(u'.')},
    };
    for (int i = 1; i <= 10; ++i) {
        options.append(
            {QStringLiteral("UserDefinedField%1").arg(i), QStringLiteral("User Field%1").arg(i)});
    }
    QSqlQuery q(db);
    for (const auto& [key, value] : options) {
        if (!run(q, QStringLiteral("INSERT INTO tblSysOption (SysOption, itemValue) VALUES (?, ?)"),
                 {key, value}, error)) {
            return false;
        }
    }
    return true;
}

/** A searchable column of a quick find: table, column, caption (the grid's column), kind. */
struct TableField
{
    const char* table;
    const char* name;
    const char* caption;
    const char* type;
};

// In list order; the captions are the column names of each table's quick find rows.
const TableField TableFields[] = {
    {"tblEquipment", "UnitNo", "Unit No", "VARCHAR"},
    {"tblEquipment", "EquipmentName", "Name", "VARCHAR"},
    {"tblEquipment", "EquipmentType", "Type", "VARCHAR"},
    {"tblEquipment", "EquipmentMake", "Make", "VARCHAR"},
    {"tblEquipment", "EquipmentModel", "Model", "VARCHAR"},
    {"tblEquipment", "EquipmentSerialNo", "Serial No", "VARCHAR"},
    {"tblEquipment", "SiteID", "Site", "VARCHAR"},
    {"tblEquipment", "LocationID", "Location", "VARCHAR"},
    {"tblEquipment", "CrewID", "Assigned to", "VARCHAR"},
    {"tblEquipment", "LicenseNo", "License", "VARCHAR"},
    {"tblPart", "PartID", "Part Number", "VARCHAR"},
    {"tblPart", "Description", "Description", "VARCHAR"},
    {"tblPart", "PartCategoryID", "Part Category", "VARCHAR"},
    {"tblPart", "Quantity", "Qty on Hand", "DECIMAL"},
    {"tblPart", "Price", "Price", "DECIMAL"},
    {"tblPart", "SupplierID", "Supplier", "VARCHAR"},
    {"tblEmployee", "EmployeeID", "Employee Number", "VARCHAR"},
    {"tblEmployee", "FirstName", "First Name", "VARCHAR"},
    {"tblEmployee", "Lastname", "Last Name", "VARCHAR"},
    {"tblEmployee", "City", "City", "VARCHAR"},
    {"tblEmployee", "Phone", "Phone", "VARCHAR"},
    {"tblEmployee", "Site", "Site", "VARCHAR"},
    {"tblEmployee", "Crew", "Crew", "VARCHAR"},
    {"tblEmployee", "EmpPosition", "Position", "VARCHAR"},
    {"tblEmployee", "LaborCost", "Labor Cost", "DECIMAL"},
    {"tblEmployee", "LaborRate", "Labor Rate", "DECIMAL"},
    {"tblSupplier", "Name", "Name", "VARCHAR"},
    {"tblSupplier", "Phone", "Phone", "VARCHAR"},
    {"tblSupplier", "City", "City", "VARCHAR"},
    {"tblSupplier", "State", "State", "VARCHAR"},
    {"tblSupplier", "Zip", "Zip", "VARCHAR"},
    {"tblSupplier", "CreditLimit", "Credit Limit", "DECIMAL"},
    {"tblSupplier", "ContactName", "Contact Name", "VARCHAR"},
    {"tblLocation", "LocationName", "LocationName", "VARCHAR"},
    {"tblLocation", "Description", "Description", "VARCHAR"},
    {"tblLocation", "Site", "Site", "VARCHAR"},
};

bool seedTableFields(QSqlDatabase& db, QString* error)
{
    QSqlQuery q(db);
    int rowId = 0;
    for (const TableField& field : TableFields) {
        if (!run(q,
                 QStringLiteral("INSERT INTO tblTableFields (TableName, FieldName, FieldDesc, "
                                "FieldType, RowID) VALUES (?, ?, ?, ?, ?)"),
                 {QString::fromLatin1(field.table), QString::fromLatin1(field.name),
                  QString::fromLatin1(field.caption), QString::fromLatin1(field.type), ++rowId},
                 error)) {
            return false;
        }
    }
    return true;
}

bool writeStore(const Installation& installation, const NewInstallation& request, QString* error)
{
    Store store(installation.storeFile());
    const QString key = QString::fromLatin1(Installation::MainKey);
    store.setValue(key, QStringLiteral("VERSION"), request.version);
    store.setValue(key, QStringLiteral("PATH"), installation.home() + u'/');
    store.setValue(key, QStringLiteral("SRCPATH"), QString());
    store.setValue(key, QStringLiteral("CLIENTVERSION"), request.version);
    store.setValue(key, QStringLiteral("SYSFOLDER"),
                   installation.path(QStringLiteral("doc")) + u'/');
    store.setValue(key, QStringLiteral("GUID"), QString());
    store.setValue(QString::fromLatin1(Installation::SyncKey), QStringLiteral("Path"), QString());
    // The maker's pages and the host of the update document; an office may point them elsewhere.
    const QString web = QString::fromLatin1(Installation::WebKey);
    store.setValue(web, QStringLiteral("Host"), QStringLiteral("https://www.korvelle.com"));
    store.setValue(web, QStringLiteral("Site"), QStringLiteral("https://www.korvelle.com/"));
    store.setValue(web, QStringLiteral("Contact"),
                   QStringLiteral("https://www.korvelle.com/contact.html"));
    request.connection.writeTo(store);
    return store.save(error);
}

/** The update folder the start looks in; it offers the installed version, so no update. */
bool writeUpdateFolder(const Installation& installation, const QString& version, QString* error)
{
    const QString folder = installation.path(QStringLiteral("Client"));
    QDir().mkpath(folder);
    QSaveFile file(folder + QStringLiteral("/update.txt"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        *error = file.errorString();
        return false;
    }
    file.write(version.toUtf8() + '\n');
    // A write that failed on flush would otherwise still be committed.
    if (!file.flush() || file.error() != QFileDevice::NoError) {
        *error = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

bool tablesExist(const ConnectionSettings& settings, QString* error)
{
    const QString name = QStringLiteral("tandrill-probe");
    DatabaseError dbError;
    if (!Database::openForCreate(settings, name, &dbError)) {
        *error = dbError.text;
        return true;
    }
    const bool exists = Database::hasSchema(QSqlDatabase::database(name, false));
    Database::close(name);
    if (exists) {
        *error = QStringLiteral("%1 already holds a data file.").arg(settings.describe());
    }
    return exists;
}

bool createData(const ConnectionSettings& settings, const NewInstallation& request, QString* error)
{
    const QString name = QStringLiteral("tandrill-create");
    DatabaseError dbError;
    if (!Database::openForCreate(settings, name, &dbError)) {
        *error = dbError.text;
        return false;
    }
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::database(name, false);
        ok = db.transaction() && createTables(db, SqlDialect(settings.engine),
                                              request.chiefPassword, request.version, error);
        ok = ok ? db.commit() : (db.rollback(), false);
    }
    Database::close(name);
    return ok;
}

} // namespace

bool createTables(QSqlDatabase& db, const SqlDialect& dialect, const QString& chiefPassword,
                  const QString& version, QString* error)
{
    return Schema::instance().create(db, dialect, error) && seedLists(db, dialect, error) &&
           seedChief(db, chiefPassword, error) && seedOptions(db, version, error) &&
           seedTableFields(db, error);
}

bool create(const Installation& installation, const NewInstallation& request, QString* error)
{
    if (installation.isInstalled()) {
        *error = QStringLiteral("An installation already exists in %1.").arg(installation.home());
        return false;
    }
    ConnectionSettings settings = request.connection;
    if (settings.engine == SqlDialect::Engine::SQLite) {
        settings.filePath = installation.dataFile();
        if (QFileInfo::exists(settings.filePath)) {
            *error = QStringLiteral("A data file already exists at %1.").arg(settings.filePath);
            return false;
        }
    } else if (tablesExist(settings, error)) {
        return false;
    }
    if (!installation.createFolders(error)) {
        return false;
    }
    if (!createData(settings, request, error)) {
        if (settings.engine == SqlDialect::Engine::SQLite) {
            for (const char* suffix : {"", "-wal", "-shm"}) {
                QFile::remove(settings.filePath + QLatin1String(suffix));
            }
        }
        return false;
    }
    if (!writeUpdateFolder(installation, request.version, error)) {
        return false;
    }
    // The store comes last: its presence is what marks a finished installation.
    return writeStore(installation, request, error);
}

} // namespace DataFile
