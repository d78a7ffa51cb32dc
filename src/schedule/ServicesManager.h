#pragma once

#include "DataHelpers.h"
#include "MeterReadings.h"
#include "Service.h"

class Session;
class WriteScope;

/**
 * Writes master services (tblServices) and their copies on machines
 * (tblServiceUsed) with their part lists. Every write joins an open
 * transaction, so that the services screen's revert undoes it; failures are
 * reported through errorHandler and answered with false or an empty result.
 */
class ServicesManager
{
public:
    /** Which of the two tables a service lives in; its table and key names follow from it. */
    enum class Kind { Master, Copy };

    explicit ServicesManager(Session& session) : m_session(session) {}

    /** Every master service, by ServiceID. */
    Rows list();
    /** The copy serviceUsedId as one row, or none. */
    Rows copyRow(qint64 serviceUsedId);
    /**
     * The services to pick from, by ServiceID: source "SL" the masters, "EL" the copies on
     * machine equipmentId, each ending with its ServiceUsedID, which is what a pick of a
     * copy names. Services whose ServiceID is in excluded are left out.
     */
    Rows pickList(const QString& source, const QList<qint64>& excluded, qint64 equipmentId);
    /** The name and unit number of the machine whose services are offered. */
    Rows machineNameAndUnit(qint64 equipmentId);
    /** Cost centres by CostCenterID. */
    Rows costCenterInfo();
    /** The next free service number: the highest numeric JobNo of the masters plus one. */
    QString nextJobNo();

    /**
     * Saves a master. Adding takes a fresh service number at this moment (telling the
     * user when it differs from the one proposed) and a new ServiceID; both end up in
     * service. Copies on machines are left as they are.
     */
    bool saveRecord(Service& service, bool adding);
    /**
     * Saves a copy on a machine and renews its schedule: a meter period on a machine
     * without a reading of its type asks one through ask (a zero reading when none is
     * given) and starts its count from there; a calendar period without a next date
     * gets its calculated one.
     */
    bool saveServiceUsed(const Service& service, const ServiceCopy& copy,
                         const MeterReadings::ServiceCountAsker& ask);
    /** Sets the three dates of a copy; an empty date is stored as NULL. */
    bool saveServiceUsedRecord(qint64 serviceUsedId, const QDate& lastDateScheduled,
                               const QDate& lastDatePerformed, const QDate& nextScheduledDate);

    /** "Service Used" while a machine has a copy of the master, else empty text. */
    QString canDeleteServices(qint64 serviceId);
    /** Deletes a master with its part list. */
    bool deleteRecord(qint64 serviceId);
    /** Gives every copy of the master and every open work order line of it the new number. */
    bool updateJobNoForAllService(qint64 serviceId, const QString& newJobNo);

    /** PartID, Description, QuantityRequired, Price and ExtendedCost, by part number. */
    Rows parts(Kind kind, qint64 id);
    /** The part numbers listed as the picker's exclude text: 'A-1','O''Brien'. */
    QString partExcludeText(Kind kind, qint64 id);
    /** Adds the picks of a part picker's result text. */
    bool addPicked(Kind kind, qint64 id, const QString& resultText);
    /** Keeps a grid edit of a listed part's quantity and price. */
    bool savePartGridChanges(Kind kind, qint64 id, const QString& partId, double quantity,
                             double price);
    bool removePart(Kind kind, qint64 id, const QString& partId);
    /** The sum of quantity times price over the service's parts. */
    double partCost(Kind kind, qint64 id);
    /** The labour cost of hours of the crew's work, at the crew's average rate. */
    double budgetedCost(qint64 crewId, double hours);

private:
    void renewSchedule(WriteScope& write, const Service& service, const ServiceCopy& copy,
                       const MeterReadings::ServiceCountAsker& ask);

    Session& m_session;
};
