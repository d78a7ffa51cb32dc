#pragma once

#include "WorkOrderFilter.h"
#include "WorkOrderLists.h"
#include "WorkOrderRecording.h"
#include "WorkOrderRecords.h"

#include <QDialog>

class QCheckBox;
class QDateEdit;
class QGroupBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class Session;
class WorkOrderGrid;
class WorkOrderRecordTab;

/**
 * frmWorkorder: where work orders are generated, prepared, recorded and
 * posted. The filter above the tabs chooses what is due; tab 0 lists the
 * machines with due services beside the open work orders, generates orders
 * for the ticked machines and changes an order before it goes out; tab 1
 * records the work done.
 */
class WorkOrderScreen : public QDialog
{
    Q_OBJECT

public:
    enum class Tab { Print = 0, Complete = 1 };

    static inline const QString EndBeforeStart =
        QStringLiteral("End date can't be less than Work Order Date");
    static inline const QString SelectOne = QStringLiteral("Please select at least one record");
    static inline const QString Generated = QStringLiteral("Workorder Generated");
    static inline const QString GenerateFirst =
        QStringLiteral("You must genearte a Work Order before you can make changes. Do you wish "
                       "to generate the Work Order?");

    explicit WorkOrderScreen(Session& session, QWidget* parent = nullptr);

    /** ShowPrintWorkorder: opens tab 0 modally on the due row of unitNo (none when blank). */
    static void showPrintWorkorder(Session& session, const QString& unitNo, QWidget* parent);
    /** ShowCompleteWorkorder: opens tab 1 modally on that order (none when 0). */
    static void showCompleteWorkorder(Session& session, qint64 workOrderNo, QWidget* parent);

    /** Switches to tab, showing the controls that belong to it, and fills it again. */
    void openTab(Tab tab);
    /** FindNSelectPrintWorkorder: the first due row of that unit, case ignored. */
    bool selectDueUnit(const QString& unitNo);
    /** FindNSelectPrintWorkorderByWO. */
    bool selectPrintOrder(qint64 workOrderNo);
    /** The filter as the boxes hold it now. */
    WorkOrderFilter filter() const;

protected:
    void done(int result) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* buildFilter();
    QWidget* buildPrintTab();
    QGroupBox* buildGenFrame();
    QGroupBox* buildPrintFrame();
    QWidget* buildButtons();
    QWidget* buildRecordTab();
    QPushButton* button(const char* name, const QString& caption);
    QList<WorkOrderGrid*> grids() const;

    void showFilter(const WorkOrderFilter& filter);
    void onDateFromChanged();
    void onDateToChanged();
    void onTabChanged(int index);
    void refreshCurrentTab();

    void refreshPrintWo();
    void onPrintRowChosen();
    void refreshGenServiceGrid(qint64 equipmentId);
    void refreshGenPartGrid();
    void refreshPrintServiceGrid(qint64 workOrderNo);
    void refreshPrintPartGrid();
    void enableControls();

    void generateChecked();
    void generateForCurrentRow();
    bool generate(const QList<qint64>& equipmentIds);
    void deleteWorkOrder();
    void addUnscheduled();
    void pickAll();
    void pickUnprinted();

    void addPrintService();
    void removePrintService();
    void addPrintPart();
    void removePrintPart();
    void onPriceEdited(int row, const QString& field, const QString& text);
    void storeDueNote();
    bool storePrintNote();

    qint64 currentEquipmentId() const;
    qint64 currentWorkOrderNo() const;
    qint64 currentScheduleId() const;
    qint64 currentLineId() const;
    QString currentPartId() const;

    void refreshRecordTab();
    void selectRecordOrder(qint64 workOrderNo);

    Session& m_session;
    WorkOrderLists m_lists;
    WorkOrderRecords m_records;
    WorkOrderRecording m_recording;

    QDateEdit* m_dateFrom = nullptr;
    QDateEdit* m_dateTo = nullptr;
    QLineEdit* m_crewRange = nullptr;
    QLineEdit* m_assignCrew = nullptr;
    QCheckBox* m_group = nullptr;
    QWidget* m_filterBox = nullptr;
    QTabWidget* m_tabs = nullptr;

    WorkOrderGrid* m_printWo = nullptr;
    QGroupBox* m_genFrame = nullptr;
    WorkOrderGrid* m_genService = nullptr;
    WorkOrderGrid* m_genPart = nullptr;
    QPlainTextEdit* m_genNote = nullptr;
    QGroupBox* m_printFrame = nullptr;
    WorkOrderGrid* m_printService = nullptr;
    WorkOrderGrid* m_printPart = nullptr;
    QPlainTextEdit* m_printNote = nullptr;
    QString m_shownNote; ///< the note as read, so that an unchanged one is not written
    WorkOrderRecordTab* m_recordTab = nullptr;
};
