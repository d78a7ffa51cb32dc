#pragma once

#include "Depreciation.h"
#include "Equipment.h"
#include "EquipmentAttachments.h"
#include "EquipmentManager.h"
#include "EquipmentParts.h"
#include "EquipmentServices.h"
#include "MeterReadings.h"
#include "RecordScreen.h"
#include "ServiceHistory.h"

#include <QHash>
#include <functional>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTableWidget;
class QTableWidgetItem;

/**
 * The equipment register: one machine in thirteen sections chosen by a
 * vertical toolbox, with its required parts, depreciation, pictures and
 * documents. Child rows are written inside the screen's edit, so a revert
 * brings them back.
 */
class EquipmentScreen : public RecordScreen
{
    Q_OBJECT

public:
    /** Picks parts, leaving out those in *excludeInOut; the picks come back in it. */
    using PartPicker = std::function<bool(QString* excludeInOut, QWidget* parent)>;

    /** Services chosen in a picker and where they come from ("SL" or "EL"); no ids: none. */
    /**
     * The screens the Service and Counts sections open. A button whose screen is not
     * set stays disabled; without countAsker a missing count is asked in an input box.
     */
    struct ServiceHooks
    {
        /** Picks services for the machine, leaving out the master services it has. */
        std::function<ServicePick(Session& session, qint64 equipmentId,
                                  const QList<qint64>& excludedServiceIds, QWidget* parent)>
            pickServices;
        /** Opens one service of the machine (a tblServiceUsed row). */
        std::function<void(Session& session, qint64 serviceUsedId, QWidget* parent)> openService;
        /** Takes a new reading of the machine. */
        std::function<void(Session& session, qint64 equipmentId, QWidget* parent)> addCount;
        /** Asks the count a meter service was last done at, on a machine without one. */
        std::function<MeterReadings::ServiceCountAsker(Session& session, QWidget* parent)>
            countAsker;
    };

    /**
     * The time dialog of a history row: its lineId, the start, end and hours (a
     * null as "00:00") and the table the dialog writes to.
     */
    using HistoryTimeDialog =
        std::function<void(Session& session, qint64 lineId, const QStringList& times,
                           const QString& table, QWidget* parent)>;

    explicit EquipmentScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Shows the equipment as a modal window on the record with id (in mode Add
     * on a new one) and answers the record shown when it closed.
     */
    static QVariant showEquipmentDetail(Session& session, Mode mode, const QVariant& id,
                                        QWidget* parent = nullptr);
    /** The picker behind cmdAddNewPart; until one is set the button stays disabled. */
    static void setPartPicker(PartPicker picker);
    /** The screens behind the Service and Counts sections. */
    static void setServiceHooks(ServiceHooks hooks);
    /** The dialog a click on a history row's times opens; without one they are typed in place. */
    static void setHistoryTimeDialog(HistoryTimeDialog dialog);

    /** The section shown, 0 to 12. */
    int section() const;
    /** Shows section index as the toolbox does, asking to save a new record first. */
    bool showSection(int index);

protected:
    Rows loadRecords() override;
    void clearData() override;
    void displayData(const QSqlRecord& record) override;
    bool validateFields() override;
    void setObjectValues() override;
    bool saveRecord(QVariant* id) override;
    QString deleteQuestion() const override;
    QString canDelete(const QVariant& id) override;
    bool deleteRecord(const QVariant& id) override;
    void enableControls() override;

private:
    // Sections, in EquipmentSections.cpp.
    QWidget* buildToolBox();
    QWidget* buildSections();
    QWidget* equipmentSection();
    QWidget* notesSection();
    QWidget* userDefinedSection();
    QWidget* engineSection();
    QWidget* vehicleSection();
    QWidget* purchaseSection();
    QWidget* partsSection();
    QWidget* depreciationSection();
    QWidget* picturesSection();
    QWidget* documentsSection();
    QWidget* serviceSection();
    QWidget* countsSection();
    QWidget* page(const char* frame);
    QLineEdit* line(const char* name, const QString& column, QString* member);
    QLineEdit* number(const char* name, const QString& column, FieldBindings::Member member,
                      int checks = FieldBindings::None);
    QComboBox* list(const char* name, const QString& column, qint64* member);
    QComboBox* codes(const char* name, const QString& column, int* member,
                     const QStringList& texts);
    QWidget* date(const char* name, const QString& column, QDate* member);
    QWidget* withButton(QWidget* field, const char* button);
    QLabel* label(const char* name, const QString& text);
    QTableWidget* table(const char* name, const QStringList& captions);
    QPushButton* button(const char* name, const QString& caption);

    // History, in EquipmentHistorySection.cpp.
    static HistoryTimeDialog& historyTimeDialog();
    QWidget* historySection();
    void showHistory();
    void showPartHistory();
    void refreshHistory();
    void deleteHistory();
    void onHistoryCellChanged(QTableWidgetItem* item);
    void onPartHistoryCellChanged(QTableWidgetItem* item);
    void onHistoryCellClicked(int row, int column);
    qint64 selectedHistoryId() const;

    // Lists.
    void loadLists();
    void loadIndicators(QComboBox* list, qint64 parent);
    void loadDependent(QComboBox* list, QComboBox* parent);
    void loadSites();
    void loadLocations();
    void loadCrews();
    void loadSuppliers();
    void loadStates();
    void wireListButtons();
    void wireIndicatorButton(const char* name, QComboBox* list, qint64 listNumber,
                             QComboBox* parent = nullptr, bool engineMake = false);
    void relabelLease();
    void showUserDefinedCaptions();

    // Behaviour.
    void onSectionClicked(int index);
    void pressToolButton(int index);
    bool saveNewRecordFirst();
    void markSectionsWithData();
    bool sectionHasData(int index) const;
    void checkUnitNoOnExit(QWidget* next);
    void warnSerialOnExit(QWidget* next);
    void removeDocumentFolder(qint64 id);
    qint64 shownId() const;
    void showChildren();
    void showRows(QTableWidget* grid, const Rows& rows, const QStringList& columns,
                  const QString& moneyColumns = QString());

    // Children.
    void addParts();
    void removePart();
    void recalculate();
    void addPicture();
    void showPicture();
    void removePicture();
    void addDocument();
    void removeDocument();
    void preview();
    QString selectedName(QTableWidget* grid) const;
    static PartPicker& partPicker();

    // Services and readings, in EquipmentServiceSection.cpp.
    static ServiceHooks& serviceHooks();
    void showServices();
    void showCounts();
    void enableServiceButtons(bool saved);
    void onServiceCellChanged(QTableWidgetItem* item);
    qint64 selectedServiceId() const;
    void addServices();
    void selectService();
    void removeService();
    void addCount();
    void deleteCount();

    EquipmentManager m_manager;
    EquipmentParts m_partList;
    Depreciation m_depreciation;
    EquipmentServices m_services;
    MeterReadings m_readings;
    EquipmentAttachments m_attachments;
    Equipment m_equipment;
    QString m_unitNoAtStart;
    QString m_serialAtStart;
    QString m_serialWarned;
    bool m_crewTouched = false;

    QStackedWidget* m_sections = nullptr;
    QList<QPushButton*> m_toolButtons;
    QHash<int, QList<QWidget*>> m_sectionFields; ///< what tells whether a section holds data
    int m_building = 0;                          ///< the section whose fields are being made
    QHash<QString, QComboBox*> m_lists;
    QHash<QString, QLineEdit*> m_lines;
    QList<QLabel*> m_leaseLabels;
    QList<QLabel*> m_userDefinedLabels;
    QTableWidget* m_parts = nullptr;
    QTableWidget* m_depreciationRows = nullptr;
    QTableWidget* m_pictures = nullptr;
    QLabel* m_picture = nullptr; ///< the picture chosen in m_pictures
    QTableWidget* m_documents = nullptr;
    QTableWidget* m_serviceRows = nullptr;
    QTableWidget* m_countRows = nullptr;
    QHash<qint64, QString> m_crewTexts;
    bool m_fillingServices = false; ///< the grid's own writes are no edits
    ServiceHistory m_history;
    QTableWidget* m_historyRows = nullptr;
    QTableWidget* m_partHistoryRows = nullptr;
    QDateEdit* m_historyFrom = nullptr;
    QDateEdit* m_historyTo = nullptr;
    bool m_fillingHistory = false; ///< the history grids' own writes are no edits
};
