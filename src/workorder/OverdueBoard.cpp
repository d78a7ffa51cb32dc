#include "OverdueBoard.h"

#include "WorkOrderFilter.h"

#include "DataHelpers.h"
#include "Options.h"
#include "Session.h"
#include "SqlValue.h"

namespace {

const QString Module = QStringLiteral("frmOverDueWork");

/**
 * Services due in the window with no line on a work order (both ServiceUsedID
 * columns here are the scheduleId), then the work orders without a
 * completion date, lines or none.
 */
const QString BoardQuery =
    QStringLiteral("SELECT DISTINCT e.UnitNo || ' - ' || e.EquipmentName AS UnitText, "
                   "CAST(NULL AS INTEGER) AS WorkOrderNo FROM tblEquipment e "
                   "JOIN tblServiceUsed s ON e.EquipmentID = s.EquipmentID "
                   "WHERE s.NextScheduledDate >= ? AND s.NextScheduledDate <= ? AND s.Inactive = 0 "
                   "AND NOT EXISTS (SELECT 1 FROM tblWoServiceUsed w "
                   "WHERE w.ServiceUsedID = s.ServiceUsedID) "
                   "UNION SELECT DISTINCT e.UnitNo || ' - ' || e.EquipmentName, o.WorkOrderNo "
                   "FROM tblWorkorder o LEFT JOIN tblEquipment e ON o.EquipmentID = e.EquipmentID "
                   "WHERE o.CompletedDate IS NULL "
                   "ORDER BY 1, 2 NULLS FIRST");

} // namespace

OverdueBoard::OverdueBoard(Session& session) : m_session(session) {}

QList<OverdueBoard::Row> OverdueBoard::loadData(const QDateTime& now)
{
    // Dates have no time: a day counts from its start, so the day 30 days back
    // is in only when now is that day's midnight.
    const QDateTime start = now.addDays(-WindowDays);
    const QDate first = start.time() == QTime(0, 0) ? start.date() : start.date().addDays(1);
    QList<Row> rows;
    for (const QSqlRecord& record :
         DataHelpers::read(m_session, Module, QStringLiteral("LoadData"), BoardQuery,
                           {SqlValue::date(first), SqlValue::date(now.date())})) {
        // A server hands a null number back typed: ask the record, not the value.
        rows.append({record.value(0).toString(), record.isNull(1) ? QVariant() : record.value(1)});
    }
    return rows;
}

QList<OverdueBoard::Row> OverdueBoard::loadData()
{
    return loadData(m_session.clock().now());
}

QString OverdueBoard::preparePrintFilter(const QString& unit)
{
    // The work order screen then opens on the board's own window.
    WorkOrderFilter filter = WorkOrderFilter::load(m_session);
    filter.to = m_session.today();
    filter.from = filter.to.addDays(-WindowDays);
    filter.save(m_session);
    return unitNoOf(unit);
}

QString OverdueBoard::unitNoOf(const QString& unit)
{
    // A unit number with a "-" of its own is cut short there, as it always was.
    const qsizetype dash = unit.indexOf(u'-');
    return dash < 0 ? unit : unit.left(std::max<qsizetype>(0, dash - 1));
}
