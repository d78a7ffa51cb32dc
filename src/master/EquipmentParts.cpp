#include "EquipmentParts.h"

#include "PartPicker.h"
#include "Session.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("frmEquipment");

QVariant numberOrNull(const QString& text)
{
    return text.trimmed().isEmpty() ? QVariant() : QVariant(text.toDouble());
}

} // namespace

Rows EquipmentParts::rows(qint64 equipmentId)
{
    const QString sql = QStringLiteral(
        "SELECT tblEquipmentPart.PartID, tblPart.Description, tblEquipmentPart.QuantityRequired, "
        "tblEquipmentPart.QuantityRequired * tblEquipmentPart.Price AS ExtendedCost "
        "FROM tblEquipmentPart LEFT JOIN tblPart ON tblPart.PartID = tblEquipmentPart.PartID "
        "WHERE tblEquipmentPart.EquipmentID = ? ORDER BY tblEquipmentPart.PartID");
    return DataHelpers::read(m_session, Module, QStringLiteral("FillPartGrid"), sql, {equipmentId});
}

QString EquipmentParts::excludeText(qint64 equipmentId)
{
    QStringList quoted;
    for (const QSqlRecord& row : rows(equipmentId)) {
        QString part = row.value(0).toString();
        quoted.append(u'\'' + part.replace(u'\'', QStringLiteral("''")) + u'\'');
    }
    return quoted.join(u',');
}

bool EquipmentParts::addPicked(qint64 equipmentId, const QString& resultText)
{
    WriteScope write(m_session, Module, QStringLiteral("AddPartRecord"));
    for (const QString& record :
         resultText.split(PartPicker::RecordSeparator, Qt::SkipEmptyParts)) {
        const QStringList f = record.split(PartPicker::FieldSeparator);
        write.exec(QStringLiteral("INSERT INTO tblEquipmentPart "
                                  "(EquipmentID, PartID, QuantityRequired, Price, SupplierID) "
                                  "VALUES (?, ?, ?, ?, ?)"),
                   {equipmentId, f.value(0), f.value(1).toDouble(), numberOrNull(f.value(2)),
                    numberOrNull(f.value(3))});
    }
    return write.commit();
}

bool EquipmentParts::removePart(qint64 equipmentId, const QString& partId)
{
    WriteScope write(m_session, Module, QStringLiteral("cmdRemovePart_Click"));
    write.exec(QStringLiteral("DELETE FROM tblEquipmentPart WHERE EquipmentID = ? AND PartID = ?"),
               {equipmentId, partId});
    return write.commit();
}
