#pragma once

#include <QDate>
#include <QString>
#include <array>

/** One row of tblEquipment as a screen edits it; an empty date is stored as none. */
struct Equipment
{
    qint64 equipmentId = 0; ///< the moment of creation as "MMddHHmmss"
    QString equipmentName = {};
    qint64 equipmentType = 0;  ///< an item of the equipment type list
    qint64 equipmentMake = 0;  ///< an item of the make list, under the type
    qint64 equipmentModel = 0; ///< an item of the model list, under the make
    QString capacity = {};
    QString equipmentYear = {};
    QString equipmentSerialNo = {};
    QString unitNo = {};
    QDate installedDate = {};
    QString attachedTo = {};
    qint64 siteId = 0;
    qint64 locationId = 0;
    qint64 crewId = 0;
    bool inactive = false;
    int leaseOwnedLeased = 0; ///< 1 owned, 2 leased, 3 loan, 0 none
    qint64 leaseCompany = 0;  ///< an item of the lease company list
    QDate leaseStartDate = {};
    QDate leaseEndDate = {};
    int leasePeriod = 0; ///< 1 hours, 2 miles, 3 days, 4 weeks, 5 months, 6 years
    qint64 leaseInterval = 0;
    double leasePayment = 0;
    QDate warrantyStartDate = {};
    QDate warrantyEndDate = {};
    int warrantyPeriod = 0; ///< as leasePeriod
    qint64 warrantyInterval = 0;
    QString notes = {};
    std::array<QString, 10> userDefined = {};
    QString engineSize = {};
    qint64 engineMake = 0;
    qint64 engineModel = 0;
    QString engineSerialNo = {};
    QString cycle = {};
    qint64 engineFuelType = 0;
    int vehicleOwnedLeased = 0; ///< kept as read, never shown
    double beginingHub = 0;
    qint64 stateLicensed = 0;
    QString licenseNo = {};
    QString stickerNo = {};
    QDate licenseRenewalDate = {};
    int permanentLicense = 0; ///< 1 yes, 2 no, 0 none
    QDate inspectionDate = {};
    qint64 vehicleFuelType = 0;
    QString tyre = {}; ///< the front tires
    QString rearTires = {};
    QString weight = {};
    QString vin = {};
    qint64 body = 0;
    qint64 chassis = 0;
    qint64 trans = 0;
    qint64 vehicleEngineType = 0;
    QString vehicleEngineNo = {};
    QString vehicleColor = {};
    QString vehicleEngineModel = {};
    qint64 supplierId = 0;
    QString supplierPartNo = {};
    qint64 manufactureId = 0;
    QString manufacturePartNo = {};
    QDate acquisitionDate = {};
    double acquisitionCost = 0;
    double additionalCost = 0;
    QString purchaseNotes = {};
    double totalCost = 0;
    double salvageValue = 0;
    qint64 lifeYear = 0;
    QString barCode = {};

    bool operator==(const Equipment&) const = default;
};
