#pragma once

#include "DataHelpers.h"
#include "DateReadings.h"

#include <QString>
#include <QTime>
#include <QVariant>

class Session;

/**
 * The posted work of one machine, corrected in place. A history row's key is
 * the lineId it had as an open line (tblWOServiceUsedHistory.ServiceUsedID),
 * which also ties its parts to it. Corrections never reach the schedule or
 * the stock, and the messages say so. Writes join an open transaction, the
 * equipment screen's edit.
 */
class ServiceHistory
{
public:
    /** The editable cells of the service history grid. */
    enum class Cell { Date, Crew, LaborCost, StartTime, EndTime, WorkHrs, Count };
    /** The editable cells of the part history grid. */
    enum class PartCell { QtyUsed, Price };

    /** The columns of rows(), in order. */
    enum Column {
        WorkOrderNo,
        LineId,
        Date,
        ServiceName,
        ServiceCrew,
        CostCenter,
        BudgetedHrs,
        LaborCost,
        StartTime,
        EndTime,
        WorkHrs,
        Skip,
        Count,
        SupplierName,
        PartCost,
    };

    static inline const QString CountMessage =
        QStringLiteral("Changing the count will not effect the schedule");
    static inline const QString DateMessage =
        QStringLiteral("Changing the date will not adjust the schedule");
    static inline const QString QuantityMessage = QStringLiteral(
        "This will not adjust the quantity on hand for the inventory. You will manually need "
        "to adjust this if needed.");

    explicit ServiceHistory(Session& session);

    /** The remembered range (EqDateFrom, EqDateTo); without one, a year back to today. */
    DateRange range() const;
    void storeRange(const DateRange& range);

    /** The machine's history rows completed in range, both ends included, in Column order. */
    Rows rows(qint64 equipmentId, const DateRange& range);
    /** The parts of a history row: "Part Number", Description, "Qty Used", Price, Category,
     *  Supplier. */
    Rows partRows(qint64 lineId);
    /** The cost of the parts used on a history row; 0 without any. */
    double partCost(qint64 lineId);

    /**
     * Applies an edited cell by its rules; a blank value is stored as null. False,
     * with a message where there is one, when the value was refused and the stored
     * one stays.
     */
    bool editCell(qint64 lineId, Cell cell, const QVariant& value);
    /** Applies an edited part cell; a blank value is 0. False when nothing changed. */
    bool editPartCell(qint64 lineId, const QString& partId, PartCell cell, const QVariant& value);
    /** Asks, then deletes the row with its parts. Schedule, stock and readings stay. */
    bool deleteHistory(qint64 lineId);

    /** A stored time as the grid shows it; hours worked as "h:mm". */
    static QString timeText(const QVariant& stored, bool hours);

private:
    bool editStart(qint64 lineId, const QVariant& value);
    bool editEnd(qint64 lineId, const QVariant& value);
    bool editWorkHrs(qint64 lineId, const QVariant& value);
    bool editCrew(qint64 lineId, const QVariant& value);
    bool editWhole(qint64 lineId, const QVariant& value);
    bool storeHours(qint64 lineId, const QTime& start, const QTime& end);
    bool update(qint64 lineId, const QString& column, const QVariant& value);
    QSqlRecord row(qint64 lineId);

    Session& m_session;
};
