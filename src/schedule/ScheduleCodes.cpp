#include "ScheduleCodes.h"

#include <array>

namespace ScheduleCodes {

namespace {

struct Period
{
    QStringView code;
    QStringView text;
    bool meter;
};

// Miles is I because M is taken by Months.
constexpr std::array<Period, 8> Periods{{
    {u"D", u"Days", false},
    {u"W", u"Weeks", false},
    {u"M", u"Months", false},
    {u"Y", u"Years", false},
    {u"C", u"Counts", true},
    {u"H", u"Hours", true},
    {u"K", u"Kilometers", true},
    {u"I", u"Miles", true},
}};

const Period* findPeriod(const QString& code)
{
    for (const Period& p : Periods) {
        if (p.code == code) {
            return &p;
        }
    }
    return nullptr;
}

} // namespace

QStringList periodCodes()
{
    QStringList codes;
    for (const Period& p : Periods) {
        codes.append(p.code.toString());
    }
    return codes;
}

QString periodText(const QString& code)
{
    const Period* p = findPeriod(code);
    return p ? p->text.toString() : QString();
}

QString periodCode(const QString& text)
{
    for (const Period& p : Periods) {
        if (p.text == text) {
            return p.code.toString();
        }
    }
    return QString();
}

bool isCalendarPeriod(const QString& code)
{
    const Period* p = findPeriod(code);
    return p && !p->meter;
}

bool isMeterPeriod(const QString& code)
{
    const Period* p = findPeriod(code);
    return p && p->meter;
}

QString countType(const QString& code)
{
    return isMeterPeriod(code) ? periodText(code) : QString();
}

QString meterPeriodsSql()
{
    return QStringLiteral("('C', 'H', 'K', 'I')");
}

QStringList renewalOnCodes()
{
    return {QStringLiteral("W"), QStringLiteral("S"), QStringLiteral("D")};
}

QString renewalOnText(const QString& code)
{
    if (code == u"W") {
        return QStringLiteral("Work Order Completion");
    }
    if (code == u"S") {
        return QStringLiteral("Service Original Scheduled");
    }
    if (code == u"D") {
        return QStringLiteral("Don't Schedule Again");
    }
    return QString();
}

bool renewsFromScheduledDate(const QString& renewalOn)
{
    return renewalOn.toUpper() == u"S";
}

bool schedulesAgain(const QString& renewalOn)
{
    return renewalOn != u"D";
}

} // namespace ScheduleCodes
