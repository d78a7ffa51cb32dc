#include "Lateness.h"

#include "Options.h"

namespace Lateness {

namespace {

int days(const QString& text)
{
    return text.trimmed().toInt();
}

} // namespace

Thresholds thresholds(Session& session)
{
    return {days(Options::option(session, QStringLiteral("SERVICE_LATE_RED"))),
            days(Options::option(session, QStringLiteral("SERVICE_LATE_YELLOW")))};
}

Colour colour(const QDate& nextServiceDate, const QDate& today, const Thresholds& thresholds)
{
    if (!nextServiceDate.isValid()) {
        return Colour::None;
    }
    const qint64 late = nextServiceDate.daysTo(today);
    if (thresholds.red != 0) {
        return late >= thresholds.red ? Colour::Red : Colour::None;
    }
    if (thresholds.yellow != 0 && late >= thresholds.yellow) {
        return Colour::Yellow;
    }
    return Colour::None;
}

} // namespace Lateness
