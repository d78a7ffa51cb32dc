#pragma once

#include "Part.h"
#include "PartManager.h"
#include "RecordScreen.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

/** The stock parts: one row a part, keyed by the part number the user types. */
class PartScreen : public RecordScreen
{
    Q_OBJECT

public:
    explicit PartScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the parts as a modal window on the part with number id; mode Add
     * starts a new part at once. Answers the part shown when it closed.
     */
    static QVariant showPartDetail(Session& session, Mode mode, const QVariant& id,
                                   QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    void clearData() override;
    void displayData(const QSqlRecord& record) override;
    bool validateFields() override;
    void setObjectValues() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;

private:
    QLineEdit* numberBox(const char* name);
    QFormLayout* buildFields();
    void loadCategories();
    void loadSuppliers();
    void bindFields();
    void showNumbers(const QString& max);
    void formatNumber(QLineEdit* box);
    void warnNumberInUse();
    void showStockRows(bool tracked);
    QWidget* fieldFor(PartManager::Field field) const;

    PartManager m_manager;
    Part m_part;
    QFormLayout* m_form = nullptr;
    QLineEdit* m_number = nullptr;
    QLineEdit* m_description = nullptr;
    QComboBox* m_category = nullptr;
    QLineEdit* m_quantity = nullptr;
    QLineEdit* m_price = nullptr;
    QComboBox* m_supplier = nullptr;
    QLineEdit* m_max = nullptr;
    QLineEdit* m_min = nullptr;
    QCheckBox* m_inactive = nullptr;
    QCheckBox* m_notTracked = nullptr;
    QLabel* m_committed = nullptr;
};
