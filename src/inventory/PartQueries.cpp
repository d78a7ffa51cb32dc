#include "PartQueries.h"

#include "Session.h"

namespace PartQueries {

SqlFilter startsWith(const QString& text, const QString& prefix)
{
    const QString typed = text.trimmed();
    if (typed.isEmpty()) {
        return {};
    }
    // What the user typed is matched as it stands: its wildcards are escaped.
    QString pattern = typed;
    for (const QChar special : {u'\\', u'%', u'_'}) {
        pattern.replace(special, QStringLiteral("\\") + special);
    }
    pattern += u'%';
    const QString like = QStringLiteral("LOWER(%1%2) LIKE LOWER(?) ESCAPE '\\'");
    return {QStringLiteral("(") + like.arg(prefix, QStringLiteral("PartID")) +
                QStringLiteral(" OR ") + like.arg(prefix, QStringLiteral("Description")) +
                QStringLiteral(")"),
            {pattern, pattern}};
}

QVariant number(const QString& text)
{
    const QString trimmed = text.trimmed();
    return trimmed.isEmpty() ? QVariant(QMetaType(QMetaType::Double))
                             : QVariant(trimmed.toDouble());
}

} // namespace PartQueries
