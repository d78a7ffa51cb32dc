#pragma once

#include <QString>

/** Texts shared by every place where a machine's service schedule is edited. */
namespace ServiceMessages {

namespace Detail {
inline QString onWorkOrderQuestion(const QString& what)
{
    return QStringLiteral("This service is already assigned to a work order. Changing this ") +
           what +
           QStringLiteral(" will not remove it from the work order.If you are using the "
                          "\"Reschedule Based on Service Original Scheduled\" changing the ") +
           what +
           QStringLiteral(" will change when the service on the work order will be "
                          "rescheduled\" Are you sure you want to do this \"Yes\" \"No\"");
}
} // namespace Detail

/** Asked before the next date of a service on a work order is changed. */
inline QString dateOnWorkOrder()
{
    return Detail::onWorkOrderQuestion(QStringLiteral("date"));
}
/** Asked before the next count of a service on a work order is changed. */
inline QString countOnWorkOrder()
{
    return Detail::onWorkOrderQuestion(QStringLiteral("count"));
}

inline const QString CountNotPositive =
    QStringLiteral("Count value shouldn't be less then or equal to 0");

} // namespace ServiceMessages
