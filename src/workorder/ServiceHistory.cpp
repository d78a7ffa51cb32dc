#include "ServiceHistory.h"

#include "LabourCost.h"
#include "MessageTexts.h"
#include "NextDateCalculator.h"
#include "Options.h"
#include "Prompter.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QStringList>

namespace {

const QString Module = QStringLiteral("Equipment");
const QString ChangeProcedure = QStringLiteral("grdServiceHistory_Change");
const QString PartChangeProcedure = QStringLiteral("grdPartHistory_Change");
const QString RangeFormat = QStringLiteral("MM/dd/yyyy");
const QString StoredTime = QStringLiteral("HH:mm");

const QString StartNotBeforeEnd = QStringLiteral("Start Time should be less than End Time");
const QString StartBlank = QStringLiteral("Start Time Shouln't be Blank");
const QString EndNotAfterStart = QStringLiteral("End Time should be greater than Start Time");
const QString HoursTooShort = QStringLiteral("Work Hrs should be greater than 10 Minutes.");
const QString DeleteQuestion = MessageTexts::DeleteQuestion + QStringLiteral(" history");

/** The columns a correction may store. */
const QStringList EditableColumns = {
    QStringLiteral("CompleteDate"), QStringLiteral("CrewID"),     QStringLiteral("CrewNumber"),
    QStringLiteral("CostEstimate"), QStringLiteral("StartTime"),  QStringLiteral("EndTime"),
    QStringLiteral("Workhrs"),      QStringLiteral("CountValue"),
};

constexpr int MinutesOfShortestWork = 10;

bool isBlank(const QVariant& value)
{
    return value.isNull() || DataHelpers::isBlank(value.toString());
}

/** A time typed or stored as "h:mm", "hh:mm" or with seconds; invalid when blank. */
QTime timeOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::QTime) {
        return value.toTime();
    }
    const QString text = value.toString().trimmed();
    for (const char* format : {"H:mm", "H:mm:ss", "H:m"}) {
        const QTime time = QTime::fromString(text, QString::fromLatin1(format));
        if (time.isValid()) {
            return time;
        }
    }
    return QTime();
}

QVariant storedTime(const QTime& time)
{
    return time.isValid() ? QVariant(time.toString(StoredTime)) : QVariant();
}

/** An end of "0:00" is what an unset end looked like, so it counts as none. */
bool isSet(const QTime& time)
{
    return time.isValid() && time != QTime(0, 0);
}

} // namespace

ServiceHistory::ServiceHistory(Session& session) : m_session(session) {}

DateRange ServiceHistory::range() const
{
    const auto stored = [this](const char* name) {
        return QDate::fromString(
            Options::option(m_session, QString::fromLatin1(name), true).trimmed(), RangeFormat);
    };
    DateRange range{stored("EqDateFrom"), stored("EqDateTo")};
    if (!range.from.isValid()) {
        range.from = m_session.today().addYears(-1);
    }
    if (!range.to.isValid()) {
        range.to = m_session.today();
    }
    return range;
}

void ServiceHistory::storeRange(const DateRange& range)
{
    Options::setOption(m_session, QStringLiteral("EqDateFrom"), range.from.toString(RangeFormat),
                       true);
    Options::setOption(m_session, QStringLiteral("EqDateTo"), range.to.toString(RangeFormat), true);
}

Rows ServiceHistory::rows(qint64 equipmentId, const DateRange& range)
{
    // The key is the lineId; the part cost sums the parts tied to it.
    return DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshServiceHistoryGrid"),
        QStringLiteral("SELECT h.WorkOrderNo, h.ServiceUsedID, h.CompleteDate, h.ServiceName, "
                       "h.CrewID, h.CostCenterID, h.LaborEstimate, h.CostEstimate, h.StartTime, "
                       "h.EndTime, h.Workhrs, h.Skip, h.CountValue, h.SupplierName, "
                       "(SELECT SUM(p.QuantityUsed * p.Price) FROM tblWoPartHistory p "
                       "WHERE p.ServiceusedID = h.ServiceUsedID) "
                       "FROM tblWOServiceUsedHistory h WHERE h.EquipmentID = ? "
                       "AND h.CompleteDate >= ? AND h.CompleteDate <= ? "
                       "ORDER BY h.CompleteDate, h.ServiceUsedID"),
        {equipmentId, SqlValue::date(range.from), SqlValue::date(range.to)});
}

Rows ServiceHistory::partRows(qint64 lineId)
{
    return DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshPartHistoryGrid"),
        QStringLiteral("SELECT PartID, Description, QuantityUsed, Price, PartCategoryID, "
                       "SupplierID FROM tblWoPartHistory WHERE ServiceusedID = ? ORDER BY PartID"),
        {lineId});
}

double ServiceHistory::partCost(qint64 lineId)
{
    const Rows sum =
        DataHelpers::read(m_session, Module, QStringLiteral("SetAllPastCost"),
                          QStringLiteral("SELECT SUM(QuantityUsed * Price) FROM tblWoPartHistory "
                                         "WHERE ServiceusedID = ?"),
                          {lineId});
    return sum.isEmpty() ? 0 : sum.first().value(0).toDouble();
}

bool ServiceHistory::editCell(qint64 lineId, Cell cell, const QVariant& value)
{
    switch (cell) {
    case Cell::Count:
        return editWhole(lineId, value);
    case Cell::Date: {
        const QDate date = value.toDate();
        if (!isBlank(value) && !date.isValid()) {
            m_session.prompter().inform(QStringLiteral("Please enter valid date."));
            return false;
        }
        m_session.prompter().inform(DateMessage);
        return update(lineId, QStringLiteral("CompleteDate"), SqlValue::date(date));
    }
    case Cell::Crew:
        return editCrew(lineId, value);
    case Cell::LaborCost:
        return update(lineId, QStringLiteral("CostEstimate"),
                      isBlank(value) ? QVariant() : QVariant(value.toDouble()));
    case Cell::StartTime:
        return editStart(lineId, value);
    case Cell::EndTime:
        return editEnd(lineId, value);
    case Cell::WorkHrs:
        return editWorkHrs(lineId, value);
    }
    return false;
}

bool ServiceHistory::editWhole(qint64 lineId, const QVariant& value)
{
    bool whole = true;
    const qint64 count = isBlank(value) ? 0 : value.toString().trimmed().toLongLong(&whole);
    if (!whole || count < 0) {
        m_session.prompter().inform(MessageTexts::numeric(QStringLiteral("Count")));
        return false;
    }
    m_session.prompter().inform(CountMessage);
    return update(lineId, QStringLiteral("CountValue"), isBlank(value) ? QVariant() : count);
}

bool ServiceHistory::editCrew(qint64 lineId, const QVariant& value)
{
    const qint64 crewId = value.toLongLong();
    const Rows crew = DataHelpers::read(
        m_session, Module, ChangeProcedure,
        QStringLiteral("SELECT CrewNumber FROM tblCrew WHERE CrewID = ?"), {crewId});
    const QVariant number = crew.isEmpty() ? QVariant() : crew.first().value(0);
    if (!update(lineId, QStringLiteral("CrewID"), crewId) ||
        !update(lineId, QStringLiteral("CrewNumber"), number)) {
        return false;
    }
    // The labour is priced again by the new crew.
    const double cost =
        LabourCost::laborCost(m_session, crewId) * row(lineId).value(BudgetedHrs).toDouble();
    return update(lineId, QStringLiteral("CostEstimate"), cost);
}

bool ServiceHistory::editStart(qint64 lineId, const QVariant& value)
{
    const QTime start = timeOf(value);
    const QTime end = timeOf(row(lineId).value(EndTime));
    if (isSet(end) && start.isValid() && start >= end) {
        m_session.prompter().inform(StartNotBeforeEnd);
        return false;
    }
    if (!update(lineId, QStringLiteral("StartTime"), storedTime(start))) {
        return false;
    }
    return !isSet(end) || !start.isValid() || storeHours(lineId, start, end);
}

bool ServiceHistory::editEnd(qint64 lineId, const QVariant& value)
{
    const QTime start = timeOf(row(lineId).value(StartTime));
    if (!start.isValid()) {
        m_session.prompter().inform(StartBlank);
        return false;
    }
    const QTime end = timeOf(value);
    if (!end.isValid() || end <= start) {
        m_session.prompter().inform(EndNotAfterStart);
        return false;
    }
    return update(lineId, QStringLiteral("EndTime"), storedTime(end)) &&
           storeHours(lineId, start, end);
}

bool ServiceHistory::editWorkHrs(qint64 lineId, const QVariant& value)
{
    const QTime hours = timeOf(value);
    if (!hours.isValid() || hours <= QTime(0, MinutesOfShortestWork)) {
        m_session.prompter().inform(HoursTooShort);
        return false;
    }
    return update(lineId, QStringLiteral("Workhrs"), storedTime(hours));
}

bool ServiceHistory::storeHours(qint64 lineId, const QTime& start, const QTime& end)
{
    return update(lineId, QStringLiteral("Workhrs"),
                  storedTime(QTime(0, 0).addSecs(start.secsTo(end))));
}

bool ServiceHistory::editPartCell(qint64 lineId, const QString& partId, PartCell cell,
                                  const QVariant& value)
{
    const bool quantity = cell == PartCell::QtyUsed;
    const QString column = quantity ? QStringLiteral("QuantityUsed") : QStringLiteral("Price");
    const double number = isBlank(value) ? 0 : value.toDouble();
    const Rows old = DataHelpers::read(
        m_session, Module, PartChangeProcedure,
        QStringLiteral("SELECT %1 FROM tblWoPartHistory WHERE ServiceusedID = ? AND PartID = ?")
            .arg(column),
        {lineId, partId});
    if (old.isEmpty() || old.first().value(0).toDouble() == number) {
        return false;
    }
    if (quantity) {
        m_session.prompter().inform(QuantityMessage);
    }
    WriteScope write(m_session, Module, PartChangeProcedure);
    write.exec(QStringLiteral("UPDATE tblWoPartHistory SET %1 = ? WHERE ServiceusedID = ? "
                              "AND PartID = ?")
                   .arg(column),
               {number, lineId, partId});
    return write.commit();
}

bool ServiceHistory::deleteHistory(qint64 lineId)
{
    if (!m_session.prompter().askYesNo(DeleteQuestion)) {
        return false;
    }
    WriteScope write(m_session, Module, QStringLiteral("DeleteServiceHistoryRecord"));
    write.exec(QStringLiteral("DELETE FROM tblWoPartHistory WHERE ServiceusedID = ?"), {lineId});
    write.exec(QStringLiteral("DELETE FROM tblWOServiceUsedHistory WHERE ServiceUsedID = ?"),
               {lineId});
    return write.commit();
}

bool ServiceHistory::update(qint64 lineId, const QString& column, const QVariant& value)
{
    WriteScope write(m_session, Module, QStringLiteral("UpdateEquipmentServiceHistory"));
    if (!EditableColumns.contains(column)) {
        write.fail(QStringLiteral("%1 is no column a correction may change").arg(column));
        return false;
    }
    write.exec(QStringLiteral("UPDATE tblWOServiceUsedHistory SET %1 = ? WHERE ServiceUsedID = ?")
                   .arg(column),
               {value, lineId});
    return write.commit();
}

QSqlRecord ServiceHistory::row(qint64 lineId)
{
    const Rows found = DataHelpers::read(
        m_session, Module, ChangeProcedure,
        QStringLiteral("SELECT WorkOrderNo, ServiceUsedID, CompleteDate, ServiceName, CrewID, "
                       "CostCenterID, LaborEstimate, CostEstimate, StartTime, EndTime, Workhrs "
                       "FROM tblWOServiceUsedHistory WHERE ServiceUsedID = ?"),
        {lineId});
    return found.isEmpty() ? QSqlRecord() : found.first();
}

QString ServiceHistory::timeText(const QVariant& stored, bool hours)
{
    const QTime time = timeOf(stored);
    if (!time.isValid()) {
        return QString();
    }
    return hours ? NextDateCalculator::changeMinuteInHour(QTime(0, 0).secsTo(time) / 60)
                 : time.toString(StoredTime);
}
