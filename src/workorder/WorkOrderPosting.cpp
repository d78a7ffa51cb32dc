#include "WorkOrderPosting.h"

#include "DataHelpers.h"
#include "MeterReadings.h"
#include "NextDateCalculator.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QSet>
#include <algorithm>

namespace {

const QString Module = QStringLiteral("Work Order Posting");

// Lists of ids go into IN (...) a slice at a time, well under either engine's bound limit.
constexpr qsizetype SliceSize = 500;

QString placeholders(qsizetype count)
{
    QStringList marks(count, QStringLiteral("?"));
    return u'(' + marks.join(u',') + u')';
}

QVariantList bound(const QList<qint64>& ids)
{
    QVariantList values;
    values.reserve(ids.size());
    for (qint64 id : ids) {
        values.append(id);
    }
    return values;
}

/** Runs sql, whose "%1" takes an IN list, once per slice of ids. */
void execSliced(WriteScope& write, const QString& sql, const QList<qint64>& ids)
{
    for (qsizetype at = 0; at < ids.size() && write.ok(); at += SliceSize) {
        const QList<qint64> slice = ids.mid(at, SliceSize);
        write.exec(sql.arg(placeholders(slice.size())), bound(slice));
    }
}

Rows selectSliced(WriteScope& write, const QString& sql, const QList<qint64>& ids)
{
    Rows rows;
    for (qsizetype at = 0; at < ids.size() && write.ok(); at += SliceSize) {
        const QList<qint64> slice = ids.mid(at, SliceSize);
        rows += write.select(sql.arg(placeholders(slice.size())), bound(slice));
    }
    return rows;
}

QList<qint64> firstColumn(const Rows& rows)
{
    QList<qint64> ids;
    ids.reserve(rows.size());
    for (const QSqlRecord& row : rows) {
        ids.append(row.value(0).toLongLong());
    }
    return ids;
}

QString joined(const QList<qint64>& ids, const QString& separator)
{
    QStringList texts;
    for (qint64 id : ids) {
        texts.append(QString::number(id));
    }
    return texts.join(separator);
}

// The line's own key is NserviceUsedID; its ServiceUsedID is the schedule row (0: none).
const QString LineSelect = QStringLiteral(
    "SELECT l.WorkOrderNo, l.NserviceUsedID, l.EquipmentID, l.ServiceID, l.Name, c.CrewID, "
    "c.CrewNumber, l.LastDateScheduled, l.LastDatePerformed, l.NextScheduledDate, "
    "cc.Description, l.SeparateWo, l.LaborEstimate, l.CostEstimate, l.Note, l.Period, l.JobNo, "
    "l.CountValue, CASE WHEN l.Skip = -1 THEN -1 ELSE 0 END, l.StartTime, l.EndTime, l.Workhrs, "
    "s.SupplierID, s.Name, w.WoDate, w.CompletedDate, l.ServiceUsedID, su.RenewalOn "
    "FROM tblWoServiceUsed l LEFT JOIN tblWorkorder w ON l.WorkOrderNo = w.WorkOrderNo "
    "LEFT JOIN tblServiceUsed su ON l.ServiceUsedID = su.ServiceUsedID "
    "LEFT JOIN tblCrew c ON l.CrewID = c.CrewID "
    "LEFT JOIN tblSupplier s ON l.SupplierID = s.SupplierID "
    "LEFT JOIN tblCostCenter cc ON l.CostCenterID = cc.CostCenterID "
    "WHERE l.WorkOrderNo IN %1 AND (l.Skip = -1 OR l.Completed = -1) "
    "ORDER BY l.WorkOrderNo, l.NserviceUsedID");
// The columns of the selection up to CompletedDate land in history in this order.
constexpr int HistoryColumns = 26;
const QString HistoryInsert = QStringLiteral(
    "INSERT INTO tblWOServiceUsedHistory (WorkOrderNo, ServiceUsedID, EquipmentID, ServiceID, "
    "ServiceName, CrewID, CrewNumber, LastDateScheduled, LastDatePerformed, NextScheduledDate, "
    "CostCenterID, SeparateWo, LaborEstimate, CostEstimate, Note, Period, JobNo, CountValue, "
    "Skip, StartTime, EndTime, Workhrs, SupplierID, SupplierName, StartDate, CompleteDate) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
constexpr int DateColumns[] = {7, 8, 9, 24, 25};

// tblWoPartUsed.ServiceUsedID holds the line's own key (NserviceUsedID).
const QString PartSelect =
    QStringLiteral("SELECT p.ServiceUsedID, p.PartID, t.Description, i.ItemName, p.Price, u.Name, "
                   "p.QuantityRequired, p.QuantityUsed, t.Quantity, p.Used, t.TrackInventory "
                   "FROM tblWoPartUsed p "
                   "LEFT JOIN tblPart t ON LOWER(p.PartID) = LOWER(t.PartID) "
                   "LEFT JOIN tblIndicator i ON t.PartCategoryID = i.ItemID "
                   "LEFT JOIN tblSupplier u ON p.SupplierID = u.SupplierID "
                   "WHERE p.ServiceUsedID IN %1 ORDER BY p.ServiceUsedID");

} // namespace

QString PostingMessages::notPosted(const QList<qint64>& workOrders)
{
    return QStringLiteral("Following Work Orders (%1) aren't posted. Enter counts for these Work "
                          "Orders.")
        .arg(joined(workOrders, QStringLiteral(", ")));
}

/** A done or skipped line as posting reads it. */
struct WorkOrderPosting::Line
{
    QVariantList history; ///< the values of its history row, in the insert's order
    qint64 lineId = 0;
    qint64 scheduleId = 0;
    qint64 equipmentId = 0;
    QString period;
    QVariant countValue;
    QDate nextScheduled;
    QDate completed;
    /** False for a one-time ("Don't Schedule Again") service; a line without a schedule is true. */
    bool schedulesAgain = true;

    explicit Line(const QSqlRecord& row)
        : lineId(row.value(1).toLongLong()), scheduleId(row.value(26).toLongLong()),
          equipmentId(row.value(2).toLongLong()), period(row.value(15).toString()),
          countValue(row.value(17)), nextScheduled(SqlValue::toDate(row.value(9))),
          completed(SqlValue::toDate(row.value(25))),
          schedulesAgain(ScheduleCodes::schedulesAgain(row.value(27).toString()))
    {
        for (int column = 0; column < HistoryColumns; ++column) {
            history.append(row.value(column));
        }
        // Dates are read back in either engine's form and bound as the one form both take.
        for (int column : DateColumns) {
            history[column] = SqlValue::date(SqlValue::toDate(row.value(column)));
        }
    }
};

/** A part of a posted line, with the stock as it stood before any part was posted. */
struct WorkOrderPosting::PartLine
{
    QVariantList history; ///< line, part, description, category, price, supplier, required
    QString partId;
    QVariant quantityUsed;
    double stock = 0;
    bool used = false;
    /** TrackInventory holds the tick of "Do Not Track for Inventory". */
    bool keptInStock = true;

    explicit PartLine(const QSqlRecord& row)
        : partId(row.value(1).toString()), quantityUsed(row.value(7)),
          stock(row.value(8).toDouble()), used(SqlValue::toYesNo(row.value(9))),
          keptInStock(row.value(10).toInt() != -1)
    {
        for (int column = 0; column <= 6; ++column) {
            history.append(row.value(column));
        }
        // A part not used is recorded as none used, whatever was typed.
        history.append(used ? quantityUsed : QVariant(0.0));
    }
};

WorkOrderPosting::WorkOrderPosting(Session& session)
    : m_session(session), m_nextDates(session), m_confirm(keepCompletedDate())
{}

WorkOrderPosting::DateConfirmation WorkOrderPosting::keepCompletedDate()
{
    return [](qint64, const QDate& completedDate, const QDate&) { return completedDate; };
}

QList<qint64> WorkOrderPosting::completeWorkOrders()
{
    return firstColumn(DataHelpers::read(
        m_session, Module, QStringLiteral("cmdPost_Click"),
        QStringLiteral(
            "SELECT WorkOrderNo FROM tblWorkorder WHERE Complete = -1 ORDER BY WorkOrderNo")));
}

WorkOrderPosting::Outcome WorkOrderPosting::postCompleteWorkOrders()
{
    const QList<qint64> complete = completeWorkOrders();
    if (complete.isEmpty()) {
        m_session.prompter().inform(PostingMessages::NothingToPost);
        return {true, {}, {}};
    }
    return postWorkOrders(complete);
}

WorkOrderPosting::Outcome WorkOrderPosting::postWorkOrders(const QList<qint64>& workOrders)
{
    WriteScope write(m_session, Module, QStringLiteral("PostWorkOrder"));
    Outcome outcome;
    const QSet<qint64> waiting = waitingForCounts(write, workOrders);
    for (qint64 workOrder : existingWorkOrders(write, workOrders)) {
        (waiting.contains(workOrder) ? outcome.heldBack : outcome.posted).append(workOrder);
    }
    QList<qint64> postedLines;
    if (!outcome.posted.isEmpty() &&
        !addServiceHistoryRecord(write, outcome.posted, &postedLines)) {
        return {};
    }
    deletePosted(write, postedLines, outcome.posted);
    reopenTheRest(write, outcome.heldBack);
    if (write.ok() && !outcome.heldBack.isEmpty()) {
        m_session.prompter().inform(PostingMessages::notPosted(outcome.heldBack));
    }
    outcome.ok = write.commit();
    return outcome.ok ? outcome : Outcome{};
}

QList<qint64> WorkOrderPosting::existingWorkOrders(WriteScope& write,
                                                   const QList<qint64>& workOrders)
{
    QList<qint64> existing = firstColumn(selectSliced(
        write, QStringLiteral("SELECT WorkOrderNo FROM tblWorkorder WHERE WorkOrderNo IN %1"),
        workOrders));
    std::sort(existing.begin(), existing.end());
    existing.erase(std::unique(existing.begin(), existing.end()), existing.end());
    return existing;
}

QSet<qint64> WorkOrderPosting::waitingForCounts(WriteScope& write, const QList<qint64>& workOrders)
{
    // One meter line without a count, done or skipped, keeps its whole work order back.
    const QList<qint64> waiting = firstColumn(selectSliced(
        write,
        QStringLiteral("SELECT DISTINCT WorkOrderNo FROM tblWoServiceUsed WHERE WorkOrderNo IN "
                       "%1 AND Period IN %2 AND CountValue IS NULL AND "
                       "(Completed = -1 OR Skip = -1)")
            .arg(QStringLiteral("%1"), ScheduleCodes::meterPeriodsSql()),
        workOrders));
    return QSet<qint64>(waiting.cbegin(), waiting.cend());
}

bool WorkOrderPosting::addServiceHistoryRecord(WriteScope& write, const QList<qint64>& workOrders,
                                               QList<qint64>* postedLines)
{
    const Rows rows = selectSliced(write, LineSelect, workOrders);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Line line(rows.at(i));
        if (!postLine(write, line)) {
            return false;
        }
        postedLines->append(line.lineId);
        if (m_progress) {
            m_progress(int(i + 1), int(rows.size()));
        }
    }
    return write.ok() && addPartHistory(write, *postedLines);
}

bool WorkOrderPosting::postLine(WriteScope& write, const Line& line)
{
    write.exec(HistoryInsert, line.history);
    const QString countType = ScheduleCodes::countType(line.period);
    if (line.scheduleId != 0) {
        return write.ok() && moveSchedule(write, line);
    }
    if (!countType.isEmpty() && !isCountAvailable(line.equipmentId, line.completed, countType,
                                                  line.countValue.toLongLong())) {
        return write.ok() && storeReading(write, line, countType);
    }
    return write.ok();
}

bool WorkOrderPosting::moveSchedule(WriteScope& write, const Line& line)
{
    const bool again = line.schedulesAgain;
    write.exec(
        again ? QStringLiteral("UPDATE tblServiceUsed SET LastDateScheduled = ?, "
                               "LastDatePerformed = ? WHERE ServiceUsedID = ?")
              : QStringLiteral("UPDATE tblServiceUsed SET LastDateScheduled = ?, "
                               "LastDatePerformed = ?, Inactive = 1 WHERE ServiceUsedID = ?"),
        {SqlValue::date(line.nextScheduled), SqlValue::date(line.completed), line.scheduleId});
    const QString countType = ScheduleCodes::countType(line.period);
    QDate next;
    if (!countType.isEmpty()) {
        if (!write.ok() || !storeReading(write, line, countType) ||
            !serviceCountUpdate(write, line.scheduleId, line.countValue.toLongLong())) {
            return false;
        }
    } else if (again) {
        // Reads the last dates written just above: W counts from completion, S from the old date.
        next = m_nextDates.nextScheduledDate(line.scheduleId);
    }
    if (again) {
        write.exec(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledDate = ? "
                                  "WHERE ServiceUsedID = ?"),
                   {SqlValue::date(confirmedNextDate(line, next)), line.scheduleId});
    }
    return write.ok();
}

bool WorkOrderPosting::storeReading(WriteScope& write, const Line& line, const QString& countType)
{
    MeterReadings::insertReading(write, line.equipmentId, line.completed, countType,
                                 line.countValue.toLongLong());
    return write.ok();
}

QDate WorkOrderPosting::confirmedNextDate(const Line& line, const QDate& proposed)
{
    if (!proposed.isValid() || !line.completed.isValid() || proposed >= line.completed) {
        return proposed;
    }
    m_session.prompter().inform(PostingMessages::ScheduleBehindCompletion);
    return m_confirm(line.scheduleId, line.completed, proposed);
}

bool WorkOrderPosting::addPartHistory(WriteScope& write, const QList<qint64>& postedLines)
{
    // Every part is read before any stock moves: the same part on two lines ends at
    // the stock it had less the last line's use.
    QList<PartLine> parts;
    for (const QSqlRecord& row : selectSliced(write, PartSelect, postedLines)) {
        parts.append(PartLine(row));
    }
    for (const PartLine& part : parts) {
        postPart(write, part);
    }
    return write.ok();
}

void WorkOrderPosting::postPart(WriteScope& write, const PartLine& part)
{
    write.exec(QStringLiteral("INSERT INTO tblWoPartHistory (ServiceusedID, PartID, Description, "
                              "PartCategoryID, Price, SupplierID, QuantityRequired, QuantityUsed) "
                              "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
               part.history);
    const double used = part.quantityUsed.toDouble();
    if (write.ok() && part.used && used > 0 && part.keptInStock) {
        write.exec(QStringLiteral("UPDATE tblPart SET Quantity = ? WHERE LOWER(PartID) = LOWER(?)"),
                   {part.stock - used, part.partId});
    }
}

void WorkOrderPosting::deletePosted(WriteScope& write, const QList<qint64>& postedLines,
                                    const QList<qint64>& workOrders)
{
    // tblWoPartUsed.ServiceUsedID holds the line's own key.
    execSliced(write, QStringLiteral("DELETE FROM tblWoPartUsed WHERE ServiceUsedID IN %1"),
               postedLines);
    execSliced(write, QStringLiteral("DELETE FROM tblWoServiceUsed WHERE NserviceUsedID IN %1"),
               postedLines);
    // A work order keeps its header while lines that were neither done nor skipped remain.
    execSliced(write,
               QStringLiteral("DELETE FROM tblWorkorder WHERE WorkOrderNo IN %1 AND NOT EXISTS "
                              "(SELECT 1 FROM tblWoServiceUsed l "
                              "WHERE l.WorkOrderNo = tblWorkorder.WorkOrderNo)"),
               workOrders);
}

void WorkOrderPosting::reopenTheRest(WriteScope& write, const QList<qint64>& heldBack)
{
    // After a post only the work orders waiting for counts stay Complete; all else is open.
    const QSet<qint64> held(heldBack.cbegin(), heldBack.cend());
    QList<qint64> marked = firstColumn(write.select(QStringLiteral(
        "SELECT WorkOrderNo FROM tblWorkorder WHERE Complete IS NULL OR Complete <> 0 OR "
        "CompletedDate IS NOT NULL")));
    marked.removeIf([&held](qint64 workOrder) { return held.contains(workOrder); });
    execSliced(write,
               QStringLiteral("UPDATE tblWorkorder SET Complete = 0, CompletedDate = NULL "
                              "WHERE WorkOrderNo IN %1"),
               marked);
}

bool WorkOrderPosting::isServiceSkipped(qint64 lineId)
{
    const Rows rows = DataHelpers::read(
        m_session, Module, QStringLiteral("IsServiceSkiped"),
        QStringLiteral("SELECT Skip FROM tblWoServiceUsed WHERE NserviceUsedID = ?"), {lineId});
    return !rows.isEmpty() && rows.first().value(0).toInt() == -1;
}

bool WorkOrderPosting::isCountAvailable(qint64 equipmentId, const QDate& date,
                                        const QString& countType, qint64 value)
{
    return DataHelpers::recordCount(
               m_session, QStringLiteral("tblEquipmentCount"),
               {QStringLiteral("EquipmentID = ? AND ChangeDate = ? AND CountType = ? AND "
                               "CountValue = ?"),
                {equipmentId, SqlValue::date(date), countType, value}}) > 0;
}

bool WorkOrderPosting::serviceCountUpdate(WriteScope& write, qint64 scheduleId, qint64 countValue)
{
    const Rows rows = write.select(QStringLiteral("SELECT RenewalOn, NextScheduledCount, EInterval "
                                                  "FROM tblServiceUsed WHERE ServiceUsedID = ?"),
                                   {scheduleId});
    if (!rows.isEmpty()) {
        const QSqlRecord& row = rows.first();
        const bool fromCompletion = row.value(0).toString().toUpper() == u"W";
        const qint64 from = fromCompletion ? countValue : row.value(1).toLongLong();
        write.exec(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledCount = ? "
                                  "WHERE ServiceUsedID = ?"),
                   {from + row.value(2).toLongLong(), scheduleId});
    }
    return write.ok();
}

WorkOrderPosting::ServiceOnMachine WorkOrderPosting::serviceOnMachine(qint64 scheduleId)
{
    const Rows rows = DataHelpers::read(
        m_session, Module, QStringLiteral("frmServiceDateConfirmation"),
        QStringLiteral("SELECT e.EquipmentName, e.UnitNo, s.Name FROM tblServiceUsed s "
                       "LEFT JOIN tblEquipment e ON s.EquipmentID = e.EquipmentID "
                       "WHERE s.ServiceUsedID = ?"),
        {scheduleId});
    if (rows.isEmpty()) {
        return {};
    }
    const QSqlRecord& row = rows.first();
    return {row.value(0).toString(), row.value(1).toString(), row.value(2).toString()};
}

WorkOrderPosting::DateCheck WorkOrderPosting::checkNextScheduled(const QDate& completedDate,
                                                                 const QDate& chosen)
{
    if (chosen < completedDate) {
        return {completedDate, PostingMessages::NextBeforeComplete};
    }
    return {chosen, QString()};
}
