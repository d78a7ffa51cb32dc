#include "PartManager.h"

#include "MessageTexts.h"
#include "PartQueries.h"
#include "SqlValue.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("clsPartManager");

// The order decides which word the user is told when several kinds refer to the part.
constexpr RecordUse PartUses[] = {
    {"tblEquipmentPart", "PartID", "Equipment"},
    {"tblServicesPart", "PartID", "Services"},
    {"tblServiceUsedPart", "PartID", "ServiceUsed Part"},
    {"tblWoPartUsed", "PartID", "WorkOrder"},
};

// Rows without a part number, parts first and posted history last.
constexpr const char* PartLists[] = {"tblPart",         "tblEquipmentPart",
                                     "tblServicesPart", "tblServiceUsedPart",
                                     "tblWoPartUsed",   "tblWoPartHistory"};

bool isNumberText(const QString& text)
{
    bool ok = true;
    if (!text.trimmed().isEmpty()) {
        text.trimmed().toDouble(&ok);
    }
    return ok;
}

QVariantList columnValues(const Part& part)
{
    using PartQueries::number;
    return {part.description,
            part.partCategory,
            number(part.quantity),
            number(part.price),
            part.supplier,
            number(part.max),
            number(part.min),
            SqlValue::yesNo(part.inactive),
            part.notes,
            part.bin,
            part.barCode,
            SqlValue::yesNo(part.trackInventory)};
}

} // namespace

Rows PartManager::list()
{
    return DataHelpers::read(m_session, Module, QStringLiteral("GetPartInfo"),
                             QStringLiteral("SELECT * FROM tblPart ORDER BY LOWER(PartID)"));
}

Rows PartManager::suppliers()
{
    return DataHelpers::read(m_session, Module, QStringLiteral("GetSupplierInfo"),
                             QStringLiteral("SELECT * FROM tblSupplier ORDER BY LOWER(Name)"));
}

Rows PartManager::categories()
{
    return DataHelpers::indicatorInfo(m_session, PartCategoryList, false, true);
}

std::optional<PartManager::Problem> PartManager::checkSave(const Part& part, bool adding)
{
    if (DataHelpers::isBlank(part.partId)) {
        return Problem{Field::Number, MessageTexts::notBlank(QStringLiteral("Part Number"))};
    }
    if (DataHelpers::isBlank(part.description)) {
        return Problem{Field::Description, MessageTexts::notBlank(QStringLiteral("Description"))};
    }
    if (!isNumberText(part.quantity)) {
        return Problem{Field::Quantity, MessageTexts::numeric(QStringLiteral("Quantity"))};
    }
    const QString oldNumber = adding ? QString() : part.partOldId;
    if (part.inactive) {
        const QString user = canDeletePart(adding ? part.partId : oldNumber);
        if (!user.isEmpty()) {
            return Problem{Field::Inactive, QStringLiteral("This part is already assigned to ") +
                                                user +
                                                QStringLiteral(" and can not be decativated.")};
        }
    }
    if (DataHelpers::isDuplicate(m_session, QStringLiteral("tblPart"), QStringLiteral("PartID"),
                                 part.partId, oldNumber, false)) {
        return Problem{Field::Number, QStringLiteral("Part Number you specified already exists. "
                                                     "Please enter a different Part Number.")};
    }
    if (!adding && part.partId.trimmed() != oldNumber) {
        // Other tables hold the number itself, and a rename never rewrites them.
        const QString user = canDeletePart(oldNumber);
        if (!user.isEmpty()) {
            return Problem{
                Field::Number,
                QStringLiteral("You can't modified this Part Number. It's being used in ") + user +
                    u'.'};
        }
    }
    return std::nullopt;
}

QString PartManager::numberInUse(const QString& number, const QString& oldNumber)
{
    if (!DataHelpers::isDuplicate(m_session, QStringLiteral("tblPart"), QStringLiteral("PartID"),
                                  number, oldNumber, false)) {
        return QString();
    }
    const Rows owner = DataHelpers::read(
        m_session, Module, QStringLiteral("txtPartID_Validate"),
        QStringLiteral("SELECT Description FROM tblPart WHERE LOWER(PartID) = LOWER(?)"),
        {number.trimmed()});
    const QString description =
        owner.isEmpty() ? QString() : DataHelpers::replaceNull(owner[0].value(0)).toString();
    return QStringLiteral("This part number is already in use on \"") + description +
           QStringLiteral("\". Please assign a different number.");
}

bool PartManager::saveRecord(const Part& part, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    QVariantList values = columnValues(part);
    if (adding) {
        values.prepend(part.partId);
        write.exec(QStringLiteral("INSERT INTO tblPart (PartID, Description, PartCategoryID, "
                                  "Quantity, Price, SupplierID, QtyMax, QtyMin, Inactive, Notes, "
                                  "Bin, Bar_Code, TrackInventory) "
                                  "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                   values);
    } else {
        values << part.partId << part.partOldId;
        write.exec(QStringLiteral("UPDATE tblPart SET Description = ?, PartCategoryID = ?, "
                                  "Quantity = ?, Price = ?, SupplierID = ?, QtyMax = ?, "
                                  "QtyMin = ?, Inactive = ?, Notes = ?, Bin = ?, Bar_Code = ?, "
                                  "TrackInventory = ?, PartID = ? WHERE PartID = ?"),
                   values);
    }
    return write.commit();
}

bool PartManager::deleteRecord(const QString& partId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblPart WHERE PartID = ?"), {partId});
    return write.commit();
}

QString PartManager::canDeletePart(const QString& partId)
{
    return DataHelpers::firstUse(m_session, PartUses, partId, QStringLiteral("S"));
}

double PartManager::partCommitted(const QString& partId)
{
    const Rows sum = DataHelpers::read(
        m_session, Module, QStringLiteral("PartCommited"),
        QStringLiteral("SELECT SUM(QuantityRequired) FROM tblWoPartUsed WHERE PartID = ?"),
        {partId});
    return sum.isEmpty() ? 0 : sum[0].value(0).toDouble();
}

bool PartManager::cleanUpParts()
{
    WriteScope write(m_session, QStringLiteral("frmMainScreen"), QStringLiteral("CleanUpParts"));
    for (const char* table : PartLists) {
        write.exec(
            QStringLiteral("DELETE FROM %1 WHERE PartID IS NULL").arg(QString::fromLatin1(table)));
    }
    return write.commit();
}
