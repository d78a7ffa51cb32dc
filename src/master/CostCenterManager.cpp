#include "CostCenterManager.h"

#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("clsCostCenterManager");

constexpr RecordUse CostCenterUses[] = {
    {"tblServices", "CostCenterID", "Services"},
};

} // namespace

Rows CostCenterManager::list()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblCostCenter"), {},
                                  QStringLiteral("Description, CostCenterID"));
}

bool CostCenterManager::saveRecord(CostCenter& center, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    if (!adding) {
        write.exec(QStringLiteral("UPDATE tblCostCenter SET Description = ?, Budget = ? "
                                  "WHERE CostCenterID = ?"),
                   {center.description, center.budget, center.costCenterId});
        return write.commit();
    }
    QVariant id;
    write.exec(QStringLiteral("INSERT INTO tblCostCenter (Description, Budget) VALUES (?, ?) "
                              "RETURNING CostCenterID"),
               {center.description, center.budget}, &id);
    if (!write.commit()) {
        return false;
    }
    center.costCenterId = id.toLongLong();
    return true;
}

bool CostCenterManager::deleteRecord(qint64 costCenterId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblCostCenter WHERE CostCenterID = ?"), {costCenterId});
    return write.commit();
}

QString CostCenterManager::canDeleteCostCenter(qint64 costCenterId)
{
    return DataHelpers::firstUse(m_session, CostCenterUses, costCenterId, QStringLiteral("N"));
}
