#include "CrewRange.h"

#include <QStringList>

namespace CrewRange {

namespace {

bool isSeparator(QChar key)
{
    return key == u',' || key == u'-';
}

/** Appends one piece's condition; false when the range ends at this piece. */
bool addPiece(const QString& piece, const QString& field, QStringList* terms, SqlFilter* filter)
{
    const QStringList bounds = piece.split(u'-');
    if (bounds.size() == 1) {
        terms->append(QStringLiteral("(%1 = ?)").arg(field));
        filter->values.append(piece.toLongLong());
        return true;
    }
    const QString low = bounds.at(0).trimmed();
    const QString high = bounds.at(1).trimmed();
    if (!high.isEmpty()) {
        terms->append(QStringLiteral("(%1 >= ? And %1 <= ?)").arg(field));
        filter->values.append(low.toLongLong());
        filter->values.append(high.toLongLong());
    }
    // A third bound ("1-2-3") ends the range after the first two.
    return bounds.size() == 2;
}

} // namespace

bool acceptsKey(const QString& text, QChar key)
{
    if (key.isDigit()) {
        return key.unicode() < 128;
    }
    return isSeparator(key) && !text.isEmpty() && !isSeparator(text.back());
}

bool isValid(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!acceptsKey(text.left(i), text.at(i))) {
            return false;
        }
    }
    return true;
}

SqlFilter condition(const QString& range, const QString& field)
{
    SqlFilter filter;
    QStringList terms;
    for (const QString& raw : range.split(u',')) {
        const QString piece = raw.trimmed();
        if (piece.isEmpty() || !addPiece(piece, field, &terms, &filter)) {
            break;
        }
    }
    filter.where = terms.join(QStringLiteral(" Or "));
    return filter;
}

} // namespace CrewRange
