#pragma once

#include "Employee.h"
#include "EmployeeManager.h"
#include "RecordScreen.h"

class QComboBox;
class QLineEdit;
class QPushButton;

/** The people who do the work: names, address, contact, crew and labour cost. */
class EmployeeScreen : public RecordScreen
{
    Q_OBJECT

public:
    explicit EmployeeScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the employees as a modal window, on the employee with id (in
     * mode Add on a new one), and answers the employee shown when it closed.
     */
    static QVariant showEmployeeDetail(Session& session, Mode mode, const QVariant& id,
                                       QWidget* parent = nullptr);

protected:
    Rows loadRecords() override;
    void setObjectValues() override;
    bool saveRecord(QVariant* id) override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;

private:
    QLayout* buildFields();
    QLineEdit* addLine(const char* name, const QString& column, QString* member,
                       const QString& caption = QString(), int checks = FieldBindings::None);
    QComboBox* addList(const char* name, const QString& column, qint64* member);
    QLineEdit* addMoney(const char* name, const QString& column, double* member,
                        const QString& caption);
    QLineEdit* addPhone(const char* name, const QString& column, QString* member);
    void loadLists();
    void loadIndicators(QComboBox* list, qint64 parent);
    void loadStates();
    void loadSites();
    void loadCrews();
    void wireListButtons(QPushButton* countries, QPushButton* states, QPushButton* sites,
                         QPushButton* crews, QPushButton* positions);

    EmployeeManager m_manager;
    Employee m_employee;
    QLineEdit* m_id = nullptr;
    QLineEdit* m_phone = nullptr;
    QLineEdit* m_cellPhone = nullptr;
    QComboBox* m_country = nullptr;
    QComboBox* m_state = nullptr;
    QComboBox* m_site = nullptr;
    QComboBox* m_crew = nullptr;
    QComboBox* m_position = nullptr;
};
