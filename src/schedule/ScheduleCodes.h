#pragma once

#include <QString>
#include <QStringList>

/**
 * The codes a service schedule is stored with: the period (`Period`) and
 * what a completed service renews from (`RenewalOn`). Codes are one upper
 * case letter and are compared exactly; every screen, grid and report shows
 * the texts given here.
 */
namespace ScheduleCodes {

/** The period codes in the order lists show them: calendar first, then meters. */
QStringList periodCodes();
/** The text of a period code ("Days" ... "Miles"); empty for other codes. */
QString periodText(const QString& code);
/** The code of a period text (the reverse of periodText); empty for other texts. */
QString periodCode(const QString& text);

/** True for D, W, M and Y: a date is calculated from a base date. */
bool isCalendarPeriod(const QString& code);
/** True for C, H, K and I: the service falls due when a reading reaches its count. */
bool isMeterPeriod(const QString& code);
/** The tblEquipmentCount.CountType a meter period reads; empty for any other code. */
QString countType(const QString& code);
/** The meter codes as an SQL list, for "Period IN (...)". */
QString meterPeriodsSql();

/** The RenewalOn codes W, S and D. */
QStringList renewalOnCodes();
/** "Work Order Completion", "Service Original Scheduled" or "Don't Schedule Again"; empty else. */
QString renewalOnText(const QString& code);
/**
 * True when a calendar schedule counts from LastDateScheduled (code S, in
 * either case); every other value, an empty one too, counts from
 * LastDatePerformed.
 */
bool renewsFromScheduledDate(const QString& renewalOn);
/** False only for D: such a service is done once and turns inactive when posted. */
bool schedulesAgain(const QString& renewalOn);

} // namespace ScheduleCodes
