#include "EquipmentManager.h"

#include "MessageTexts.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QSqlRecord>
#include <variant>

const QString EquipmentManager::UnitNoTaken = QStringLiteral(
    "Unit Number you specified already exists. Please enter a different Unit Number.");

namespace {

const QString Module = QStringLiteral("clsEquipment_Manager");

using E = Equipment;
using Member =
    std::variant<QString E::*, qint64 E::*, int E::*, double E::*, bool E::*, QDate E::*>;

struct Field
{
    const char* column;
    Member member;
};

// The columns in the order of the record; the ten user fields stand between the two halves.
const Field FieldsBeforeUserDefined[] = {
    {"EquipmentID", &E::equipmentId},
    {"EquipmentName", &E::equipmentName},
    {"EquipmentType", &E::equipmentType},
    {"EquipmentMake", &E::equipmentMake},
    {"EquipmentModel", &E::equipmentModel},
    {"Capacity", &E::capacity},
    {"EquipmentYear", &E::equipmentYear},
    {"EquipmentSerialNo", &E::equipmentSerialNo},
    {"UnitNo", &E::unitNo},
    {"InstalledDate", &E::installedDate},
    {"AttachedTo", &E::attachedTo},
    {"SiteID", &E::siteId},
    {"LocationID", &E::locationId},
    {"CrewID", &E::crewId},
    {"Inactive", &E::inactive},
    {"LeaseOwnedLeased", &E::leaseOwnedLeased},
    {"LeaseCompany", &E::leaseCompany},
    {"LeaseStartDate", &E::leaseStartDate},
    {"LeaseEndDate", &E::leaseEndDate},
    {"LeasePeriod", &E::leasePeriod},
    {"LeaseInterval", &E::leaseInterval},
    {"LeasePayment", &E::leasePayment},
    {"WarrantyStartDate", &E::warrantyStartDate},
    {"WarrantyEndDate", &E::warrantyEndDate},
    {"WarrantyPeriod", &E::warrantyPeriod},
    {"WarrantyInterval", &E::warrantyInterval},
    {"Notes", &E::notes},
};

const Field FieldsAfterUserDefined[] = {
    {"EngineSize", &E::engineSize},
    {"EngineMake", &E::engineMake},
    {"EngineModel", &E::engineModel},
    {"EngineSerialNo", &E::engineSerialNo},
    {"Cycle", &E::cycle},
    {"EngineFuelType", &E::engineFuelType},
    {"VehicleOwnedLeased", &E::vehicleOwnedLeased},
    {"BeginingHub", &E::beginingHub},
    {"StateLicensed", &E::stateLicensed},
    {"LicenseNo", &E::licenseNo},
    {"StickerNumber", &E::stickerNo},
    {"LicenseRenewalDate", &E::licenseRenewalDate},
    {"PermanentLicense", &E::permanentLicense},
    {"InspectionDate", &E::inspectionDate},
    {"VehicleFuelType", &E::vehicleFuelType},
    {"Tyre", &E::tyre},
    {"Rear_Tires", &E::rearTires},
    {"Weight", &E::weight},
    {"Vin", &E::vin},
    {"Body", &E::body},
    {"Chassis", &E::chassis},
    {"Trans", &E::trans},
    {"VehicleEngineType", &E::vehicleEngineType},
    {"VehicleEngineNo", &E::vehicleEngineNo},
    {"VehicleColor", &E::vehicleColor},
    {"VehicleEngineModel", &E::vehicleEngineModel},
    {"SupplierID", &E::supplierId},
    {"SupplierPartNo", &E::supplierPartNo},
    {"ManufactureID", &E::manufactureId},
    {"ManufacturePartNo", &E::manufacturePartNo},
    {"AcquisitionDate", &E::acquisitionDate},
    {"AcquisitionCost", &E::acquisitionCost},
    {"AdditionalCost", &E::additionalCost},
    {"PurchaseNotes", &E::purchaseNotes},
    {"Totalcost", &E::totalCost},
    {"SalvageValue", &E::salvageValue},
    {"LifeYears", &E::lifeYear},
    {"Bar_Code", &E::barCode},
};

// Everything the equipment owns, children before the history they explain; parts of its
// services in tblServiceUsedPart are left behind without a service.
const char* const DeleteStatements[] = {
    "DELETE FROM tblEquipment WHERE EquipmentID = ?",
    "DELETE FROM tblEquipmentDepreciation WHERE EquipmentID = ?",
    "DELETE FROM tblEquipmentCrewHistory WHERE EquipmentID = ?",
    "DELETE FROM tblWoPartHistory WHERE ServiceUsedID IN "
    "(SELECT ServiceUsedID FROM tblWOServiceUsedHistory WHERE EquipmentID = ?)",
    "DELETE FROM tblWOServiceUsedHistory WHERE EquipmentID = ?",
    "DELETE FROM tblServiceUsed WHERE EquipmentID = ?",
    "DELETE FROM tblEquipmentPart WHERE EquipmentID = ?",
    "DELETE FROM tblEquipmentCount WHERE EquipmentID = ?",
    "DELETE FROM tblEquipmentImage WHERE EquipmentID = ?",
    "DELETE FROM tblEquipmentDocument WHERE EquipmentID = ?",
};

constexpr RecordUse EquipmentUses[] = {{"tblWorkorder", "EquipmentID", "WorkOrder"}};

const QString UserDefinedColumn = QStringLiteral("UserDefined%1");
const QString EmptyCrewNumber = QStringLiteral("  ");
const QString CrewSeparator = QStringLiteral("   ");

QVariant bound(const Equipment& e, const Member& member)
{
    return std::visit(
        [&e](auto pointer) -> QVariant {
            const auto& value = e.*pointer;
            using V = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<V, QDate>) {
                return SqlValue::date(value);
            } else if constexpr (std::is_same_v<V, bool>) {
                return SqlValue::flag(value);
            } else {
                return QVariant::fromValue(value);
            }
        },
        member);
}

void assign(Equipment& e, const Member& member, const QVariant& value)
{
    std::visit(
        [&e, &value](auto pointer) {
            auto& target = e.*pointer;
            using V = std::decay_t<decltype(target)>;
            if constexpr (std::is_same_v<V, QDate>) {
                target = SqlValue::toDate(value);
            } else if constexpr (std::is_same_v<V, bool>) {
                target = value.toString() == QLatin1String("1");
            } else {
                target = value.value<V>();
            }
        },
        member);
}

/** Column names and bound values of the whole record, in the order of the record. */
std::pair<QStringList, QVariantList> columnsAndValues(const Equipment& e)
{
    QStringList columns;
    QVariantList values;
    for (const Field& field : FieldsBeforeUserDefined) {
        columns.append(QString::fromLatin1(field.column));
        values.append(bound(e, field.member));
    }
    for (std::size_t i = 0; i < e.userDefined.size(); ++i) {
        columns.append(UserDefinedColumn.arg(i + 1));
        values.append(e.userDefined[i]);
    }
    for (const Field& field : FieldsAfterUserDefined) {
        columns.append(QString::fromLatin1(field.column));
        values.append(bound(e, field.member));
    }
    return {columns, values};
}

void writeRecord(WriteScope& write, const Equipment& e, bool adding)
{
    auto [columns, values] = columnsAndValues(e);
    if (adding) {
        write.exec(QStringLiteral("INSERT INTO tblEquipment (%1) VALUES (?%2)")
                       .arg(columns.join(QStringLiteral(", ")),
                            QStringLiteral(", ?").repeated(values.size() - 1)),
                   values);
        return;
    }
    // The key stays as it is: it is the first column.
    columns.removeFirst();
    values.removeFirst();
    values.append(e.equipmentId);
    write.exec(QStringLiteral("UPDATE tblEquipment SET %1 = ? WHERE EquipmentID = ?")
                   .arg(columns.join(QStringLiteral(" = ?, "))),
               values);
}

void logCrew(WriteScope& write, qint64 equipmentId, const QString& number,
             const QString& description)
{
    write.exec(QStringLiteral("INSERT INTO tblEquipmentCrewHistory "
                              "(EquipmentID, CrewNumber, CrewDescription) VALUES (?, ?, ?)"),
               {equipmentId, number, description});
}

} // namespace

qint64 EquipmentManager::newEquipmentId() const
{
    return DataHelpers::generateUniqueId(m_session.clock().now());
}

Rows EquipmentManager::list()
{
    // Unit numbers sort without regard to case and alike on both engines.
    return read(QStringLiteral("getEquipmentInfo"),
                QStringLiteral("SELECT * FROM tblEquipment ORDER BY LOWER(UnitNo), UnitNo, "
                               "EquipmentID"));
}

std::optional<Equipment> EquipmentManager::find(qint64 equipmentId)
{
    const Rows rows = DataHelpers::tableInfo(m_session, QStringLiteral("tblEquipment"),
                                             {QStringLiteral("EquipmentID = ?"), {equipmentId}});
    if (rows.isEmpty()) {
        return std::nullopt;
    }
    return fromRow(rows.first());
}

Equipment EquipmentManager::fromRow(const QSqlRecord& row)
{
    Equipment e;
    for (const Field& field : FieldsBeforeUserDefined) {
        assign(e, field.member, row.value(QString::fromLatin1(field.column)));
    }
    for (std::size_t i = 0; i < e.userDefined.size(); ++i) {
        e.userDefined[i] = row.value(UserDefinedColumn.arg(i + 1)).toString();
    }
    for (const Field& field : FieldsAfterUserDefined) {
        assign(e, field.member, row.value(QString::fromLatin1(field.column)));
    }
    return e;
}

std::optional<EquipmentRefusal> EquipmentManager::checkSave(const Equipment& equipment,
                                                            const QString& unitNoAtStart)
{
    const QString unitField = QStringLiteral("txtUnitNo");
    if (DataHelpers::isBlank(equipment.unitNo)) {
        return EquipmentRefusal{MessageTexts::notBlank(QStringLiteral("Equipment Unit No")),
                                unitField};
    }
    if (DataHelpers::isBlank(equipment.equipmentName)) {
        return EquipmentRefusal{MessageTexts::notBlank(QStringLiteral("Equipment Name")),
                                QStringLiteral("txtName")};
    }
    const QString taken = unitNoProblem(equipment.unitNo, unitNoAtStart);
    if (!taken.isEmpty()) {
        return EquipmentRefusal{taken, unitField};
    }
    return std::nullopt;
}

QString EquipmentManager::unitNoProblem(const QString& unitNo, const QString& unitNoAtStart)
{
    const bool taken =
        DataHelpers::isDuplicate(m_session, QStringLiteral("tblEquipment"),
                                 QStringLiteral("UnitNo"), unitNo, unitNoAtStart, false);
    return taken ? UnitNoTaken : QString();
}

QString EquipmentManager::serialNoWarning(const Equipment& equipment, const QString& serialAtStart)
{
    const QString serial = equipment.equipmentSerialNo.trimmed();
    // A blank serial number is no number to share; an unchanged one was judged before.
    if (serial.isEmpty() || serial.toUpper() == serialAtStart.trimmed().toUpper()) {
        return QString();
    }
    const Rows holders =
        read(QStringLiteral("SerialNoWarning"),
             QStringLiteral("SELECT UnitNo, EquipmentName FROM tblEquipment "
                            "WHERE LOWER(EquipmentSerialNo) = LOWER(?) AND EquipmentID <> ? "
                            "ORDER BY LOWER(UnitNo), UnitNo"),
             {serial, equipment.equipmentId});
    if (holders.isEmpty()) {
        return QString();
    }
    const QSqlRecord& holder = holders.first();
    return QStringLiteral("This serial number is already in use on \"%1 - %2\"")
        .arg(holder.value(QStringLiteral("UnitNo")).toString(),
             holder.value(QStringLiteral("EquipmentName")).toString());
}

bool EquipmentManager::saveRecord(const Equipment& equipment, bool adding,
                                  const std::optional<QString>& crewEntry)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    if (crewEntry) {
        const auto [number, description] = splitCrewEntry(*crewEntry);
        logCrew(write, equipment.equipmentId, number, description);
    }
    writeRecord(write, equipment, adding);
    return write.commit();
}

QString EquipmentManager::canDeleteEquipment(qint64 equipmentId)
{
    return DataHelpers::firstUse(m_session, EquipmentUses, equipmentId, QStringLiteral("N"));
}

bool EquipmentManager::deleteRecord(qint64 equipmentId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    for (const char* statement : DeleteStatements) {
        write.exec(QString::fromLatin1(statement), {equipmentId});
    }
    return write.commit();
}

bool EquipmentManager::changeCrew(qint64 equipmentId, const QString& crewNumber,
                                  const QString& crewDescription)
{
    WriteScope write(m_session, Module, QStringLiteral("ChangeCrew"));
    logCrew(write, equipmentId, crewNumber, crewDescription);
    return write.commit();
}

bool EquipmentManager::assignCrew(qint64 equipmentId, const QString& oldEntry,
                                  const QString& newEntry, qint64 crewId)
{
    if (newEntry == oldEntry) {
        return true;
    }
    WriteScope write(m_session, Module, QStringLiteral("AssignCrew"));
    const auto [number, description] = splitCrewEntry(newEntry);
    logCrew(write, equipmentId, number, description);
    write.exec(QStringLiteral("UPDATE tblEquipment SET CrewID = ? WHERE EquipmentID = ?"),
               {crewId, equipmentId});
    return write.commit();
}

std::pair<QString, QString> EquipmentManager::splitCrewEntry(const QString& entry)
{
    const QStringList pieces = entry.split(CrewSeparator);
    if (entry.isEmpty() || pieces.first() == EmptyCrewNumber) {
        return {};
    }
    return {pieces.first(), pieces.value(1)};
}

QStringList EquipmentManager::leaseCaptions(int leaseOwnedLeased)
{
    constexpr int Loan = 3;
    const QString word =
        leaseOwnedLeased == Loan ? QStringLiteral("Loan") : QStringLiteral("Lease");
    QStringList captions;
    for (const char* field : {" Company", " is for", " Start Date", " End Date", " Payment"}) {
        captions.append(word + QString::fromLatin1(field));
    }
    return captions;
}

Rows EquipmentManager::read(const QString& procedure, const QString& sql,
                            const QVariantList& values)
{
    return DataHelpers::read(m_session, Module, procedure, sql, values);
}
