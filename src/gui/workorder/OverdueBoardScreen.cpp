#include "OverdueBoardScreen.h"

#include "Installation.h"
#include "OverdueBoard.h"
#include "Session.h"

#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum BoardColumn { UnitColumn, WorkOrderColumn };
constexpr int UnitColumnWidth = 200;

const char* const ToolbarCaptions[] = {"Print Work Orders ", "Record Work Order",
                                       "Equipment Reading",  "Add New Part",
                                       "Inventory CheckIn",  "Find"};

struct ReportGroup
{
    const char* caption;
    QList<const char*> links;
};

const QList<ReportGroup> ReportGroups = {
    {"Equipment Reports",
     {"Equipment List", "Equipment Details", "Equipment Count Sheet", "Expense On Equipment",
      "Equipment Crew History", "Equipment Utilization", "Equipment Scan History",
      "Inspection Date Reading", "License Renewal Date Reading", "Work Order History"}},
    {"Service Reports",
     {"Service Lists", "Services By Equipment Name", "Service History $",
      "Services History Times"}},
    {"Inventory Reports",
     {"Inventory Report", "Inventory Reorder Report", "Inventory Order For UpComming Services",
      "Inventory Part Usage", "Inventory Part History"}},
};

QTreeWidget* tree(const char* name, const QStringList& captions)
{
    auto* grid = new QTreeWidget;
    grid->setObjectName(QString::fromLatin1(name));
    grid->setHeaderLabels(captions);
    grid->setRootIsDecorated(false);
    grid->setExpandsOnDoubleClick(false);
    return grid;
}

QFrame* panel(const char* name, const char* headerName, const QString& header)
{
    auto* frame = new QFrame;
    frame->setObjectName(QString::fromLatin1(name));
    auto* column = new QVBoxLayout(frame);
    auto* caption = new QLabel(header);
    caption->setObjectName(QString::fromLatin1(headerName));
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);
    auto* top = new QHBoxLayout;
    top->addWidget(caption, 1);
    column->addLayout(top);
    return frame;
}

} // namespace

OverdueBoardScreen::OverdueBoardScreen(Session& session, QWidget* parent)
    : QWidget(parent), m_session(session),
      m_minus(icon(QStringLiteral("Minus.gif"), QStringLiteral("-"))),
      m_plus(icon(QStringLiteral("Plus.gif"), QStringLiteral("+")))
{
    setObjectName(QStringLiteral("frmOverDueWork"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(buildToolbar());
    auto* panels = new QHBoxLayout;
    // The two panels share the width; a hidden report panel leaves it all to the board.
    panels->addWidget(buildBoard(), 1);
    panels->addWidget(buildReports(), 1);
    column->addLayout(panels, 1);
    showReports();
    loadData();
}

QWidget* OverdueBoardScreen::buildToolbar()
{
    auto* bar = new QFrame;
    bar->setObjectName(QStringLiteral("picLogoBar"));
    auto* row = new QHBoxLayout(bar);
    for (int i = 0; i < ToolbarButtons; ++i) {
        auto* button = new QPushButton(QString::fromLatin1(ToolbarCaptions[i]), bar);
        button->setObjectName(QStringLiteral("cmdToolbar_%1").arg(i));
        button->setEnabled(false);
        row->addWidget(button);
        m_toolbar.append(button);
    }
    m_toolbar[Find]->setIcon(style()->standardIcon(QStyle::SP_FileDialogContentsView));
    row->addStretch();
    return bar;
}

QWidget* OverdueBoardScreen::buildBoard()
{
    QFrame* frame =
        panel("picWorkorder", "lblOverDueHeader", QStringLiteral("Equipment with Services Due"));
    m_board = tree("grdEquipWithSer", {QStringLiteral("Unit No"), QStringLiteral("WorkOrderNo")});
    m_board->setColumnWidth(UnitColumn, UnitColumnWidth);
    m_board->setColumnHidden(WorkOrderColumn, true);
    m_openGroup = new QTreeWidgetItem(m_board, {OverdueBoard::OpenWorkOrders});
    m_overdueGroup = new QTreeWidgetItem(m_board, {OverdueBoard::OverdueServices});
    for (QTreeWidgetItem* group : {m_openGroup, m_overdueGroup}) {
        group->setExpanded(true);
        setGroupIcon(group);
    }
    connect(m_board, &QTreeWidget::itemClicked, this, &OverdueBoardScreen::onItemClicked);
    connect(m_board, &QTreeWidget::itemExpanded, this, &OverdueBoardScreen::setGroupIcon);
    connect(m_board, &QTreeWidget::itemCollapsed, this, &OverdueBoardScreen::setGroupIcon);
    frame->layout()->addWidget(m_board);
    return frame;
}

QWidget* OverdueBoardScreen::buildReports()
{
    m_reportPanel = panel("picReports", "lblReport", QStringLiteral("Reports"));
    m_closeResting = installedIcon(QStringLiteral("close_1.bmp"), QStyle::SP_TitleBarCloseButton);
    m_closePointed = installedIcon(QStringLiteral("close_2.bmp"), QStyle::SP_DialogCloseButton);
    m_close = new QToolButton;
    m_close->setObjectName(QStringLiteral("imgClose"));
    m_close->setAutoRaise(true);
    m_close->setIcon(m_closeResting);
    connect(m_close, &QToolButton::clicked, this, &OverdueBoardScreen::loadUnloadReportsNavigator);
    auto* top = qobject_cast<QHBoxLayout*>(m_reportPanel->layout()->itemAt(0)->layout());
    top->addWidget(m_close);
    m_close->installEventFilter(this);
    top->itemAt(0)->widget()->installEventFilter(this);
    m_reports = tree("grdReport", {QStringLiteral("Reports")});
    m_reports->setHeaderHidden(true);
    m_reportPanel->layout()->addWidget(m_reports);
    return m_reportPanel;
}

void OverdueBoardScreen::showReports()
{
    m_reports->clear();
    for (const ReportGroup& group : ReportGroups) {
        auto* top = new QTreeWidgetItem(m_reports, {QString::fromLatin1(group.caption)});
        for (const char* link : group.links) {
            // The report screens come later: their links are shown but not yet usable.
            auto* item = new QTreeWidgetItem(top, {QString::fromLatin1(link)});
            item->setDisabled(true);
        }
        top->setExpanded(true);
    }
}

bool OverdueBoardScreen::setToolbarHandler(int index, Handler handler)
{
    if (index < 0 || index >= ToolbarButtons || !handler) {
        return false;
    }
    QPushButton* button = m_toolbar[index];
    disconnect(button, &QPushButton::clicked, nullptr, nullptr);
    connect(button, &QPushButton::clicked, this, std::move(handler));
    button->setEnabled(true);
    return true;
}

void OverdueBoardScreen::setLinkHandlers(UnitHandler print, WorkOrderHandler record)
{
    m_print = std::move(print);
    m_record = std::move(record);
    loadData();
}

void OverdueBoardScreen::loadData()
{
    QList<QStringList> open;
    QList<QStringList> overdue;
    for (const OverdueBoard::Row& row : OverdueBoard(m_session).loadData()) {
        (row.workOrderNo.isNull() ? overdue : open).append({row.unit, row.workOrderNo.toString()});
    }
    addRows(m_openGroup, open, bool(m_record));
    addRows(m_overdueGroup, overdue, bool(m_print));
}

void OverdueBoardScreen::addRows(QTreeWidgetItem* group, const QList<QStringList>& rows,
                                 bool linked)
{
    qDeleteAll(group->takeChildren());
    for (const QStringList& row : rows) {
        auto* item = new QTreeWidgetItem(group, row);
        QFont link = item->font(UnitColumn);
        link.setUnderline(linked);
        item->setFont(UnitColumn, link);
        item->setForeground(UnitColumn, palette().brush(linked ? QPalette::Link : QPalette::Text));
        item->setDisabled(!linked);
    }
}

void OverdueBoardScreen::onItemClicked(QTreeWidgetItem* item)
{
    if (!item->parent()) {
        item->setExpanded(!item->isExpanded());
    } else if (item->parent() == m_openGroup && m_record) {
        m_record(item->text(WorkOrderColumn).toLongLong());
    } else if (item->parent() == m_overdueGroup && m_print) {
        m_print(OverdueBoard(m_session).preparePrintFilter(item->text(UnitColumn)));
    }
}

void OverdueBoardScreen::setGroupIcon(QTreeWidgetItem* item)
{
    if (!item->parent()) {
        item->setIcon(UnitColumn, item->isExpanded() ? m_minus : m_plus);
    }
}

void OverdueBoardScreen::loadUnloadReportsNavigator()
{
    m_reportPanel->setVisible(m_reportPanel->isHidden());
}

bool OverdueBoardScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
        m_close->setIcon(event->type() == QEvent::Enter ? m_closePointed : m_closeResting);
    }
    return QWidget::eventFilter(watched, event);
}

QIcon OverdueBoardScreen::installedIcon(const QString& file, QStyle::StandardPixmap fallback) const
{
    const QString path = m_session.installation().path(QStringLiteral("Lib/Icon/") + file);
    return QFile::exists(path) ? QIcon(path) : style()->standardIcon(fallback);
}

QIcon OverdueBoardScreen::icon(const QString& file, const QString& fallback) const
{
    const QString path = m_session.installation().path(QStringLiteral("Lib/Icon/") + file);
    if (QFile::exists(path)) {
        return QIcon(path);
    }
    // Without the installed picture the sign is drawn.
    QPixmap sign(12, 12);
    sign.fill(Qt::transparent);
    QPainter painter(&sign);
    painter.drawRect(0, 0, 11, 11);
    painter.drawText(sign.rect(), Qt::AlignCenter, fallback);
    return QIcon(sign);
}
