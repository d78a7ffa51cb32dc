#include "ReportCatalogue.h"

#include <QStringList>
#include <array>

namespace ReportCatalogue {

namespace {

ReportDefinition equipmentList()
{
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowEquipmentListDetail");
    d.layout = QStringLiteral("rptEquipmentList");
    d.title = QStringLiteral("Equipment List");
    d.baseQuery = QStringLiteral(
        "SELECT tblEquipment.EquipmentName, tblEquipment.UnitNo, tblIndicator.ItemName AS "
        "EquipmentType, tblIndicator_1.ItemName AS EquipmentMake, tblIndicator_2.ItemName AS "
        "EquipmentModel, tblSite.SiteName AS SiteID, tblLocation.LocationName AS LocationID, "
        "tblCrew.CrewNumber AS CrewID FROM (((((tblEquipment LEFT JOIN tblIndicator ON "
        "tblEquipment.EquipmentType = tblIndicator.ItemID) LEFT JOIN tblIndicator AS "
        "tblIndicator_1 ON tblEquipment.EquipmentMake = tblIndicator_1.ItemID) LEFT JOIN "
        "tblIndicator AS tblIndicator_2 ON tblEquipment.EquipmentModel = tblIndicator_2.ItemID)  "
        "LEFT JOIN tblSite ON tblEquipment.SiteID = tblSite.SiteID) LEFT JOIN tblLocation ON "
        "tblEquipment.LocationID = tblLocation.LocationID) LEFT JOIN tblCrew ON "
        "tblEquipment.CrewID = tblCrew.CrewID");
    d.ending = QStringLiteral(" ORder by tblEquipment.EquipmentName ASC");
    d.question = QStringLiteral("Incorrect filter. Show all Equipment Details?");
    d.emptyMessage = NoRecordsMet;
    return d;
}

/** " LEFT JOIN tblIndicator AS alias ON tblEquipment.column = alias.ItemID", nested. */
QString lookupJoins(const QString& from, const QList<std::pair<QString, QString>>& lookups)
{
    QString joins = from;
    for (const auto& [alias, column] : lookups) {
        joins = QStringLiteral("(%1 LEFT JOIN tblIndicator AS %2 ON tblEquipment.%3 = %2.ItemID)")
                    .arg(joins, alias, column);
    }
    return joins;
}

ReportDefinition equipmentDetail()
{
    // Each lookup's alias, the column it is joined on, and the name it is shown under.
    static const QList<std::array<QString, 3>> lookups{
        {QStringLiteral("tblIndicator"), QStringLiteral("EquipmentType"),
         QStringLiteral("EquipmentType")},
        {QStringLiteral("tblIndicator_1"), QStringLiteral("EquipmentMake"),
         QStringLiteral("EquipmentMake")},
        {QStringLiteral("tblIndicator_2"), QStringLiteral("EquipmentModel"),
         QStringLiteral("EquipmentModel")},
        {QStringLiteral("Manufacture"), QStringLiteral("ManufactureID"),
         QStringLiteral("Manufacture")},
        {QStringLiteral("LeaseCompany"), QStringLiteral("LeaseCompany"),
         QStringLiteral("LeaseCompany")},
        {QStringLiteral("EEngineMake"), QStringLiteral("EngineMake"), QStringLiteral("EnigneMake")},
        {QStringLiteral("EEngineModel"), QStringLiteral("EngineModel"),
         QStringLiteral("EEngineModel")},
        {QStringLiteral("EEngineFuel"), QStringLiteral("EngineFuelType"),
         QStringLiteral("EEngineFuel")},
        {QStringLiteral("VBody"), QStringLiteral("Body"), QStringLiteral("VBody")},
        {QStringLiteral("VChassis"), QStringLiteral("Chassis"), QStringLiteral("VChassis")},
        {QStringLiteral("VTrans"), QStringLiteral("Trans"), QStringLiteral("VTrans")}};
    QStringList columns{QStringLiteral(
        "tblEquipment.EquipmentID, tblEquipment.EquipmentName, tblEquipment.EquipmentYear, "
        "tblEquipment.EquipmentSerialNo, tblEquipment.UnitNo, tblEquipment.Capacity, "
        "tblEquipment.AttachedTo, tblEquipment.Bar_Code, tblEquipment.InstalledDate, "
        "tblEquipment.AcquisitionDate, tblEquipment.AcquisitionCost, "
        "tblEquipment.AdditionalCost, tblEquipment.Totalcost, tblEquipment.SalvageValue, "
        "tblEquipment.LifeYears, tblEquipment.PurchaseNotes, tblEquipment.LeaseOwnedLeased, "
        "tblEquipment.LeaseStartDate, tblEquipment.LeaseEndDate, tblEquipment.LeasePeriod, "
        "tblEquipment.LeaseInterval, tblEquipment.LeasePayment, tblEquipment.WarrantyStartDate, "
        "tblEquipment.WarrantyEndDate, tblEquipment.WarrantyPeriod, "
        "tblEquipment.WarrantyInterval, tblEquipment.Notes, tblEquipment.BeginingHub, "
        "tblEquipment.StateLicensed, tblEquipment.LicenseNo, tblEquipment.StickerNumber, "
        "tblEquipment.LicenseRenewalDate, tblEquipment.PermanentLicense, tblEquipment.Tyre, "
        "tblEquipment.Rear_Tires, tblEquipment.InspectionDate, tblEquipment.Weight, "
        "tblEquipment.Vin, tblEquipment.VehicleOwnedLeased, tblEquipment.VehicleFuelType, "
        "tblEquipment.VehicleEngineType, tblEquipment.VehicleEngineNo, "
        "tblEquipment.VehicleColor, tblEquipment.VehicleEngineModel, tblEquipment.EngineSize, "
        "tblEquipment.EngineSerialNo, tblEquipment.Cycle, tblEquipment.SupplierPartNo, "
        "tblEquipment.ManufacturePartNo")};
    for (int i = 1; i <= 10; ++i) {
        columns.append(QStringLiteral("tblEquipment.UserDefined%1").arg(i));
    }
    QList<std::pair<QString, QString>> joins;
    for (const auto& [alias, column, shownAs] : lookups) {
        columns.append(QStringLiteral("%1.ItemName AS %2").arg(alias, shownAs));
        joins.append({alias, column});
    }
    columns.append(QStringLiteral("tblSite.SiteName, tblLocation.LocationName, "
                                  "tblCrew.CrewNumber, tblSupplier.Name AS Supplier"));
    const QString from = QStringLiteral(
        "(((%1 LEFT JOIN tblSite ON tblEquipment.SiteID = tblSite.SiteID) LEFT JOIN tblLocation "
        "ON tblEquipment.LocationID = tblLocation.LocationID) LEFT JOIN tblCrew ON "
        "tblEquipment.CrewID = tblCrew.CrewID) LEFT JOIN tblSupplier ON tblEquipment.SupplierID "
        "= tblSupplier.SupplierID");
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowEquipmentDetailReport");
    d.layout = QStringLiteral("rptEquipmentDetail");
    d.title = QStringLiteral("Equipment Details");
    d.baseQuery = QStringLiteral("SELECT %1 FROM %2")
                      .arg(columns.join(QStringLiteral(", ")),
                           from.arg(lookupJoins(QStringLiteral("tblEquipment"), joins)));
    d.ending = QStringLiteral(" Order by tblEquipment.EquipmentName");
    d.question = QStringLiteral("Incorrect filter. Show all Equipment Details?");
    d.emptyMessage = NoRecordsMet;
    d.header = ReportHeader::UserFields;
    return d;
}

ReportDefinition serviceList()
{
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowServiceList");
    d.layout = QStringLiteral("rptServiceList");
    d.title = QStringLiteral("List Of Services");
    d.baseQuery = QStringLiteral(
        "SELECT tblServices.Name, tblServices.Period, tblServices.EInterval,  "
        "tblServices.LaborEstimate, tblCostCenter.Description, tblServices.CostEstimate  FROM "
        "(tblServices INNER JOIN tblCrew ON tblServices.CrewID = tblCrew.CrewID)  INNER JOIN "
        "tblCostCenter ON tblServices.CostCenterID = tblCostCenter.CostCenterID");
    d.ending = QStringLiteral(" Order by tblServices.Name");
    d.takesFilter = false;
    d.emptyMessage = NoRecordsMet;
    return d;
}

ReportDefinition errorList()
{
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowErrorList");
    d.layout = QStringLiteral("rptErrorReport");
    d.title = QStringLiteral("Error Report");
    d.baseQuery = QStringLiteral("SELECT ErrNumber, LineNumber, ModuleName, ProcedureName, "
                                 "ErrDescription, UserMsg, ErrDateTime FROM tblErrorList Order "
                                 "by ErrDateTime Asc");
    d.takesFilter = false;
    d.customLookup = false;
    d.emptyMessage = NoRecordsFound;
    d.header = ReportHeader::SystemFacts;
    return d;
}

ReportDefinition dateReport(const QString& procedure, const QString& layout, const QString& title,
                            const QString& dateColumn)
{
    ReportDefinition d;
    d.procedure = procedure;
    d.layout = layout;
    d.title = title;
    d.baseQuery = QStringLiteral("SELECT EquipmentID, UnitNo, EquipmentName,%1 FROM tblEquipment")
                      .arg(dateColumn);
    d.ending = QStringLiteral(" order by UnitNo, EquipmentName");
    d.question = QStringLiteral("Incorrect filter. Show all Equipment Details?");
    d.emptyMessage = NoRecordsFound;
    return d;
}

ReportDefinition supplierReport()
{
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowSupplierReport");
    d.layout = QStringLiteral("rptSupplierReport");
    d.title = QStringLiteral("Supplier Report");
    d.baseQuery = QStringLiteral(
        "SELECT tblSupplier.SupplierID, tblSupplier.Name, tblSupplier.Tax,  tblSupplier.Terms, "
        "tblSupplier.CreditLimit, tblSupplier.Email,  tblSupplier.WebSite, tblSupplier.Address, "
        "tblSupplier.Address2,  tblSupplier.City, tblIndicator.ItemName, tblSupplier.Zip,  "
        "tblSupplier.Phone, tblSupplier.Fax, tblSupplier.Atten, tblSupplier.LicenseNo, "
        "tblSupplier.ContactName, tblSupplier.Notes  FROM tblSupplier LEFT JOIN tblIndicator ON  "
        "tblSupplier.State = tblIndicator.ItemID ");
    d.ending = QStringLiteral("order by tblSupplier.Name");
    d.question = QStringLiteral("Incorrect filter. Show all Supplier Details?");
    d.emptyMessage = NoRecordsMet;
    return d;
}

ReportDefinition inventoryReport()
{
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowInventoryReport");
    d.layout = QStringLiteral("rptInventoryReport");
    d.title = QStringLiteral("Inventory Report");
    d.baseQuery = QStringLiteral(
        "SELECT tblIndicator.ItemName AS Category, tblSupplier.Name, tblPart.PartID, "
        "tblPart.Description, tblPart.PartCategoryID, tblPart.Quantity, tblPart.Price, "
        "tblPart.Bin, tblPart.Inactive FROM (tblPart LEFT JOIN tblIndicator ON "
        "tblPart.PartCategoryID = tblIndicator.ItemID) LEFT JOIN tblSupplier ON "
        "tblPart.SupplierID = tblSupplier.SupplierID");
    d.afterFilter = QStringLiteral(" and TrackInventory=0");
    d.withoutFilter = QStringLiteral(" where TrackInventory=0");
    d.ending = QStringLiteral(" Order by tblPart.PartID");
    d.question = QStringLiteral("Incorrect filter. Show all Equipment Details?");
    d.emptyMessage = NoRecordsMet;
    return d;
}

ReportDefinition inventoryReorder()
{
    ReportDefinition d;
    d.procedure = QStringLiteral("ShowInventoryReOrderReport");
    d.layout = QStringLiteral("rptInventoryReorderReport");
    d.title = QStringLiteral("Inventory Reorder");
    d.baseQuery = QStringLiteral(
        "SELECT PartID, Description, Quantity, QtyMax AS QtyRequired, ItemName AS Category, "
        "Name, Inactive FROM (tblPart LEFT JOIN tblSupplier ON tblPart.SupplierID = "
        "tblSupplier.SupplierID) LEFT JOIN tblIndicator ON tblPart.PartCategoryID = "
        "tblIndicator.ItemID ");
    // The filter screen hands this report a condition only: the WHERE is its own.
    d.beforeFilter = QStringLiteral(" Where Inactive = 0 and TrackInventory=0 and ");
    d.withoutFilter =
        QStringLiteral(" WHERE Inactive = 0 and TrackInventory=0 and (Quantity<QtyMin)");
    d.question =
        QStringLiteral("Incorrect filter. Show all Inventory Reorder with Posted Services?");
    d.emptyMessage = NoRecordsMet;
    return d;
}

} // namespace

const QList<ReportDefinition>& all()
{
    static const QList<ReportDefinition> reports{
        equipmentList(),
        equipmentDetail(),
        dateReport(QStringLiteral("ShowEquipmentInspectionReport"),
                   QStringLiteral("rptEquipmentInspectionDate"),
                   QStringLiteral("Equipment Inspection Report"), QStringLiteral("InspectionDate")),
        dateReport(
            QStringLiteral("ShowEquipmentLicenseReport"), QStringLiteral("rptEquipmentLicenseDate"),
            QStringLiteral("Equipment License Report"), QStringLiteral("LicenseRenewalDate")),
        serviceList(),
        inventoryReport(),
        inventoryReorder(),
        supplierReport(),
        errorList(),
    };
    return reports;
}

const ReportDefinition* find(const QString& name)
{
    for (const ReportDefinition& report : all()) {
        if (report.procedure.compare(name, Qt::CaseInsensitive) == 0 ||
            report.layout.compare(name, Qt::CaseInsensitive) == 0) {
            return &report;
        }
    }
    return nullptr;
}

} // namespace ReportCatalogue
