#include "InventoryCheckIn.h"

#include "PartQueries.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("frmInventryCheckIn");

} // namespace

Rows InventoryCheckIn::list(bool reorderOnly, const QString& search)
{
    QStringList terms;
    if (reorderOnly) {
        terms.append(QStringLiteral("Quantity <= QtyMin"));
    }
    const SqlFilter filter = PartQueries::startsWith(search);
    if (!filter.where.isEmpty()) {
        terms.append(filter.where);
    }
    QString sql = QStringLiteral("SELECT PartID, Description, Quantity FROM tblPart");
    if (!terms.isEmpty()) {
        sql += QStringLiteral(" WHERE ") + terms.join(QStringLiteral(" AND "));
    }
    sql += QStringLiteral(" ORDER BY LOWER(PartID)");
    return DataHelpers::read(m_session, Module, QStringLiteral("ShowGrid"), sql, filter.values);
}

bool InventoryCheckIn::save(const QList<Receipt>& receipts)
{
    for (const Receipt& receipt : receipts) {
        const double onHand = DataHelpers::replaceNull(receipt.onHand, 0).toDouble();
        WriteScope write(m_session, Module, QStringLiteral("SaveChanges"));
        write.exec(QStringLiteral("UPDATE tblPart SET Quantity = ? WHERE PartID = ?"),
                   {onHand + receipt.received, receipt.partId});
        if (!write.commit()) {
            return false;
        }
    }
    return true;
}
