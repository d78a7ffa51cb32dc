#pragma once

#include "DataHelpers.h"
#include "WorkOrderFilter.h"

#include <QList>
#include <functional>

class Session;
class WriteScope;

/**
 * Turns the due services of machines into work orders. For each machine,
 * one work order per crew of the services that share an order (SeparateWo
 * "0"), then one per service that stands alone ("1"); a service with neither
 * flag is left due. Lines copy the schedule row, parts are planned and used
 * alike. A shared service without a crew is a failure, never silently left out.
 */
class WorkOrderGeneration
{
public:
    /** Told after each machine: how many are done of how many. */
    using Progress = std::function<void(int done, int total)>;

    explicit WorkOrderGeneration(Session& session) : m_session(session) {}
    void setProgress(Progress progress) { m_progress = std::move(progress); }

    /**
     * Generates for every machine given, in one transaction: all or nothing.
     * The service crew range and the dates of filter choose the services; the
     * assign crew range does not. The new numbers are appended in the order
     * made; false (reported, nothing kept) on a failure.
     */
    bool generate(const QList<qint64>& equipmentIds, const WorkOrderFilter& filter,
                  QList<qint64>* numbers);

private:
    void generateForMachine(WriteScope& write, qint64 equipmentId, const SqlFilter& due,
                            QList<qint64>* numbers);
    void addLine(WriteScope& write, qint64 workOrderNo, qint64 scheduleId);

    Session& m_session;
    Progress m_progress;
};
