#include "ServiceTime.h"

#include "DataHelpers.h"
#include "LabourCost.h"
#include "WriteScope.h"

#include <QRegularExpression>
#include <cstdlib>

namespace ServiceTime {

namespace {

const QString Module = QStringLiteral("frmServiceTime");
constexpr int MinutesPerHour = 60;

} // namespace

std::optional<QTime> parse(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*(\\d{0,2})\\s*(?::\\s*(\\d{0,2}))?\\s*(?:([AaPp])[Mm]?)?\\s*$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch() || match.captured(1).isEmpty()) {
        return std::nullopt;
    }
    const int hour = match.captured(1).toInt();
    const int minute = match.captured(2).toInt(); // a blank minute reads as 0
    if (hour > 12 || minute >= MinutesPerHour) {
        return std::nullopt;
    }
    const bool afternoon = match.captured(3).compare(QLatin1String("P"), Qt::CaseInsensitive) == 0;
    return QTime(hour % 12 + (afternoon ? 12 : 0), minute);
}

QString display(const QTime& time)
{
    const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    return QStringLiteral("%1:%2%3")
        .arg(hour, 2, 10, QLatin1Char('0'))
        .arg(time.minute(), 2, 10, QLatin1Char('0'))
        .arg(QChar(time.hour() < 12 ? u'A' : u'P'));
}

QString stored(const QTime& time)
{
    return time.isValid() ? time.toString(QStringLiteral("HH:mm")) : QStringLiteral("00:00");
}

QTime fromStored(const QVariant& value)
{
    const QTime time = QTime::fromString(value.toString().trimmed(), QStringLiteral("H:mm"));
    return time.isValid() ? time : QTime(0, 0);
}

QTime resetTime(Box box)
{
    return box == Box::Start ? QTime(8, 0) : QTime(0, 0);
}

Leave leave(const Entry& before, Box box, const QString& typed)
{
    Leave result{before, QString()};
    const std::optional<QTime> time = parse(typed);
    if (!time) {
        result.message = InvalidTime;
    }
    const QTime left = time.value_or(resetTime(box));
    QTime& mine = box == Box::Start ? result.entry.start : result.entry.end;
    QTime& other = box == Box::Start ? result.entry.end : result.entry.start;
    mine = left;
    result.entry.hours = hoursBetween(result.entry.start, result.entry.end);
    if (left != QTime(0, 0) && result.entry.start > result.entry.end) {
        other = left;
    }
    return result;
}

QTime hoursBetween(const QTime& a, const QTime& b)
{
    const int minutes = std::abs(a.secsTo(b)) / 60;
    return QTime(minutes / MinutesPerHour, minutes % MinutesPerHour);
}

double laborCost(const QTime& hours, double hourlyRate)
{
    return (hours.hour() + hours.minute() / double(MinutesPerHour)) * hourlyRate;
}

bool save(Session& session, qint64 id, const QString& table, const Entry& entry)
{
    const QString target = table.isEmpty() ? LineTable : table;
    WriteScope write(session, Module, QStringLiteral("cmdUpdate_Click"));
    // The history table keeps the line's own key (NserviceUsedID) in its ServiceUsedID.
    QString key;
    if (target.compare(LineTable, Qt::CaseInsensitive) == 0) {
        key = QStringLiteral("NserviceUsedID");
    } else if (target.compare(HistoryTable, Qt::CaseInsensitive) == 0) {
        key = QStringLiteral("ServiceUsedID");
    } else {
        write.fail(
            QStringLiteral("Times are kept only on work order lines, not in %1.").arg(table));
        return write.commit();
    }
    const double rate =
        LabourCost::laborCost(session, DataHelpers::crewIdByService(session, id, target));
    write.exec(QStringLiteral("UPDATE %1 SET StartTime = ?, EndTime = ?, Workhrs = ?, "
                              "CostEstimate = ? WHERE %2 = ?")
                   .arg(target, key),
               {stored(entry.start), stored(entry.end), stored(entry.hours),
                laborCost(entry.hours, rate), id});
    return write.commit();
}

} // namespace ServiceTime
