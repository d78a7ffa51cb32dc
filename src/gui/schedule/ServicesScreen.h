#pragma once

#include "RecordScreen.h"
#include "ServicesManager.h"

#include <array>

class DateBox;
class QAbstractButton;
class QCheckBox;
class QLabel;
class QRadioButton;
class QSpinBox;
class QTableWidget;
class QTableWidgetItem;

/**
 * A service and its schedule, in two modes: the master list (tblServices),
 * or one copy on a machine (tblServiceUsed) with its dates or next count.
 */
class ServicesScreen : public RecordScreen
{
    Q_OBJECT

public:
    /** A copy screen shows the one service serviceUsedId. */
    ServicesScreen(Session& session, ServicesManager::Kind kind, qint64 serviceUsedId = 0,
                   QWidget* parent = nullptr);

    /** The master list, on the service with id; mode Add starts on a new one. */
    static QVariant showServicesDetail(Session& session, Mode mode, const QVariant& id,
                                       QWidget* parent = nullptr);
    /** One service on a machine. */
    static void showServiceUsedDetail(Session& session, qint64 serviceUsedId,
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
    void enableControls() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum Group { DaysGroup, WeeksGroup, MonthsGroup };

    void buildScheduleControls();
    void buildCostAndPartControls();
    bool isCopy() const { return m_kind == ServicesManager::Kind::Copy; }
    QString periodCode() const;
    bool checkSchedule();
    bool confirmOnWorkOrder();
    void enableLogicControl();
    void checkServiceChange(bool propose);
    void onUseDayOfMonth(bool on);
    void onInactive(bool on);
    void onJobNoExit();
    void onNameExit();
    void onCountExit();
    bool anyTicked(Group group) const;
    void toggleGroup(Group group);
    void setCaption(Group group);
    void showCosts();
    void showParts();
    void addParts();
    void removePart();
    void onPartEdited(QTableWidgetItem* item);
    void priceFromCrew();

    ServicesManager::Kind m_kind;
    qint64 m_copyId;
    bool m_showing = false; ///< while a record is being shown, no rule of a change runs
    ServicesManager m_manager;
    Service m_service;
    QLineEdit* m_jobNo = nullptr;
    QLineEdit* m_name = nullptr;
    QComboBox* m_crew = nullptr;
    QComboBox* m_costCenter = nullptr;
    QLineEdit* m_labor = nullptr;
    QLineEdit* m_cost = nullptr;
    QComboBox* m_period = nullptr;
    QSpinBox* m_interval = nullptr;
    std::array<QRadioButton*, 3> m_renewal{}; ///< W, S, D
    std::array<QList<QCheckBox*>, 3> m_groups;
    std::array<QPushButton*, 3> m_selectAll{};
    QCheckBox* m_useDom = nullptr;
    std::array<QComboBox*, 5> m_dom{};
    QPushButton* m_clearAll = nullptr;
    QCheckBox* m_inactive = nullptr;
    QLabel* m_nextLabel = nullptr;
    DateBox* m_nextDate = nullptr;
    QWidget* m_countFrame = nullptr;
    QLineEdit* m_count = nullptr;
    std::array<DateBox*, 2> m_lastDates{}; ///< scheduled, performed
    QList<QWidget*> m_copyOnly;
    QLineEdit* m_partCost = nullptr;
    QLineEdit* m_totalCost = nullptr;
    QLineEdit* m_laborRate = nullptr;
    QTableWidget* m_parts = nullptr;
    QPushButton* m_addPart = nullptr;
    QPushButton* m_removePart = nullptr;
    bool m_fillingParts = false;
};
