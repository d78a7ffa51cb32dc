#include "ValueFormat.h"

#include "SqlValue.h"

#include <QLocale>

namespace {

const QString DefaultDatePattern = QStringLiteral("MM/dd/yyyy");
const QString DefaultDateTimePattern = QStringLiteral("MM/dd/yyyy HH:mm");

/** Fixed, not the desktop's: a report reads the same on every machine. */
const QLocale& pageLocale()
{
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

QVariant number(const QVariant& raw, bool whole)
{
    bool ok = false;
    if (whole) {
        const qlonglong value = raw.toLongLong(&ok);
        if (ok) {
            return value;
        }
    }
    const double value = raw.toDouble(&ok);
    if (!ok) {
        return raw.toString(); // shown as it stands rather than as 0
    }
    return whole ? QVariant(qRound64(value)) : QVariant(value);
}

} // namespace

bool ValueFormat::fromName(const QString& name, ValueFormat* format)
{
    static const QList<std::pair<QString, Kind>> names{
        {QStringLiteral("text"), Kind::Text},     {QStringLiteral("integer"), Kind::Integer},
        {QStringLiteral("number"), Kind::Number}, {QStringLiteral("money"), Kind::Money},
        {QStringLiteral("date"), Kind::Date},     {QStringLiteral("datetime"), Kind::DateTime}};
    for (const auto& [text, kind] : names) {
        if (name == text) {
            format->kind = kind;
            return true;
        }
    }
    return false;
}

QVariant ValueFormat::typed(const QVariant& raw) const
{
    if (raw.isNull()) {
        return QVariant();
    }
    switch (kind) {
    case Kind::Integer:
        return number(raw, true);
    case Kind::Number:
    case Kind::Money:
        return number(raw, false);
    case Kind::Date: {
        const QDate day = SqlValue::toDate(raw);
        return day.isValid() ? QVariant(day) : QVariant();
    }
    case Kind::DateTime: {
        const QDateTime moment = SqlValue::toDateTime(raw);
        return moment.isValid() ? QVariant(moment) : QVariant();
    }
    case Kind::Text:
        break;
    }
    return raw.toString();
}

QString ValueFormat::display(const QVariant& value) const
{
    if (value.isNull()) {
        return QString();
    }
    switch (kind) {
    case Kind::Money:
        return value.typeId() == QMetaType::Double ? pageLocale().toString(value.toDouble(), 'f', 2)
                                                   : value.toString();
    case Kind::Date:
        return value.toDate().toString(pattern.isEmpty() ? DefaultDatePattern : pattern);
    case Kind::DateTime:
        return value.toDateTime().toString(pattern.isEmpty() ? DefaultDateTimePattern : pattern);
    default:
        return plain(value);
    }
}

QString ValueFormat::plain(const QVariant& value) const
{
    if (value.isNull()) {
        return QString();
    }
    switch (kind) {
    case Kind::Number:
    case Kind::Money:
        if (value.typeId() == QMetaType::Double) {
            return QString::number(value.toDouble(), 'f', kind == Kind::Money ? 2 : decimals);
        }
        break;
    case Kind::Date:
        return value.toDate().toString(Qt::ISODate);
    case Kind::DateTime:
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    default:
        break;
    }
    return value.toString();
}

int ValueFormat::compare(const QVariant& a, const QVariant& b)
{
    if (a.isNull() || b.isNull()) {
        return int(b.isNull()) - int(a.isNull());
    }
    if (a.typeId() == QMetaType::QString || b.typeId() == QMetaType::QString) {
        return a.toString().compare(b.toString(), Qt::CaseInsensitive);
    }
    const QPartialOrdering order = QVariant::compare(a, b);
    return order == QPartialOrdering::Less ? -1 : order == QPartialOrdering::Greater ? 1 : 0;
}
