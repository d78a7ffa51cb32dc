#pragma once

#include "RecordScreen.h"
#include "Supplier.h"
#include "SupplierManager.h"

class QLineEdit;

/** The suppliers: the firms that sell parts and equipment, one row a supplier. */
class SupplierScreen : public RecordScreen
{
    Q_OBJECT

public:
    explicit SupplierScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the suppliers as a modal window on the supplier with id (mode Add
     * starts with a new one) and answers the supplier shown when it closed.
     */
    static QVariant showSupplierDetail(Session& session, Mode mode, const QVariant& id,
                                       QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    void clearData() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;
    void enableControls() override;

private:
    QLayout* buildFields();

    SupplierManager m_manager;
    Supplier m_supplier;
    QLineEdit* m_supplierId = nullptr;
};
