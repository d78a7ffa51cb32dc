#include "PartPicker.h"

#include "PartQueries.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("frmPartManager");

/** A field of a pick as text; NULL as empty text, numbers without trailing zeros. */
QString fieldText(const QVariant& value)
{
    if (value.isNull()) {
        return QString();
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? QString::number(number, 'g', 15) : value.toString();
}

} // namespace

const QString PartPicker::RecordSeparator = QStringLiteral("@@@@");
// Character 134 of the Windows-1252 code page the readers of this text were made for.
const QChar PartPicker::FieldSeparator = QChar(0x2020);

QStringList PartPicker::parseExcludeList(const QString& text)
{
    QStringList numbers;
    QString current;
    bool quoted = false;
    bool inValue = false;
    const auto endValue = [&] {
        if (inValue) {
            numbers.append(current);
        }
        current.clear();
        inValue = false;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            const bool doubled = c == u'\'' && i + 1 < text.size() && text[i + 1] == u'\'';
            if (c != u'\'' || doubled) {
                current += c; // a doubled apostrophe stands for itself
                i += doubled ? 1 : 0;
            } else {
                quoted = false;
            }
        } else if (c == u'\'') {
            quoted = inValue = true;
        } else if (c == u',') {
            endValue();
        } else if (!c.isSpace()) {
            current += c; // a number given without quotes
            inValue = true;
        }
    }
    endValue();
    return numbers;
}

Rows PartPicker::list(const QString& excludeText, const QString& search)
{
    QString sql = QStringLiteral(
        "SELECT tblPart.PartID, tblPart.Description, tblIndicator.ItemName AS PartCategory, "
        "tblPart.Quantity, tblPart.Price, tblSupplier.Name AS Supplier, tblPart.Inactive, "
        "tblPart.SupplierID FROM (tblPart LEFT JOIN tblSupplier ON tblPart.SupplierID = "
        "tblSupplier.SupplierID) LEFT JOIN tblIndicator ON tblPart.PartCategoryID = "
        "tblIndicator.ItemID WHERE COALESCE(tblPart.Inactive, 0) = 0");
    QVariantList values;
    const QStringList excluded = parseExcludeList(excludeText);
    if (!excluded.isEmpty()) {
        QStringList marks;
        for (const QString& number : excluded) {
            marks.append(QStringLiteral("LOWER(?)"));
            values.append(number);
        }
        sql += QStringLiteral(" AND LOWER(tblPart.PartID) NOT IN (") +
               marks.join(QStringLiteral(", ")) + u')';
    }
    const SqlFilter filter = PartQueries::startsWith(search, QStringLiteral("tblPart."));
    if (!filter.where.isEmpty()) {
        sql += QStringLiteral(" AND ") + filter.where;
        values += filter.values;
    }
    sql += QStringLiteral(" ORDER BY LOWER(tblPart.PartID)");
    return DataHelpers::read(m_session, Module, QStringLiteral("ShowGrid"), sql, values);
}

QString PartPicker::resultText(const QList<Pick>& picks)
{
    QStringList records;
    for (const Pick& pick : picks) {
        records.append(QStringList{pick.partId, fieldText(pick.quantity), fieldText(pick.price),
                                   fieldText(pick.supplierId)}
                           .join(FieldSeparator));
    }
    return records.join(RecordSeparator);
}

bool PartPicker::deletePart(const QString& partId)
{
    WriteScope write(m_session, Module, QStringLiteral("cmdDelete_Click"));
    write.exec(QStringLiteral("DELETE FROM tblPart WHERE PartID = ?"), {partId});
    write.exec(QStringLiteral("DELETE FROM tblTempServicePart WHERE PartID = ?"), {partId});
    return write.commit();
}
