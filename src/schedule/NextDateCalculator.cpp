#include "NextDateCalculator.h"

#include "ErrorHandler.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "Sql.h"
#include "SqlValue.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <algorithm>

namespace {

const QString Module = QStringLiteral("General Function");
constexpr qint64 OverflowNumber = 6;
constexpr qint64 TypeMismatchNumber = 13;

// More than ten thousand years of days: no interval beyond it can land in the store's range.
constexpr qint64 IntervalLimit = 3'660'000;
// The calendar repeats every 400 years, so a walk that finds no day by then never will.
constexpr int WalkLimitYears = 400;

/** The weekday counted 1 = Sunday to 7 = Saturday, as the day selection is stored. */
int sundayFirstWeekday(const QDate& date)
{
    return date.dayOfWeek() % 7 + 1;
}

QDate firstOfMonth(const QDate& date)
{
    return QDate(date.year(), date.month(), 1);
}

bool inStoreRange(const QDate& date)
{
    return date.isValid() && date.year() >= 1 && date.year() <= 9999;
}

void setFlag(bool* flag, bool on)
{
    if (flag) {
        *flag = on;
    }
}

template <std::size_t N> bool anySelected(const std::array<bool, N>& flags)
{
    return std::find(flags.begin(), flags.end(), true) != flags.end();
}

/** A schedule pattern flag: selected only when its value is the number 1. */
bool isSelected(const QVariant& value)
{
    bool ok = false;
    const int number = value.toString().trimmed().toInt(&ok);
    return ok && number == 1;
}

QString mismatchText(const QString& column, const QVariant& value)
{
    return QStringLiteral("Type mismatch: %1 holds \"%2\"").arg(column, value.toString());
}

/** Reads the columns of one row, keeping the first value that could not be converted. */
class RowReader
{
public:
    explicit RowReader(const QSqlRecord& record) : m_record(record) {}

    QString text(const QString& column) const { return m_record.value(column).toString(); }

    /** A whole number; null counts as 0. */
    qint64 number(const QString& column)
    {
        const QVariant value = m_record.value(column);
        if (value.isNull()) {
            return 0;
        }
        bool ok = false;
        const qint64 number = value.toLongLong(&ok);
        if (!ok) {
            mismatch(column, value);
        }
        return number;
    }

    /** A day; null gives the empty date. */
    QDate date(const QString& column)
    {
        const QVariant value = m_record.value(column);
        const QDate day = SqlValue::toDate(value);
        if (!value.isNull() && !day.isValid()) {
            mismatch(column, value);
        }
        return day;
    }

    /** A day number of the DOM list; anything that is no whole number matches no day. */
    int dayNumber(const QString& column) const
    {
        bool ok = false;
        const int number = m_record.value(column).toInt(&ok);
        return ok ? number : 0;
    }

    bool selected(const QString& column) const { return isSelected(m_record.value(column)); }

    bool nonZero(const QString& column) const
    {
        bool ok = false;
        const int number = m_record.value(column).toString().trimmed().toInt(&ok);
        return ok && number != 0;
    }

    QString problem() const { return m_problem; }

private:
    void mismatch(const QString& column, const QVariant& value)
    {
        if (m_problem.isEmpty()) {
            m_problem = mismatchText(column, value);
        }
    }

    QSqlRecord m_record;
    QString m_problem;
};

template <std::size_t N>
std::array<bool, N> readSelection(const RowReader& row, const char* const (&columns)[N])
{
    std::array<bool, N> flags{};
    for (std::size_t i = 0; i < N; ++i) {
        flags[i] = row.selected(QString::fromLatin1(columns[i]));
    }
    return flags;
}

NextDateCalculator::Months readMonths(const RowReader& row)
{
    static const char* const columns[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dece"};
    return readSelection(row, columns);
}

NextDateCalculator::Weeks readWeeks(const RowReader& row)
{
    static const char* const columns[] = {"FirstW", "SecondW", "ThirdW", "ForthW", "LastW"};
    return readSelection(row, columns);
}

NextDateCalculator::Days readDays(const RowReader& row)
{
    static const char* const columns[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    return readSelection(row, columns);
}

NextDateCalculator::DomList readDomList(const RowReader& row)
{
    NextDateCalculator::DomList list{};
    for (int i = 0; i < 5; ++i) {
        list[i] = row.dayNumber(QStringLiteral("DOM%1").arg(i + 1));
    }
    return list;
}

QString reasonText(int selection)
{
    static const QString reasons[] = {
        QStringLiteral("\" doesn't have any MOY(month of the year) selected in service schedule, "),
        QStringLiteral("\" doesn't have any WOM(week of the month) selected in service schedule, "),
        QStringLiteral("\" doesn't have any DOW(day of the week) selected in service schedule, "),
    };
    return reasons[selection];
}

} // namespace

struct NextDateCalculator::LatestReading
{
    bool failed = false;
    bool found = false;
    QVariant value;
    QVariant changeDate;
};

NextDateCalculator::NextDateCalculator(Session& session) : m_session(session) {}

NextDateCalculator::~NextDateCalculator() = default;

QDate NextDateCalculator::nextScheduledDate(qint64 serviceUsedId, bool useGivenDate,
                                            const QDate& givenDate)
{
    const QString procedure = QStringLiteral("GetNextScheduledDate");
    const QDate today = m_session.today();

    if (!m_serviceRow) {
        m_serviceRow = std::make_unique<QSqlQuery>(m_session.db());
        m_serviceRow->setForwardOnly(true);
        m_serviceRow->prepare(
            QStringLiteral("SELECT * FROM tblServiceUsed WHERE ServiceUsedID = ?"));
    }
    QSqlQuery& q = *m_serviceRow;
    q.bindValue(0, serviceUsedId);
    if (!q.exec()) {
        errorHandler(m_session, Sql::failure(Module, procedure, q.lastError()));
        return today;
    }
    if (!q.next()) {
        q.finish();
        return today;
    }
    RowReader row(q.record());
    q.finish();

    const QString period = row.text(QStringLiteral("Period"));
    if (!ScheduleCodes::isCalendarPeriod(period)) {
        const qint64 equipmentId = row.number(QStringLiteral("EquipmentID"));
        const qint64 nextCount = row.number(QStringLiteral("NextScheduledCount"));
        if (!row.problem().isEmpty()) {
            errorHandler(m_session, Module, procedure, TypeMismatchNumber, row.problem());
            return today;
        }
        // A reading that cannot be read leaves the answer at what it held then: today.
        bool failed = false;
        const QDate due =
            checkMeterLogic(equipmentId, ScheduleCodes::countType(period), nextCount, &failed);
        return failed ? today : due;
    }

    // Only the base date the renewal rule picks is read: the other one plays no part.
    const QString baseColumn =
        ScheduleCodes::renewsFromScheduledDate(row.text(QStringLiteral("RenewalOn")))
            ? QStringLiteral("LastDateScheduled")
            : QStringLiteral("LastDatePerformed");
    QDate base = useGivenDate ? givenDate : row.date(baseColumn);
    if (!base.isValid()) {
        base = today;
    }
    const qint64 interval = row.number(QStringLiteral("EInterval"));
    if (!row.problem().isEmpty()) {
        errorHandler(m_session, Module, procedure, TypeMismatchNumber, row.problem());
        return today;
    }
    const QDate sum = addDay(period, interval, base);
    if (!sum.isValid()) {
        errorHandler(m_session, Module, procedure, OverflowNumber,
                     QStringLiteral("Overflow: %1 %2 from %3 leaves the calendar")
                         .arg(QString::number(interval), ScheduleCodes::periodText(period),
                              base.toString(Qt::ISODate)));
        return today;
    }

    if (row.nonZero(QStringLiteral("Dom"))) {
        return checkDom(readDomList(row), sum);
    }
    const Months months = readMonths(row);
    const Weeks weeks = readWeeks(row);
    const Days days = readDays(row);
    const std::array<bool, 3> filled = {anySelected(months), anySelected(weeks), anySelected(days)};
    const auto firstEmpty = std::find(filled.begin(), filled.end(), false);
    if (firstEmpty != filled.end()) {
        tellEmptySelection(serviceUsedId, Selection(firstEmpty - filled.begin()),
                           row.text(QStringLiteral("JobNo")), row.text(QStringLiteral("Name")));
        return today.addDays(1);
    }
    return checkSchDate(months, weeks, days, sum);
}

void NextDateCalculator::tellEmptySelection(qint64 serviceUsedId, Selection selection,
                                            const QString& jobNo, const QString& name)
{
    // Joined from the service, so that one whose machine is gone still gets its message.
    QString unitNo;
    QString equipmentName;
    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q,
                   QStringLiteral("SELECT tblEquipment.EquipmentName, tblEquipment.UnitNo "
                                  "FROM tblServiceUsed LEFT JOIN tblEquipment "
                                  "ON tblEquipment.EquipmentID = tblServiceUsed.EquipmentID "
                                  "WHERE tblServiceUsed.ServiceUsedID = ?"),
                   {serviceUsedId})) {
        errorHandler(m_session,
                     Sql::failure(Module, QStringLiteral("GetNextScheduledDate"), q.lastError()));
    } else if (q.next()) {
        equipmentName = q.value(0).toString();
        unitNo = q.value(1).toString();
    }
    q.finish();

    const QString text = QStringLiteral("Service \"") + jobNo + reasonText(int(selection)) +
                         QStringLiteral("system can not\n"
                                        "calculate the next schedule date.\n"
                                        "Service detail is given below.\n"
                                        "Unit No : - ") +
                         unitNo + QStringLiteral("\nEquipment Name : - ") + equipmentName +
                         QStringLiteral("\nService Job No : - ") + jobNo +
                         QStringLiteral("\nService Description : - ") + name;
    m_session.prompter().inform(text);
}

QDate NextDateCalculator::addDay(const QString& period, qint64 interval, const QDate& date)
{
    if (!date.isValid() || interval < -IntervalLimit || interval > IntervalLimit) {
        return QDate();
    }
    QDate sum;
    if (period == u"D") {
        sum = date.addDays(interval);
    } else if (period == u"W") {
        sum = date.addDays(interval * 7);
    } else if (period == u"M") {
        sum = date.addMonths(int(interval));
    } else if (period == u"Y") {
        sum = date.addYears(int(interval));
    }
    return inStoreRange(sum) ? sum : QDate();
}

int NextDateCalculator::weekNo(const QDate& date)
{
    if (!date.isValid()) {
        return 0;
    }
    // d / 7 + 1 rounded to the nearest whole number; the fraction is never one half.
    const int day = date.day();
    const int whole = day / 7;
    const int rest = day % 7;
    if (rest == 0) {
        return whole;
    }
    return whole + 1 + (rest >= 4 ? 1 : 0);
}

QDate NextDateCalculator::checkMonth(const Months& months, const QDate& date)
{
    // No selected month would be searched for ever.
    if (!date.isValid() || !anySelected(months)) {
        return QDate();
    }
    int month = date.month();
    if (months[month - 1]) {
        return date;
    }
    int year = date.year();
    do {
        if (++month == 13) {
            month = 1;
            ++year;
        }
    } while (!months[month - 1]);
    return QDate(year, month, 1);
}

QDate NextDateCalculator::checkWeek(const Weeks& weeks, const QDate& date, bool* monthEnded)
{
    setFlag(monthEnded, false);
    if (!date.isValid()) {
        return QDate();
    }
    int week = weekNo(date);
    if (weeks[week - 1]) {
        return date;
    }
    while (++week <= 5) {
        if (weeks[week - 1]) {
            // Week 5 of a February of 28 days has no first day: go on to the next month.
            const QDate first(date.year(), date.month(), (week - 1) * 7 + 1);
            if (first.isValid()) {
                return first;
            }
            break;
        }
    }
    setFlag(monthEnded, true);
    return firstOfMonth(date).addMonths(1);
}

QDate NextDateCalculator::checkDay(const Days& days, const QDate& date, bool* monthEnded,
                                   bool* weekWrapped)
{
    setFlag(monthEnded, false);
    setFlag(weekWrapped, false);
    if (!date.isValid()) {
        return QDate();
    }
    const int month = date.month();
    const int firstWeekday = sundayFirstWeekday(firstOfMonth(date));
    int weekday = sundayFirstWeekday(date);
    QDate day = date;
    while (!days[weekday - 1]) {
        weekday = weekday % 7 + 1;
        day = day.addDays(1);
        if (day.month() != month) {
            setFlag(monthEnded, true);
            return day;
        }
        // Back on the weekday of the 1st: a seven-day block is over, so the week is looked at
        // again.
        if (weekday == firstWeekday) {
            setFlag(weekWrapped, true);
            return day;
        }
    }
    return day;
}

QDate NextDateCalculator::checkDom(const DomList& list, const QDate& date)
{
    const auto isDay = [](int n) { return n >= 1 && n <= 31; };
    // A list without any real day would never match; such a schedule has no next date.
    if (!date.isValid() || std::none_of(list.begin(), list.end(), isDay)) {
        return QDate();
    }
    QDate day = date;
    while (std::find(list.begin(), list.end(), day.day()) == list.end()) {
        day = day.addDays(1);
    }
    return day;
}

QDate NextDateCalculator::checkSchDate(const Months& months, const Weeks& weeks, const Days& days,
                                       const QDate& date)
{
    if (!date.isValid() || !anySelected(months) || !anySelected(weeks) || !anySelected(days)) {
        return QDate();
    }
    const QDate limit = date.addYears(WalkLimitYears);
    bool monthEnded = false;
    bool weekWrapped = false;
    QDate day = date;
    // After a wrap the day is still in the month just accepted, so starting over at the
    // month is the same as going back to the week.
    while (day <= limit) {
        day = checkMonth(months, day);
        day = checkWeek(weeks, day, &monthEnded);
        if (monthEnded) {
            continue;
        }
        day = checkDay(days, day, &monthEnded, &weekWrapped);
        if (!monthEnded && !weekWrapped) {
            return day;
        }
    }
    return QDate();
}

QString NextDateCalculator::changeMinuteInHour(int minutes)
{
    const qint64 total = qAbs(qint64(minutes));
    return (minutes < 0 ? QStringLiteral("-") : QString()) + QString::number(total / 60) + u':' +
           QStringLiteral("%1").arg(total % 60, 2, 10, QLatin1Char('0'));
}

NextDateCalculator::LatestReading NextDateCalculator::latestReading(const QString& procedure,
                                                                    qint64 equipmentId,
                                                                    const QString& countType)
{
    LatestReading reading;
    // An empty type stands for no meter at all and finds no readings.
    if (countType.isEmpty()) {
        return reading;
    }
    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    // Ties of date go to the highest count; a missing date or count never wins.
    if (!Sql::exec(q,
                   QStringLiteral("SELECT CountValue, ChangeDate FROM tblEquipmentCount "
                                  "WHERE EquipmentID = ? AND LOWER(CountType) = LOWER(?) "
                                  "ORDER BY ChangeDate DESC NULLS LAST, CountValue DESC NULLS LAST "
                                  "LIMIT 1"),
                   {equipmentId, countType})) {
        errorHandler(m_session, Sql::failure(Module, procedure, q.lastError()));
        reading.failed = true;
        return reading;
    }
    if (q.next()) {
        reading.found = true;
        reading.value = q.value(0);
        reading.changeDate = q.value(1);
    }
    return reading;
}

QDate NextDateCalculator::checkMeterLogic(qint64 equipmentId, const QString& countType,
                                          qint64 nextScheduledCount, bool* failed)
{
    const QString procedure = QStringLiteral("CheckMeterLogic");
    const LatestReading reading = latestReading(procedure, equipmentId, countType);
    bool ok = !reading.failed;
    const qint64 value = ok && reading.found ? readingValue(procedure, reading.value, &ok) : 0;
    const QDate changed = SqlValue::toDate(reading.changeDate);
    if (ok && !reading.changeDate.isNull() && !changed.isValid()) {
        errorHandler(m_session, Module, procedure, TypeMismatchNumber,
                     mismatchText(QStringLiteral("ChangeDate"), reading.changeDate));
        ok = false;
    }
    if (failed) {
        *failed = !ok;
    }
    return ok && reading.found && nextScheduledCount <= value ? changed : QDate();
}

qint64 NextDateCalculator::equipmentCount(qint64 equipmentId, const QString& countType)
{
    const QString procedure = QStringLiteral("GetEquipmentCount");
    const LatestReading reading = latestReading(procedure, equipmentId, countType);
    bool ok = false;
    const qint64 value = readingValue(procedure, reading.value, &ok);
    return ok ? value : 0;
}

qint64 NextDateCalculator::readingValue(const QString& procedure, const QVariant& value, bool* ok)
{
    // A reading without a value counts as 0.
    *ok = true;
    if (value.isNull()) {
        return 0;
    }
    const qint64 number = value.toLongLong(ok);
    if (!*ok) {
        errorHandler(m_session, Module, procedure, TypeMismatchNumber,
                     mismatchText(QStringLiteral("CountValue"), value));
    }
    return number;
}

qint64 NextDateCalculator::equipmentCountByPeriod(qint64 equipmentId, const QString& periodCode)
{
    // A calendar code maps to its text too; no reading carries such a type, so it gives 0.
    return equipmentCount(equipmentId, ScheduleCodes::periodText(periodCode));
}

bool NextDateCalculator::serviceInWorkOrder(qint64 serviceUsedId)
{
    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q,
                   QStringLiteral("SELECT tblWoServiceUsed.ServiceUsedID FROM tblWoServiceUsed "
                                  "LEFT JOIN tblWorkorder ON tblWoServiceUsed.WorkOrderNo = "
                                  "tblWorkorder.WorkOrderNo "
                                  "WHERE tblWoServiceUsed.ServiceUsedID = ? LIMIT 1"),
                   {serviceUsedId})) {
        errorHandler(m_session,
                     Sql::failure(Module, QStringLiteral("ServiceInWorkOrder"), q.lastError()));
        return false;
    }
    return q.next();
}
