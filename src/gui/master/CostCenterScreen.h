#pragma once

#include "CostCenter.h"
#include "CostCenterManager.h"
#include "NamedRecordScreen.h"

/** The cost centres: description and budget, one row a cost centre. */
class CostCenterScreen : public NamedRecordScreen
{
    Q_OBJECT

public:
    explicit CostCenterScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the cost centres as a modal window on the one with id (mode Add
     * starts with a new one) and answers the cost centre shown when it closed.
     */
    static QVariant showCostCenterDetail(Session& session, Mode mode, const QVariant& id,
                                         QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;

private:
    CostCenterManager m_manager;
    CostCenter m_center;
};
