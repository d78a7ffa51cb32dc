#pragma once

#include "DataHelpers.h"
#include "WorkOrderFilter.h"

#include <QList>

class Session;

/**
 * What the print tab shows: machines with due services not yet on a work
 * order, open work orders, and the services, parts and notes of either.
 * "Due" means a next date inside the filter's dates.
 */
class WorkOrderLists
{
public:
    explicit WorkOrderLists(Session& session) : m_session(session) {}

    /**
     * Due machines and open work orders in one list: EquipmentID, WorkOrderNo
     * (NULL on a due machine), UnitNo, EquipmentName, EquipmentType, Printed;
     * by unit number, the due row first. An order without lines is always in it.
     */
    Rows printList(const WorkOrderFilter& filter);

    /** The machines of the due rows among rows, in order. */
    static QList<qint64> dueEquipment(const Rows& rows);
    /** The numbers of the work order rows among rows, in order. */
    static QList<qint64> workOrderNumbers(const Rows& rows);

    /**
     * The due services of a machine not on a work order yet: ServiceUsedID,
     * ServiceNo, ServiceName, ServiceCrew, NextScheduledDate, SeparateWo.
     */
    Rows dueServices(qint64 equipmentId, const WorkOrderFilter& filter);
    /** The parts of a service on a machine: PartNumber, Description, QuantityRequired, Price. */
    Rows dueServiceParts(qint64 scheduleId);
    QString dueServiceNote(qint64 scheduleId);
    /** Writes the note of a service on a machine straight away. */
    bool setDueServiceNote(qint64 scheduleId, const QString& note);

    /**
     * The lines of a work order inside the filter's dates or without a date:
     * ServiceNo, ServiceName, ServiceCrew, NextScheduledDate, Skip, SeparateWo,
     * ServiceID, NserviceUsedID.
     */
    Rows lines(qint64 workOrderNo, const WorkOrderFilter& filter);
    /** The parts of a line: PartNumber, Description, QuantityRequired, Price. */
    Rows lineParts(qint64 lineId);
    QString lineNote(qint64 lineId);

private:
    Session& m_session;
};
