#include "WorkOrderRecording.h"

#include "DataHelpers.h"
#include "LabourCost.h"
#include "MeterReadings.h"
#include "Options.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Schema.h"
#include "ServiceTime.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QSqlRecord>
#include <algorithm>

namespace RecordingMessages {

QString countBelowReading(qint64 reading)
{
    return QStringLiteral("Enter count is smaller than previous count(%1). Do you want to "
                          "continue ?")
        .arg(reading);
}

} // namespace RecordingMessages

namespace {

const QString Module = QStringLiteral("frmWorkorder");
const QString ServiceChange = QStringLiteral("grdRecordService_Change");
constexpr int OldestCompletedYears = 50;

const QString OrderSelect =
    QStringLiteral("SELECT w.WorkOrderNo, w.Complete, w.CompletedDate, e.UnitNo, e.EquipmentName, "
                   "t.ItemName, w.Printed, w.EquipmentID, w.WoDate FROM (tblWorkorder w "
                   "LEFT JOIN tblEquipment e ON w.EquipmentID = e.EquipmentID) "
                   "LEFT JOIN tblIndicator t ON e.EquipmentType = t.ItemID ");

const QString LineSelect = QStringLiteral(
    "SELECT NserviceUsedID, WorkOrderNo, Completed, Skip, JobNo, Name, CrewID, "
    "NextScheduledDate, Period, CountValue, StartTime, EndTime, Workhrs, CostEstimate, "
    "ServiceID, SupplierID, Note FROM tblWoServiceUsed ");

// tblWoPartUsed.ServiceUsedID holds the line's own key (lineId), never a schedule key.
const QString PartSelect = QStringLiteral(
    "SELECT p.PartID, p.Used, t.Description, p.QuantityRequired, p.QuantityUsed, p.Price, "
    "p.SupplierID FROM tblWoPartUsed p LEFT JOIN tblPart t ON p.PartID = t.PartID "
    "WHERE p.ServiceUsedID = ? ");

WorkOrderRecording::Order toOrder(const QSqlRecord& r)
{
    WorkOrderRecording::Order o;
    o.workOrderNo = r.value(0).toLongLong();
    o.complete = SqlValue::toYesNo(r.value(1));
    o.completedDate = SqlValue::toDate(r.value(2));
    o.unitNo = r.value(3).toString();
    o.equipmentName = r.value(4).toString();
    o.equipmentType = r.value(5).toString();
    o.printed = SqlValue::toYesNo(r.value(6));
    o.equipmentId = r.value(7).toLongLong();
    o.woDate = SqlValue::toDate(r.value(8));
    return o;
}

WorkOrderRecording::Line toLine(const QSqlRecord& r)
{
    WorkOrderRecording::Line l;
    l.lineId = r.value(0).toLongLong();
    l.workOrderNo = r.value(1).toLongLong();
    l.completed = SqlValue::toYesNo(r.value(2));
    l.skip = SqlValue::toYesNo(r.value(3));
    l.jobNo = r.value(4).toString();
    l.name = r.value(5).toString();
    l.crewId = r.value(6).toLongLong();
    l.nextScheduledDate = SqlValue::toDate(r.value(7));
    l.period = r.value(8).toString();
    l.scheduleType = ScheduleCodes::periodText(l.period);
    l.countValue = r.isNull(9) ? QVariant() : r.value(9); // PostgreSQL gives a typed null
    l.startTime = ServiceTime::fromStored(r.value(10));
    l.endTime = ServiceTime::fromStored(r.value(11));
    l.workHours = ServiceTime::fromStored(r.value(12));
    l.costEstimate = r.value(13).toDouble();
    l.serviceId = r.value(14).toLongLong();
    l.supplierId = r.value(15).toLongLong();
    l.note = r.value(16).toString();
    return l;
}

WorkOrderRecording::Part toPart(const QSqlRecord& r)
{
    return {r.value(0).toString(),  SqlValue::toYesNo(r.value(1)), r.value(2).toString(),
            r.value(3).toDouble(),  r.value(4).toDouble(),         r.value(5).toDouble(),
            r.value(6).toLongLong()};
}

WorkOrderRecording::Edit outcome(bool stored)
{
    return stored ? WorkOrderRecording::Edit::Stored : WorkOrderRecording::Edit::Failed;
}

bool blank(const QString& text)
{
    return text.trimmed().isEmpty();
}

} // namespace

bool WorkOrderRecording::Line::wantsReading() const
{
    return ScheduleCodes::isMeterPeriod(period);
}

WorkOrderRecording::WorkOrderRecording(Session& session) : m_session(session) {}

QList<WorkOrderRecording::Order> WorkOrderRecording::openOrders()
{
    const int days = lateDays();
    QList<Order> orders;
    for (const QSqlRecord& row :
         DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordWorkorder"),
                           OrderSelect + QStringLiteral("ORDER BY w.WorkOrderNo DESC"))) {
        Order o = toOrder(row);
        o.late = isLate(o.workOrderNo, days);
        orders.append(o);
    }
    return orders;
}

std::optional<WorkOrderRecording::Order> WorkOrderRecording::order(qint64 workOrderNo)
{
    const Rows rows =
        DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordWorkorder"),
                          OrderSelect + QStringLiteral("WHERE w.WorkOrderNo = ?"), {workOrderNo});
    if (rows.isEmpty()) {
        return std::nullopt;
    }
    Order o = toOrder(rows.first());
    o.late = isLate(workOrderNo, lateDays());
    return o;
}

QList<WorkOrderRecording::Line> WorkOrderRecording::lines(qint64 workOrderNo)
{
    QList<Line> result;
    for (const QSqlRecord& row :
         DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordServiceGrid"),
                           LineSelect + QStringLiteral("WHERE WorkOrderNo = ? "
                                                       "ORDER BY NserviceUsedID"),
                           {workOrderNo})) {
        result.append(toLine(row));
    }
    return result;
}

std::optional<WorkOrderRecording::Line> WorkOrderRecording::line(qint64 lineId)
{
    const Rows rows =
        DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordServiceGrid"),
                          LineSelect + QStringLiteral("WHERE NserviceUsedID = ?"), {lineId});
    return rows.isEmpty() ? std::nullopt : std::optional<Line>(toLine(rows.first()));
}

QList<WorkOrderRecording::Part> WorkOrderRecording::parts(qint64 lineId)
{
    QList<Part> result;
    for (const QSqlRecord& row :
         DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordPartGrid"),
                           PartSelect + QStringLiteral("ORDER BY p.PartID"), {lineId})) {
        result.append(toPart(row));
    }
    return result;
}

std::optional<WorkOrderRecording::Part> WorkOrderRecording::part(qint64 lineId,
                                                                 const QString& partId)
{
    const Rows rows =
        DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordPartGrid"),
                          PartSelect + QStringLiteral("AND p.PartID = ?"), {lineId, partId});
    return rows.isEmpty() ? std::nullopt : std::optional<Part>(toPart(rows.first()));
}

int WorkOrderRecording::lateDays()
{
    // A blank option counts as 0, and 0 turns the colouring off.
    return std::min(Options::option(m_session, QStringLiteral("SERVICE_LATE_RED")).toInt(),
                    Options::option(m_session, QStringLiteral("SERVICE_LATE_YELLOW")).toInt());
}

bool WorkOrderRecording::isLate(qint64 workOrderNo, int days)
{
    if (days <= 0) {
        return false;
    }
    return !DataHelpers::read(
                m_session, Module, QStringLiteral("ISWorkOrderLate"),
                QStringLiteral("SELECT WorkOrderNo FROM tblWoServiceUsed WHERE NextScheduledDate "
                               "<= ? AND WorkOrderNo = ? GROUP BY WorkOrderNo "
                               "HAVING COUNT(NserviceUsedID) >= 2"),
                {SqlValue::date(m_session.today().addDays(-days)), workOrderNo})
                .isEmpty();
}

bool WorkOrderRecording::isWorkOrderLate(qint64 workOrderNo)
{
    return isLate(workOrderNo, lateDays());
}

bool WorkOrderRecording::completedDateAllowed(const QDate& date, const QDate& today)
{
    return !date.isValid() || date >= today.addYears(-OldestCompletedYears);
}

void WorkOrderRecording::writeHeader(WriteScope& write, qint64 workOrderNo,
                                     const QDate& completedDate)
{
    write.exec(
        QStringLiteral("UPDATE tblWorkorder SET CompletedDate = ?, Complete = ? "
                       "WHERE WorkOrderNo = ?"),
        {SqlValue::date(completedDate), SqlValue::yesNo(completedDate.isValid()), workOrderNo});
}

bool WorkOrderRecording::updateWorkorder(qint64 workOrderNo, const QDate& completedDate,
                                         Reach reach)
{
    WriteScope write(m_session, Module, QStringLiteral("UpdateWorkorder"));
    writeHeader(write, workOrderNo, completedDate);
    if (reach == Reach::HeaderOnly) {
        return write.commit();
    }
    const bool done = completedDate.isValid();
    // Completing leaves skipped lines as they are; clearing reaches every line but keeps Skip.
    const QString lines = done ? QStringLiteral("WorkOrderNo = ? AND (Skip IS NULL OR Skip <> -1)")
                               : QStringLiteral("WorkOrderNo = ?");
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Completed = ? WHERE ") + lines,
               {SqlValue::yesNo(done), workOrderNo});
    write.exec(QStringLiteral("UPDATE tblWoPartUsed SET Used = ? WHERE ServiceUsedID IN "
                              "(SELECT NserviceUsedID FROM tblWoServiceUsed WHERE ") +
                   lines + u')',
               {SqlValue::yesNo(done), workOrderNo});
    return write.commit();
}

bool WorkOrderRecording::updateWorkorder2(qint64 workOrderNo, const QString& column,
                                          const QVariant& value)
{
    WriteScope write(m_session, Module, QStringLiteral("UpdateWorkorder2"));
    const bool known = Schema::instance().hasColumn(QStringLiteral("tblWorkorder"), column) &&
                       column.compare(QLatin1String("WorkOrderNo"), Qt::CaseInsensitive) != 0;
    if (!known) {
        write.fail(QStringLiteral("tblWorkorder has no column %1 to change.").arg(column));
    } else {
        write.exec(
            QStringLiteral("UPDATE tblWorkorder SET %1 = ? WHERE WorkOrderNo = ?").arg(column),
            {value, workOrderNo});
    }
    return write.commit();
}

WorkOrderRecording::Edit WorkOrderRecording::setComplete(qint64 workOrderNo, bool complete)
{
    return outcome(updateWorkorder(workOrderNo, complete ? m_session.today() : QDate()));
}

WorkOrderRecording::Edit WorkOrderRecording::setCompletedDate(qint64 workOrderNo, const QDate& date)
{
    if (!completedDateAllowed(date, m_session.today())) {
        m_session.prompter().inform(RecordingMessages::DateTooOld);
        return Edit::Refused;
    }
    const std::optional<Order> old = order(workOrderNo);
    if (old && old->completedDate.isValid() && old->completedDate == date) {
        return Edit::Unchanged;
    }
    return outcome(updateWorkorder(workOrderNo, date));
}

void WorkOrderRecording::stampOrderOf(WriteScope& write, qint64 lineId)
{
    // The first line ticked or skipped makes its order Complete, and leaves the other lines be.
    const Rows rows =
        write.select(QStringLiteral("SELECT w.WorkOrderNo, w.Complete FROM tblWorkorder w JOIN "
                                    "tblWoServiceUsed l ON l.WorkOrderNo = w.WorkOrderNo "
                                    "WHERE l.NserviceUsedID = ?"),
                     {lineId});
    if (!rows.isEmpty() && !SqlValue::toYesNo(rows.first().value(1))) {
        writeHeader(write, rows.first().value(0).toLongLong(), m_session.today());
    }
}

void WorkOrderRecording::writeLineDone(WriteScope& write, qint64 lineId, bool done)
{
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Completed = ? WHERE NserviceUsedID = ?"),
               {SqlValue::yesNo(done), lineId});
    write.exec(QStringLiteral("UPDATE tblWoPartUsed SET Used = ? WHERE ServiceUsedID = ?"),
               {SqlValue::yesNo(done), lineId});
}

WorkOrderRecording::Edit WorkOrderRecording::setLineCompleted(qint64 lineId, bool completed)
{
    WriteScope write(m_session, Module, ServiceChange);
    stampOrderOf(write, lineId);
    writeLineDone(write, lineId, completed);
    if (completed) {
        write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Skip = ? WHERE NserviceUsedID = ?"),
                   {SqlValue::yesNo(false), lineId});
    }
    return outcome(write.commit());
}

std::optional<QString> WorkOrderRecording::askSkipReason(qint64 lineId)
{
    const std::optional<Line> current = line(lineId);
    return m_session.prompter().input(RecordingMessages::SkipReason, QString(),
                                      current ? current->note : QString());
}

WorkOrderRecording::Edit WorkOrderRecording::skipLine(qint64 lineId, const QString& reason)
{
    if (blank(reason)) {
        return Edit::Refused;
    }
    WriteScope write(m_session, Module, ServiceChange);
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Note = ? WHERE NserviceUsedID = ?"),
               {reason, lineId});
    stampOrderOf(write, lineId);
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Skip = ? WHERE NserviceUsedID = ?"),
               {SqlValue::yesNo(true), lineId});
    writeLineDone(write, lineId, false);
    return outcome(write.commit());
}

WorkOrderRecording::Edit WorkOrderRecording::unskipLine(qint64 lineId)
{
    return updateService(lineId, QStringLiteral("Skip"), SqlValue::yesNo(false), ServiceChange);
}

WorkOrderRecording::Edit WorkOrderRecording::setLineCrew(qint64 lineId, qint64 crewId)
{
    // The budget follows the new crew: its rate times the line's budgeted hours.
    const double rate = LabourCost::laborCost(m_session, crewId);
    WriteScope write(m_session, Module, ServiceChange);
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET CrewID = ?, "
                              "CostEstimate = ? * COALESCE(LaborEstimate, 0) "
                              "WHERE NserviceUsedID = ?"),
               {crewId, rate, lineId});
    return outcome(write.commit());
}

WorkOrderRecording::Edit WorkOrderRecording::setLineSupplier(qint64 lineId, qint64 supplierId)
{
    return updateService(lineId, QStringLiteral("SupplierID"), supplierId);
}

WorkOrderRecording::Edit WorkOrderRecording::setLineCount(qint64 lineId, qint64 count)
{
    const std::optional<Line> current = line(lineId);
    const std::optional<Order> owner = current ? order(current->workOrderNo) : std::nullopt;
    if (!owner) {
        return Edit::Refused;
    }
    const MeterReadings::Reading last = MeterReadings(m_session).latest(
        owner->equipmentId, ScheduleCodes::countType(current->period));
    if (last.exists && last.value > count &&
        !m_session.prompter().askYesNo(RecordingMessages::countBelowReading(last.value))) {
        return Edit::Refused;
    }
    return updateService(lineId, QStringLiteral("CountValue"), count);
}

WorkOrderRecording::Edit WorkOrderRecording::setNote(qint64 lineId, const QString& note)
{
    const std::optional<Line> current = line(lineId);
    if (current && current->skip && blank(note)) {
        m_session.prompter().message(RecordingMessages::NoteBlank, Prompter::Buttons::Ok,
                                     Prompter::Icon::Critical);
        return Edit::Refused;
    }
    return updateService(lineId, QStringLiteral("Note"), note,
                         QStringLiteral("txtRecordNote_Validate"));
}

std::optional<QString> WorkOrderRecording::askSkipAllReason(const QString& defaultNote)
{
    return m_session.prompter().input(RecordingMessages::SkipAllReason, QString(), defaultNote);
}

WorkOrderRecording::Edit WorkOrderRecording::skipAll(qint64 workOrderNo, const QString& reason)
{
    if (blank(reason)) {
        return Edit::Refused;
    }
    WriteScope write(m_session, Module, QStringLiteral("cmdSkipAll_Click"));
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Skip = ?, Completed = ? "
                              "WHERE WorkOrderNo = ?"),
               {SqlValue::yesNo(true), SqlValue::yesNo(false), workOrderNo});
    write.exec(
        QStringLiteral("UPDATE tblWoPartUsed SET Used = ? WHERE ServiceUsedID IN "
                       "(SELECT NserviceUsedID FROM tblWoServiceUsed WHERE WorkOrderNo = ?)"),
        {SqlValue::yesNo(false), workOrderNo});
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET Note = ? WHERE WorkOrderNo = ?"),
               {reason, workOrderNo});
    return outcome(write.commit());
}

WorkOrderRecording::Edit WorkOrderRecording::setPartSupplier(qint64 lineId, const QString& partId,
                                                             qint64 supplierId)
{
    return updatePart(lineId, partId, QStringLiteral("SupplierID"), supplierId);
}

WorkOrderRecording::Edit WorkOrderRecording::setPartQuantityUsed(qint64 lineId,
                                                                 const QString& partId,
                                                                 const QString& quantity)
{
    const QString text = blank(quantity) ? QStringLiteral("0") : quantity.trimmed();
    bool number = false;
    const double value = text.toDouble(&number);
    const std::optional<Part> old = part(lineId, partId);
    if (!number || !old) {
        return Edit::Refused;
    }
    if (value == old->quantityUsed) {
        return Edit::Unchanged;
    }
    return updatePart(lineId, partId, QStringLiteral("QuantityUsed"), value);
}

WorkOrderRecording::Edit WorkOrderRecording::setPartUsed(qint64 lineId, const QString& partId,
                                                         bool used)
{
    // A part is used only on a line that was done.
    const std::optional<Line> owner = line(lineId);
    if (!owner || !owner->completed) {
        return Edit::Refused;
    }
    return updatePart(lineId, partId, QStringLiteral("Used"), SqlValue::yesNo(used));
}

WorkOrderRecording::Edit WorkOrderRecording::setPartPrice(qint64 lineId, const QString& partId,
                                                          double price)
{
    return updatePart(lineId, partId, QStringLiteral("Price"), price);
}

WorkOrderRecording::Edit WorkOrderRecording::updateService(qint64 lineId, const QString& column,
                                                           const QVariant& value,
                                                           const QString& procedure)
{
    WriteScope write(m_session, Module, procedure);
    write.exec(
        QStringLiteral("UPDATE tblWoServiceUsed SET %1 = ? WHERE NserviceUsedID = ?").arg(column),
        {value, lineId});
    return outcome(write.commit());
}

WorkOrderRecording::Edit WorkOrderRecording::updatePart(qint64 lineId, const QString& partId,
                                                        const QString& column,
                                                        const QVariant& value)
{
    WriteScope write(m_session, Module, QStringLiteral("UpdateWorkorderPart"));
    write.exec(QStringLiteral("UPDATE tblWoPartUsed SET %1 = ? WHERE ServiceUsedID = ? "
                              "AND PartID = ?")
                   .arg(column),
               {value, lineId, partId});
    return outcome(write.commit());
}
