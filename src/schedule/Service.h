#pragma once

#include <QDate>
#include <QString>
#include <array>

/**
 * A service as the services screen edits it: a master of tblServices or its
 * copy on a machine in tblServiceUsed. The fields follow the screen's order.
 */
struct Service
{
    qint64 serviceId = 0; ///< ServiceID of a master, ServiceUsedID of a copy
    QString jobNo;        ///< JobNo, the "Service No"
    QString name;
    qint64 crew = 0;       ///< CrewID
    qint64 costCenter = 0; ///< CostCenterID
    bool separateWorkOrder = false;
    double budgetedLabor = 0;                     ///< LaborEstimate, hours
    double budgetedCost = 0;                      ///< CostEstimate
    QString renewalPeriod = QStringLiteral("D");  ///< Period code
    qint64 renewalInterval = 1;                   ///< EInterval
    QString renewalBasedOn = QStringLiteral("W"); ///< RenewalOn: W, S or D
    std::array<bool, 7> days{};                   ///< Sun to Sat, Sunday first
    std::array<bool, 5> weeks{};                  ///< FirstW to LastW
    bool dayOfMonth = false;                      ///< Dom
    std::array<int, 5> dom{};                     ///< DOM1 to DOM5; 0 for none
    std::array<bool, 12> months{};                ///< Jan to Dece
    QString notes;                                ///< Note
};

/** What only a copy on a machine has besides its schedule. */
struct ServiceCopy
{
    qint64 equipmentId = 0;
    QDate nextDate; ///< the empty date when the screen holds none
    qint64 nextScheduledCount = 0;
    bool inactive = false;
};
