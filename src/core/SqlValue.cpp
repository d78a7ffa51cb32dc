#include "SqlValue.h"

namespace SqlValue {

QVariant nullText()
{
    return QVariant(QMetaType::fromType<QString>());
}

QVariant date(const QDate& day)
{
    return day.isValid() ? QVariant(day.toString(Qt::ISODate)) : nullText();
}

QVariant dateTime(const QDateTime& moment)
{
    return moment.isValid() ? QVariant(moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))
                            : nullText();
}

QDate toDate(const QVariant& value)
{
    if (value.isNull()) {
        return QDate();
    }
    if (value.metaType() == QMetaType::fromType<QDate>()) {
        return value.toDate();
    }
    if (value.metaType() == QMetaType::fromType<QDateTime>()) {
        return value.toDateTime().date();
    }
    return QDate::fromString(value.toString().left(10), Qt::ISODate);
}

QDateTime toDateTime(const QVariant& value)
{
    if (value.isNull()) {
        return QDateTime();
    }
    if (value.metaType() == QMetaType::fromType<QDateTime>()) {
        return value.toDateTime();
    }
    if (value.metaType() == QMetaType::fromType<QDate>()) {
        return QDateTime(value.toDate(), QTime(0, 0));
    }
    const QString text = value.toString();
    const QDateTime moment =
        QDateTime::fromString(text.left(19), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return moment.isValid() ? moment : QDateTime(toDate(value), QTime(0, 0));
}

bool toYesNo(const QVariant& value)
{
    return !value.isNull() && value.toInt() != 0;
}

} // namespace SqlValue
