#pragma once

#include "WorkOrderRecording.h"

#include <QWidget>

class QPlainTextEdit;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;
class Session;

/**
 * Tab 1 of the work order screen, "Complete Work Order": what was really done
 * on the open work orders, entered cell by cell into the open tables, and the
 * post that turns it into history.
 *
 * Each cell edit is one call into WorkOrderRecording, which does the edit's
 * consequences itself. The tab then reads its rows again with the grids'
 * signals blocked, so that cells set in code never run an edit a second time,
 * and a refused edit shows the old value again.
 */
class WorkOrderRecordTab : public QWidget
{
    Q_OBJECT

public:
    /** The items of a drop-down: id and text, in the order shown. */
    using Choices = QList<std::pair<qint64, QString>>;

    explicit WorkOrderRecordTab(Session& session, QWidget* parent = nullptr);

    /** RefreshRecordWorkorder: fills grdRecordWo again, keeping the selected order where it can. */
    void refreshRecordWorkorder();
    /** FindNSelectRecordWorkorder: selects that order's row; false when it is not listed. */
    bool findAndSelect(qint64 workOrderNo);
    /** The machines of the listed orders (cmdUnschedule leaves them out of its quick find). */
    QList<qint64> equipmentIds() const;
    /** Sizes and orders the grids' columns as this user left them on the screen formName. */
    void restoreLayouts(const QString& formName);
    void storeLayouts(const QString& formName) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    QTableWidget* grid(const char* name, const QStringList& captions);
    QList<QTableWidget*> grids() const;
    QPushButton* button(const char* name, const QString& caption);
    void showOrders();
    void showLines();
    void showParts();
    void showNote();
    void selectRow(QTableWidget* grid, int row);
    void enableButtons();

    void onOrderChanged(QTableWidgetItem* item);
    void onLineChanged(QTableWidgetItem* item);
    void onPartChanged(QTableWidgetItem* item);
    void onLineClicked(int row, int column);
    void onOrderDoubleClicked(int row, int column);
    void onOrderSelected();
    void onLineSelected();
    void editLine(const WorkOrderRecording::Line& line, const QTableWidgetItem* item);
    void editPart(const WorkOrderRecording::Part& part, const QTableWidgetItem* item);
    void skip(qint64 lineId);
    bool leaveNote();
    bool noteHeld();

    void skipAll();
    void addServices();
    void addParts();
    void removePart();
    void post();

    qint64 selectedOrder() const;
    qint64 selectedEquipment() const;
    bool selectedOrderComplete() const;
    qint64 selectedLine() const;
    bool selectedLineCompleted() const;
    QString selectedPart() const;

    Session& m_session;
    WorkOrderRecording m_recording;
    Choices m_crews;
    Choices m_suppliers;
    QList<WorkOrderRecording::Order> m_orders;
    QList<WorkOrderRecording::Line> m_lines;
    QList<WorkOrderRecording::Part> m_parts;
    qint64 m_linesOrder = 0; ///< the order whose lines are shown
    qint64 m_noteLine = 0;   ///< the line whose note the note box shows
    QTableWidget* m_orderRows = nullptr;
    QTableWidget* m_lineRows = nullptr;
    QTableWidget* m_partRows = nullptr;
    QPlainTextEdit* m_note = nullptr;
};
