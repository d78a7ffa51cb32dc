#pragma once

#include <QDate>
#include <QDateTime>
#include <QVariant>

/**
 * How values cross into and out of SQL on both engines: dates travel as
 * ISO text, yes/no values as -1/0, and reads accept what either engine returns.
 */
namespace SqlValue {

/** A day for binding; the empty date binds as NULL. */
QVariant date(const QDate& day);
/** A moment for binding, to the second; an invalid one binds as NULL. */
QVariant dateTime(const QDateTime& moment);
/** A yes/no value for binding. */
inline QVariant yesNo(bool on)
{
    return QVariant(int(on ? -1 : 0));
}
/** A text flag for binding. */
inline QVariant flag(bool on)
{
    return QVariant(on ? QStringLiteral("1") : QStringLiteral("0"));
}
/** A NULL of text type. */
QVariant nullText();

/** A day read from either engine; the empty date for NULL or text that is no date. */
QDate toDate(const QVariant& value);
QDateTime toDateTime(const QVariant& value);
/** A yes/no column read back: any non-zero value counts as yes. */
bool toYesNo(const QVariant& value);

} // namespace SqlValue
