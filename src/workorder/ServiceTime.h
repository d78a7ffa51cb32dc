#pragma once

#include <QString>
#include <QTime>
#include <optional>

class Session;

/**
 * The time entry of a work order line (frmServiceTime): start, end and the
 * hours worked, the rules applied on leaving a time box, and the write that
 * replaces the line's budgeted labour cost by the actual one.
 */
namespace ServiceTime {

inline const QString InvalidTime = QStringLiteral("Invalid Time");
/** The line table the dialog writes when no other table is named. */
inline const QString LineTable = QStringLiteral("tblWoServiceUsed");
/** The posted lines, whose times are corrected from the history screen. */
inline const QString HistoryTable = QStringLiteral("tblWOServiceUsedHistory");

enum class Box { Start, End };

/** What the three boxes hold. */
struct Entry
{
    QTime start{0, 0};
    QTime end{0, 0};
    QTime hours{0, 0};
    bool operator==(const Entry&) const = default;
};

/**
 * A time as typed into a box, "h:mmA" or "hh:mm P" and the like: a one-digit
 * hour or minute is padded, a missing minute is 00 and a missing A/P mark
 * counts as A. No value for a blank hour or a time that does not exist.
 */
std::optional<QTime> parse(const QString& text);
/** The boxes' form, "hh:mmA" or "hh:mmP". */
QString display(const QTime& time);
/** The storage form "HH:mm"; a null time (never entered) shows as "00:00". */
QString stored(const QTime& time);
/** A stored "HH:mm" read back; NULL and empty text are 00:00. */
QTime fromStored(const QVariant& value);

/** What a box takes when its text is no time: 08:00A for the start, 12:00A for the end. */
QTime resetTime(Box box);

/** The entry after a box is left with typed in it, and why the text was refused. */
struct Leave
{
    Entry entry;
    QString message; ///< InvalidTime when the box was reset, else empty
};
/**
 * Leaving a box: its text becomes its time (or its reset time). When that time
 * is not 00:00 and the start lies after the end, it is copied into the other
 * box. The hours are the distance between start and end as they stood before
 * that copy, whichever lies first.
 */
Leave leave(const Entry& before, Box box, const QString& typed);

/** The distance between two times of one day, as hours and minutes. */
QTime hoursBetween(const QTime& a, const QTime& b);
/** What hours of work cost at an hourly rate. */
double laborCost(const QTime& hours, double hourlyRate);

/**
 * cmdUpdate: stores the three times of the line id of table (LineTable or
 * HistoryTable; empty means LineTable) with the cost of the hours at the
 * crew's average rate. False (reported) when the write failed or the table
 * is none of the two.
 */
bool save(Session& session, qint64 id, const QString& table, const Entry& entry);

} // namespace ServiceTime
