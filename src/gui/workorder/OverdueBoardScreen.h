#pragma once

#include <QIcon>
#include <QList>
#include <QStyle>
#include <QWidget>
#include <functional>

class QFrame;
class QPushButton;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;
class Session;

/**
 * frmOverDueWork, the home view inside the main screen: the machines with
 * services due and the open work orders, the report navigator and a row of
 * shortcut buttons.
 *
 * The board knows no other screen. The program gives each toolbar button and
 * the two kinds of row link their action; one without an action stays
 * disabled, and so do the report links until the report screens exist.
 */
class OverdueBoardScreen : public QWidget
{
    Q_OBJECT

public:
    using Handler = std::function<void()>;
    /** Opens the work order printing screen on a unit number. */
    using UnitHandler = std::function<void(const QString& unitNo)>;
    /** Opens the work order recording screen on a work order. */
    using WorkOrderHandler = std::function<void(qint64 workOrderNo)>;

    enum ToolbarButton {
        PrintWorkOrders,
        RecordWorkOrder,
        EquipmentReading,
        AddNewPart,
        InventoryCheckIn,
        Find,
        ToolbarButtons
    };

    explicit OverdueBoardScreen(Session& session, QWidget* parent = nullptr);

    /** Makes toolbar button index run handler and enables it; false for a bad index. */
    bool setToolbarHandler(int index, Handler handler);
    /** The actions of the rows' links; a kind without one is shown disabled. */
    void setLinkHandlers(UnitHandler print, WorkOrderHandler record);

protected:
    /** Pointing at the close image or the report caption lights the image up. */
    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /** Fills the board again from the data. */
    void loadData();
    /** Shows or hides the report navigator; the board takes its room. */
    void loadUnloadReportsNavigator();

private:
    QWidget* buildToolbar();
    QWidget* buildBoard();
    QWidget* buildReports();
    void showReports();
    void addRows(QTreeWidgetItem* group, const QList<QStringList>& rows, bool linked);
    void onItemClicked(QTreeWidgetItem* item);
    void setGroupIcon(QTreeWidgetItem* item);
    QIcon icon(const QString& file, const QString& fallback) const;
    QIcon installedIcon(const QString& file, QStyle::StandardPixmap fallback) const;

    Session& m_session;
    QList<QPushButton*> m_toolbar;
    QTreeWidget* m_board = nullptr;
    QTreeWidgetItem* m_openGroup = nullptr;
    QTreeWidgetItem* m_overdueGroup = nullptr;
    QTreeWidget* m_reports = nullptr;
    QFrame* m_reportPanel = nullptr;
    QToolButton* m_close = nullptr;
    QIcon m_closeResting;
    QIcon m_closePointed;
    QIcon m_minus;
    QIcon m_plus;
    UnitHandler m_print;
    WorkOrderHandler m_record;
};
