#pragma once

#include "DataHelpers.h"
#include "EquipmentServices.h"

#include <QDate>
#include <QList>
#include <QString>

class Session;
class WriteScope;

/**
 * Work orders made and changed by hand: an empty order for unscheduled
 * work, lines from a service picker, parts from the part picker, removing
 * lines, parts and whole orders, and marking orders printed. Each operation
 * is one transaction that joins an open one.
 */
class WorkOrderRecords
{
public:
    explicit WorkOrderRecords(Session& session) : m_session(session) {}

    /** Writes a new unprinted header for the machine, dated day; its number, 0 after a failure. */
    static qint64 insertHeader(WriteScope& write, qint64 equipmentId, const QDate& day);

    /** A work order without lines for the machine; its number, or 0 when it failed. */
    qint64 addWorkOrder(qint64 equipmentId);
    /** An empty work order for each machine, all or none; the new numbers in order. */
    bool addUnscheduled(const QList<qint64>& equipmentIds, QList<qint64>* numbers);
    bool workOrderExists(qint64 workOrderNo);

    /**
     * A line for each picked service, with its parts: from the master list
     * ("SL", ServiceIDs, scheduleId 0) or from the machine's services ("EL",
     * scheduleIds). The line has no last dates and is due today. A service
     * the work order has already is passed over without a word.
     */
    bool addServices(qint64 workOrderNo, qint64 equipmentId, const ServicePick& pick,
                     bool completed);
    /** The parts of a part picker's result text on a line, quantity used as required. */
    bool addParts(qint64 lineId, const QString& pickedParts, bool used);

    /** Removes a line and its parts; its service becomes due again. */
    bool deleteLine(qint64 lineId);
    bool deletePart(qint64 lineId, const QString& partId);
    /** Removes a work order with its lines and parts, writing no history. */
    bool deleteWorkOrder(qint64 workOrderNo);
    /** Marks the work orders printed; an empty list changes nothing. */
    bool markPrinted(const QList<qint64>& workOrderNos);

private:
    void addService(WriteScope& write, qint64 workOrderNo, qint64 equipmentId, qint64 id,
                    bool fromMasterList, bool completed);

    Session& m_session;
};
