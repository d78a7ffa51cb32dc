#include "WorkOrderScreen.h"

#include "CrewRange.h"
#include "DateBox.h"
#include "FormPlacement.h"
#include "Lateness.h"
#include "MessageTexts.h"
#include "PartManagerScreen.h"
#include "Prompter.h"
#include "QuickFindScreen.h"
#include "ServicesManagerScreen.h"
#include "Session.h"
#include "SqlValue.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderGrid.h"
#include "WorkOrderRecordTab.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QValidator>

namespace {

const QString FormName = QStringLiteral("frmWorkorder");
const QString SelectAll = QStringLiteral("Select All");
const QString UnselectAll = QStringLiteral("Unselect All");
const QColor DueRow(0xFFFF00);

using Column = WorkOrderGrid::Column;
using Kind = WorkOrderGrid::Kind;

const QList<Column> PrintWoColumns = {
    {QStringLiteral("Select"), QStringLiteral("Select"), Kind::Pick},
    {QStringLiteral("EquipmentID"), QString(), Kind::Hidden},
    {QStringLiteral("WorkOrderNo"), QStringLiteral("WorkOrderNo")},
    {QStringLiteral("UnitNo"), QStringLiteral("Unit No")},
    {QStringLiteral("EquipmentName"), QStringLiteral("Equipment Name")},
    {QStringLiteral("EquipmentType"), QStringLiteral("Equipment Type")},
    {QStringLiteral("Printed"), QStringLiteral("Printed"), Kind::Check},
};

const QList<Column> GenServiceColumns = {
    {QStringLiteral("ServiceUsedID"), QString(), Kind::Hidden},
    {QStringLiteral("ServiceNo"), QStringLiteral("Service No")},
    {QStringLiteral("ServiceName"), QStringLiteral("Service Name")},
    {QStringLiteral("ServiceCrew"), QStringLiteral("Service Crew")},
    {QStringLiteral("NextScheduledDate"), QStringLiteral("Next Service Date"), Kind::Date},
    {QStringLiteral("SeparateWo"), QStringLiteral("SeparateWo"), Kind::Check},
};

const QList<Column> PrintServiceColumns = {
    {QStringLiteral("ServiceNo"), QStringLiteral("Service No")},
    {QStringLiteral("ServiceName"), QStringLiteral("Service Name")},
    {QStringLiteral("ServiceCrew"), QStringLiteral("Service Crew")},
    {QStringLiteral("NextScheduledDate"), QStringLiteral("Next Service Date"), Kind::Date},
    {QStringLiteral("Skip"), QString(), Kind::Hidden},
    {QStringLiteral("SeparateWo"), QStringLiteral("SeparateWo"), Kind::Check},
    {QStringLiteral("ServiceID"), QString(), Kind::Hidden},
    {QStringLiteral("NserviceUsedID"), QString(), Kind::Hidden},
};

QList<Column> partColumns(bool priceEditable)
{
    return {{QStringLiteral("PartNumber"), QStringLiteral("Part Number")},
            {QStringLiteral("Description"), QStringLiteral("Description")},
            {QStringLiteral("QuantityRequired"), QStringLiteral("Qty Req")},
            {QStringLiteral("Price"), QStringLiteral("Price"), Kind::Money, priceEditable}};
}

/** The crew range boxes take what could have been typed key by key. */
class CrewRangeMask : public QValidator
{
public:
    using QValidator::QValidator;
    State validate(QString& input, int&) const override
    {
        return CrewRange::isValid(input) ? Acceptable : Invalid;
    }
};

QDateEdit* dateEdit(QWidget* parent, const char* name)
{
    auto* edit = new QDateEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setDisplayFormat(DateBox::DisplayFormat);
    edit->setCalendarPopup(true);
    return edit;
}

QLineEdit* crewEdit(QWidget* parent, const char* name)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setValidator(new CrewRangeMask(edit));
    return edit;
}

QLabel* label(QWidget* parent, const char* name, const QString& caption)
{
    auto* l = new QLabel(caption, parent);
    l->setObjectName(QString::fromLatin1(name));
    return l;
}

QPlainTextEdit* noteEdit(QWidget* parent, const char* name)
{
    auto* edit = new QPlainTextEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setMaximumHeight(60);
    return edit;
}

/** Rows coloured by how late their next service date is. */
void paintLateness(Session& session, WorkOrderGrid* grid)
{
    const Lateness::Thresholds thresholds = Lateness::thresholds(session);
    for (int r = 0; r < grid->rowCount(); ++r) {
        const QDate due = SqlValue::toDate(grid->value(r, QStringLiteral("NextScheduledDate")));
        switch (Lateness::colour(due, session.today(), thresholds)) {
        case Lateness::Colour::Red:
            grid->paintRow(r, QColor(Lateness::RedBackground), Qt::white);
            break;
        case Lateness::Colour::Yellow:
            grid->paintRow(r, QColor(Lateness::YellowBackground));
            break;
        case Lateness::Colour::None:
            break;
        }
    }
}

} // namespace

WorkOrderScreen::WorkOrderScreen(Session& session, QWidget* parent)
    : QDialog(parent), m_session(session), m_lists(session), m_records(session),
      m_recording(session)
{
    setObjectName(FormName);
    setWindowTitle(QStringLiteral("Print Work Order"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(buildFilter());
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("sstabWorkorder"));
    m_tabs->addTab(buildPrintTab(), QStringLiteral("Print Work Order"));
    m_tabs->addTab(buildRecordTab(), QStringLiteral("Complete Work Order"));
    layout->addWidget(m_tabs, 1);
    layout->addWidget(buildButtons());
    resize(9735 / FormPlacement::TwipsPerPixel, 8400 / FormPlacement::TwipsPerPixel);
    FormPlacement::restore(m_session, this);
    for (WorkOrderGrid* grid : grids()) {
        grid->restoreLayout(m_session, FormName);
    }
    m_recordTab->restoreLayouts(FormName);
    showFilter(WorkOrderFilter::load(m_session));
    connect(m_tabs, &QTabWidget::currentChanged, this, &WorkOrderScreen::onTabChanged);
}

void WorkOrderScreen::showPrintWorkorder(Session& session, const QString& unitNo, QWidget* parent)
{
    WorkOrderScreen screen(session, parent);
    screen.openTab(Tab::Print);
    if (!unitNo.isEmpty()) {
        screen.selectDueUnit(unitNo);
    }
    screen.exec();
}

void WorkOrderScreen::showCompleteWorkorder(Session& session, qint64 workOrderNo, QWidget* parent)
{
    WorkOrderScreen screen(session, parent);
    screen.openTab(Tab::Complete);
    if (workOrderNo != 0) {
        screen.selectRecordOrder(workOrderNo);
    }
    screen.exec();
}

QWidget* WorkOrderScreen::buildFilter()
{
    m_filterBox = new QWidget(this);
    auto* grid = new QGridLayout(m_filterBox);
    grid->setContentsMargins(0, 0, 0, 0);
    m_dateFrom = dateEdit(m_filterBox, "datDateFrom");
    m_dateTo = dateEdit(m_filterBox, "datDateTo");
    m_crewRange = crewEdit(m_filterBox, "txtCrewRange");
    m_assignCrew = crewEdit(m_filterBox, "txtAssignCrew");
    m_group = new QCheckBox(QStringLiteral("Group Wo"), m_filterBox);
    m_group->setObjectName(QStringLiteral("chkGroupWo"));
    grid->addWidget(label(m_filterBox, "lblDateFrom", QStringLiteral("From Date")), 0, 0);
    grid->addWidget(m_dateFrom, 0, 1);
    grid->addWidget(label(m_filterBox, "lblDateTo", QStringLiteral("To Date")), 0, 2);
    grid->addWidget(m_dateTo, 0, 3);
    grid->addWidget(m_group, 0, 4);
    grid->addWidget(label(m_filterBox, "lblCrewRange", QStringLiteral("Service Crew")), 1, 0);
    grid->addWidget(m_crewRange, 1, 1);
    grid->addWidget(label(m_filterBox, "lblAssignCrew", QStringLiteral("Assign Crew")), 1, 2);
    grid->addWidget(m_assignCrew, 1, 3);
    QPushButton* refresh = button("cmdRefreshWo", QStringLiteral("&Refresh"));
    grid->addWidget(refresh, 1, 4);
    connect(m_dateFrom, &QDateEdit::dateChanged, this, &WorkOrderScreen::onDateFromChanged);
    connect(m_dateTo, &QDateEdit::dateChanged, this, &WorkOrderScreen::onDateToChanged);
    connect(refresh, &QPushButton::clicked, this, &WorkOrderScreen::refreshCurrentTab);
    return m_filterBox;
}

QWidget* WorkOrderScreen::buildPrintTab()
{
    auto* page = new QWidget(this);
    page->setObjectName(QStringLiteral("tabPrint"));
    auto* layout = new QVBoxLayout(page);
    m_printWo = new WorkOrderGrid("grdPrintWO", PrintWoColumns, page);
    layout->addWidget(m_printWo, 1);
    auto* row = new QHBoxLayout;
    for (auto [name, caption, action] :
         {std::tuple{"cmdPrintSelect", SelectAll, &WorkOrderScreen::pickAll},
          std::tuple{"cmdPrintUnSelect", QStringLiteral("Select UnPrinted"),
                     &WorkOrderScreen::pickUnprinted},
          std::tuple{"cmdGenrateWo", QStringLiteral("Genrate WO"),
                     &WorkOrderScreen::generateChecked}}) {
        QPushButton* b = button(name, caption);
        connect(b, &QPushButton::clicked, this, action);
        row->addWidget(b);
    }
    row->addStretch();
    layout->addLayout(row);
    layout->addWidget(buildGenFrame(), 1);
    layout->addWidget(buildPrintFrame(), 1);
    connect(m_printWo, &QTableWidget::currentCellChanged, this, &WorkOrderScreen::onPrintRowChosen);
    connect(m_printWo, &QTableWidget::cellDoubleClicked, this,
            [this](int r) { m_printWo->setPicked(r, !m_printWo->isPicked(r)); });
    return page;
}

QGroupBox* WorkOrderScreen::buildGenFrame()
{
    m_genFrame = new QGroupBox(this);
    m_genFrame->setObjectName(QStringLiteral("fraGen"));
    auto* layout = new QGridLayout(m_genFrame);
    m_genService = new WorkOrderGrid("grdGenService", GenServiceColumns, m_genFrame);
    m_genPart = new WorkOrderGrid("grdGenPart", partColumns(false), m_genFrame);
    m_genNote = noteEdit(m_genFrame, "txtGenServiceNote");
    m_genNote->installEventFilter(this);
    layout->addWidget(m_genService, 0, 0);
    layout->addWidget(m_genPart, 0, 1);
    layout->addWidget(m_genNote, 1, 0, 1, 2);
    auto* buttons = new QHBoxLayout;
    for (auto [name, caption] :
         {std::pair{"cmdGenAddService", "Add Service"},
          std::pair{"cmdGenRemoveService", "Remove Service"},
          std::pair{"cmdGenAddPart", "Add Part"}, std::pair{"cmdGenRemovePart", "Remove Part"}}) {
        QPushButton* b = button(name, QString::fromLatin1(caption));
        connect(b, &QPushButton::clicked, this, &WorkOrderScreen::generateForCurrentRow);
        buttons->addWidget(b);
    }
    layout->addLayout(buttons, 2, 0, 1, 2);
    connect(m_genService, &QTableWidget::currentCellChanged, this,
            &WorkOrderScreen::refreshGenPartGrid);
    m_genFrame->hide();
    return m_genFrame;
}

QGroupBox* WorkOrderScreen::buildPrintFrame()
{
    m_printFrame = new QGroupBox(this);
    m_printFrame->setObjectName(QStringLiteral("fraPrint"));
    auto* layout = new QGridLayout(m_printFrame);
    m_printService = new WorkOrderGrid("grdPrintService", PrintServiceColumns, m_printFrame);
    m_printPart = new WorkOrderGrid("grdPrintPart", partColumns(true), m_printFrame);
    m_printNote = noteEdit(m_printFrame, "txtPrintNote");
    m_printNote->installEventFilter(this);
    layout->addWidget(m_printService, 0, 0);
    layout->addWidget(m_printPart, 0, 1);
    layout->addWidget(m_printNote, 1, 0, 1, 2);
    auto* buttons = new QHBoxLayout;
    for (auto [name, caption, action] :
         {std::tuple{"cmdPrintAddService", "Add Service", &WorkOrderScreen::addPrintService},
          std::tuple{"cmdPrintRemoveService", "Remove Service",
                     &WorkOrderScreen::removePrintService},
          std::tuple{"cmdPrintAddPart", "Add Part", &WorkOrderScreen::addPrintPart},
          std::tuple{"cmdPrintRemovePart", "Remove Part", &WorkOrderScreen::removePrintPart}}) {
        QPushButton* b = button(name, QString::fromLatin1(caption));
        connect(b, &QPushButton::clicked, this, action);
        buttons->addWidget(b);
    }
    layout->addLayout(buttons, 2, 0, 1, 2);
    connect(m_printService, &QTableWidget::currentCellChanged, this,
            &WorkOrderScreen::refreshPrintPartGrid);
    connect(m_printPart, &WorkOrderGrid::edited, this, &WorkOrderScreen::onPriceEdited);
    m_printFrame->hide();
    return m_printFrame;
}

QWidget* WorkOrderScreen::buildButtons()
{
    auto* bar = new QWidget(this);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    connect(button("cmdUnschedule", QStringLiteral("&UnScheduled")), &QPushButton::clicked, this,
            &WorkOrderScreen::addUnscheduled);
    connect(button("cmdDelete", QStringLiteral("&Delete")), &QPushButton::clicked, this,
            &WorkOrderScreen::deleteWorkOrder);
    // Printing waits for the work order reports.
    button("cmdPrint", QStringLiteral("&Print"))->setEnabled(false);
    for (const char* name : {"cmdUnschedule", "cmdDelete", "cmdPrint"}) {
        row->addWidget(findChild<QPushButton*>(QString::fromLatin1(name)));
    }
    row->addStretch();
    return bar;
}

QWidget* WorkOrderScreen::buildRecordTab()
{
    m_recordTab = new WorkOrderRecordTab(m_session, this);
    m_recordTab->setObjectName(QStringLiteral("tabComplete"));
    return m_recordTab;
}

QPushButton* WorkOrderScreen::button(const char* name, const QString& caption)
{
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

QList<WorkOrderGrid*> WorkOrderScreen::grids() const
{
    return {m_printWo, m_genService, m_genPart, m_printService, m_printPart};
}

void WorkOrderScreen::done(int result)
{
    // A note being typed is kept as if the user had left the box.
    storeDueNote();
    storePrintNote();
    filter().save(m_session);
    for (WorkOrderGrid* grid : grids()) {
        grid->storeLayout(m_session, FormName);
    }
    m_recordTab->storeLayouts(FormName);
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

bool WorkOrderScreen::eventFilter(QObject* watched, QEvent* event)
{
    // Focus that leaves the window (for a message box, say) has not left the box.
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
        if (watched == m_genNote) {
            storeDueNote();
        } else if (watched == m_printNote && !storePrintNote()) {
            // A refused note keeps the user in the box with what was typed.
            m_printNote->setFocus();
        }
    }
    return QDialog::eventFilter(watched, event);
}

// The filter

WorkOrderFilter WorkOrderScreen::filter() const
{
    return {m_dateFrom->date(), m_dateTo->date(), m_crewRange->text(), m_assignCrew->text(),
            m_group->isChecked()};
}

void WorkOrderScreen::showFilter(const WorkOrderFilter& filter)
{
    const QSignalBlocker quietFrom(m_dateFrom);
    const QSignalBlocker quietTo(m_dateTo);
    m_dateFrom->setDate(filter.from);
    m_dateTo->setDate(filter.to);
    m_crewRange->setText(filter.crewRange);
    m_assignCrew->setText(filter.assignCrew);
    m_group->setChecked(filter.group);
}

void WorkOrderScreen::onDateFromChanged()
{
    if (m_dateFrom->date() > m_dateTo->date()) {
        const QSignalBlocker quiet(m_dateTo);
        m_dateTo->setDate(m_dateFrom->date());
    }
}

void WorkOrderScreen::onDateToChanged()
{
    if (m_dateTo->date() < m_dateFrom->date()) {
        m_session.prompter().message(EndBeforeStart, Prompter::Buttons::Ok,
                                     Prompter::Icon::Exclamation);
        const QSignalBlocker quiet(m_dateTo);
        m_dateTo->setDate(m_dateFrom->date());
    }
}

void WorkOrderScreen::openTab(Tab tab)
{
    if (m_tabs->currentIndex() == int(tab)) {
        onTabChanged(int(tab));
    } else {
        m_tabs->setCurrentIndex(int(tab));
    }
}

void WorkOrderScreen::onTabChanged(int index)
{
    const bool printing = index == int(Tab::Print);
    setWindowTitle(m_tabs->tabText(index));
    m_filterBox->setVisible(printing);
    findChild<QPushButton*>(QStringLiteral("cmdPrint"))->setVisible(printing);
    refreshCurrentTab();
    enableControls();
}

void WorkOrderScreen::refreshCurrentTab()
{
    if (m_tabs->currentIndex() == int(Tab::Print)) {
        refreshPrintWo();
    } else {
        refreshRecordTab();
    }
}

// The list of tab 0 and its details

void WorkOrderScreen::refreshPrintWo()
{
    m_printWo->setRows(m_lists.printList(filter()));
    for (int r = 0; r < m_printWo->rowCount(); ++r) {
        if (m_printWo->value(r, QStringLiteral("WorkOrderNo")).isNull()) {
            m_printWo->paintRow(r, DueRow);
        }
    }
    findChild<QPushButton*>(QStringLiteral("cmdPrintSelect"))->setText(SelectAll);
    onPrintRowChosen();
}

void WorkOrderScreen::onPrintRowChosen()
{
    const bool any = m_printWo->currentRow() >= 0;
    const bool due = any && currentWorkOrderNo() == 0;
    if (due) {
        refreshGenServiceGrid(currentEquipmentId());
    } else if (any) {
        refreshPrintServiceGrid(currentWorkOrderNo());
    } else {
        m_genFrame->hide();
        m_printFrame->hide();
        for (WorkOrderGrid* grid : grids().mid(1)) {
            grid->setRows({});
        }
    }
    enableControls();
}

void WorkOrderScreen::refreshGenServiceGrid(qint64 equipmentId)
{
    m_genService->setRows(m_lists.dueServices(equipmentId, filter()));
    paintLateness(m_session, m_genService);
    m_printFrame->hide();
    m_genFrame->show();
    refreshGenPartGrid();
}

void WorkOrderScreen::refreshGenPartGrid()
{
    const qint64 scheduleId = currentScheduleId();
    m_genPart->setRows(scheduleId ? m_lists.dueServiceParts(scheduleId) : Rows());
    m_genNote->setPlainText(scheduleId ? m_lists.dueServiceNote(scheduleId) : QString());
    m_shownNote = m_genNote->toPlainText();
    enableControls();
}

void WorkOrderScreen::refreshPrintServiceGrid(qint64 workOrderNo)
{
    m_printService->setRows(m_lists.lines(workOrderNo, filter()));
    paintLateness(m_session, m_printService);
    m_genFrame->hide();
    m_printFrame->show();
    refreshPrintPartGrid();
}

void WorkOrderScreen::refreshPrintPartGrid()
{
    const qint64 lineId = currentLineId();
    m_printPart->setRows(lineId ? m_lists.lineParts(lineId) : Rows());
    m_printNote->setPlainText(lineId ? m_lists.lineNote(lineId) : QString());
    m_shownNote = m_printNote->toPlainText();
    enableControls();
}

void WorkOrderScreen::enableControls()
{
    const bool any = m_printWo->currentRow() >= 0;
    const bool order = any && currentWorkOrderNo() != 0;
    const bool service = currentScheduleId() != 0;
    const bool line = currentLineId() != 0;
    const QList<std::pair<const char*, bool>> states = {
        {"cmdPrintSelect", m_printWo->rowCount() > 0},
        {"cmdPrintUnSelect", m_printWo->rowCount() > 0},
        // It deletes the print list's order, which tab 1 does not show.
        {"cmdDelete", order && m_tabs->currentIndex() == int(Tab::Print)},
        {"cmdGenAddService", any && !order},
        {"cmdGenRemoveService", service},
        {"cmdGenAddPart", service},
        {"cmdGenRemovePart", service && m_genPart->currentRow() >= 0},
        {"cmdPrintAddService", order},
        {"cmdPrintRemoveService", line},
        {"cmdPrintAddPart", line},
        {"cmdPrintRemovePart", line && m_printPart->currentRow() >= 0},
    };
    for (const auto& [name, on] : states) {
        findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(on);
    }
}

bool WorkOrderScreen::selectDueUnit(const QString& unitNo)
{
    for (int r = 0; r < m_printWo->rowCount(); ++r) {
        if (m_printWo->value(r, QStringLiteral("WorkOrderNo")).isNull() &&
            m_printWo->value(r, QStringLiteral("UnitNo"))
                    .toString()
                    .compare(unitNo, Qt::CaseInsensitive) == 0) {
            m_printWo->setCurrentCell(r, 2);
            return true;
        }
    }
    return false;
}

bool WorkOrderScreen::selectPrintOrder(qint64 workOrderNo)
{
    for (int r = 0; r < m_printWo->rowCount(); ++r) {
        if (m_printWo->value(r, QStringLiteral("WorkOrderNo")).toLongLong() == workOrderNo) {
            m_printWo->setCurrentCell(r, 2);
            return true;
        }
    }
    return false;
}

// Making and removing work orders

void WorkOrderScreen::generateChecked()
{
    QList<qint64> due;
    bool anyPicked = false;
    for (int r = 0; r < m_printWo->rowCount(); ++r) {
        if (!m_printWo->isPicked(r)) {
            continue;
        }
        anyPicked = true;
        if (m_printWo->value(r, QStringLiteral("WorkOrderNo")).isNull()) {
            due.append(m_printWo->value(r, QStringLiteral("EquipmentID")).toLongLong());
        }
    }
    if (!anyPicked) {
        m_session.prompter().inform(SelectOne);
        return;
    }
    if (generate(due)) {
        m_session.prompter().inform(Generated);
        refreshPrintWo();
    }
}

void WorkOrderScreen::generateForCurrentRow()
{
    if (!m_session.prompter().askYesNo(GenerateFirst)) {
        return;
    }
    if (generate({currentEquipmentId()})) {
        m_session.prompter().inform(Generated);
        refreshPrintWo();
    }
}

bool WorkOrderScreen::generate(const QList<qint64>& equipmentIds)
{
    QProgressDialog progress(QStringLiteral("Generating work orders..."), QString(), 0,
                             int(equipmentIds.size()), this);
    progress.setWindowModality(Qt::WindowModal);
    WorkOrderGeneration generation(m_session);
    generation.setProgress([&progress](int done, int total) {
        progress.setMaximum(total);
        progress.setValue(done);
    });
    QList<qint64> numbers;
    return generation.generate(equipmentIds, filter(), &numbers);
}

void WorkOrderScreen::deleteWorkOrder()
{
    const qint64 workOrderNo = currentWorkOrderNo();
    if (workOrderNo == 0 || !m_session.prompter().askYesNo(MessageTexts::DeleteQuestion)) {
        return;
    }
    m_records.deleteWorkOrder(workOrderNo);
    refreshPrintWo();
}

void WorkOrderScreen::addUnscheduled()
{
    QStringList exclude;
    const bool printing = m_tabs->currentIndex() == int(Tab::Print);
    for (int r = 0; printing && r < m_printWo->rowCount(); ++r) {
        exclude.append(m_printWo->value(r, QStringLiteral("EquipmentID")).toString());
    }
    for (qint64 id : printing ? QList<qint64>() : m_recordTab->equipmentIds()) {
        exclude.append(QString::number(id));
    }
    const QString chosen = QuickFindScreen::showQuickFind(
        m_session, QStringLiteral("tblEquipment"), QStringLiteral("UnitNo"),
        QStringLiteral("Unit No"), QStringLiteral("frmEquipment"), exclude, this);
    QList<qint64> ids;
    for (const QString& id : chosen.split(u',', Qt::SkipEmptyParts)) {
        ids.append(id.toLongLong());
    }
    QList<qint64> numbers;
    if (ids.isEmpty() || !m_records.addUnscheduled(ids, &numbers)) {
        return;
    }
    m_session.prompter().inform(Generated);
    refreshCurrentTab();
}

void WorkOrderScreen::pickAll()
{
    auto* select = findChild<QPushButton*>(QStringLiteral("cmdPrintSelect"));
    const bool pick = select->text() == SelectAll;
    for (int r = 0; r < m_printWo->rowCount(); ++r) {
        m_printWo->setPicked(r, pick);
    }
    select->setText(pick ? UnselectAll : SelectAll);
}

void WorkOrderScreen::pickUnprinted()
{
    for (int r = 0; r < m_printWo->rowCount(); ++r) {
        m_printWo->setPicked(r, !SqlValue::toYesNo(m_printWo->value(r, QStringLiteral("Printed"))));
    }
}

// Changing a generated work order

void WorkOrderScreen::addPrintService()
{
    const qint64 workOrderNo = currentWorkOrderNo();
    QList<qint64> shown;
    for (int r = 0; r < m_printService->rowCount(); ++r) {
        shown.append(m_printService->value(r, QStringLiteral("ServiceID")).toLongLong());
    }
    const std::optional<ServicePick> pick = ServicesManagerScreen::pickServices(
        m_session, shown, currentEquipmentId(), this, ServicesManagerScreen::Machines::This);
    if (!pick || pick->ids.isEmpty() ||
        !m_records.addServices(workOrderNo, currentEquipmentId(), *pick, false)) {
        return;
    }
    // A new line is due today: the list must reach today to show it.
    if (m_dateTo->date() < m_session.today()) {
        m_dateTo->setDate(m_session.today());
        refreshPrintWo();
        selectPrintOrder(workOrderNo);
    } else {
        refreshPrintServiceGrid(workOrderNo);
    }
}

void WorkOrderScreen::removePrintService()
{
    if (!m_session.prompter().askYesNo(MessageTexts::DeleteQuestion)) {
        return;
    }
    if (!m_records.deleteLine(currentLineId())) {
        m_session.prompter().inform(MessageTexts::DeletionNotAllowed);
    }
    refreshPrintServiceGrid(currentWorkOrderNo());
}

void WorkOrderScreen::addPrintPart()
{
    QStringList quoted;
    for (int r = 0; r < m_printPart->rowCount(); ++r) {
        quoted.append(u'\'' + m_printPart->value(r, QStringLiteral("PartNumber")).toString() +
                      u'\'');
    }
    QString picked = quoted.join(u',');
    if (PartManagerScreen::showPartManager(m_session, &picked, true, this)) {
        m_records.addParts(currentLineId(), picked, false);
        refreshPrintPartGrid();
    }
}

void WorkOrderScreen::removePrintPart()
{
    if (!m_session.prompter().askYesNo(MessageTexts::DeleteQuestion)) {
        return;
    }
    if (!m_records.deletePart(currentLineId(), currentPartId())) {
        m_session.prompter().inform(MessageTexts::DeletionNotAllowed);
    }
    refreshPrintPartGrid();
}

void WorkOrderScreen::onPriceEdited(int row, const QString&, const QString& text)
{
    bool ok = false;
    const double price = QLocale::c().toDouble(text.trimmed(), &ok);
    if (ok) {
        m_recording.setPartPrice(currentLineId(),
                                 m_printPart->value(row, QStringLiteral("PartNumber")).toString(),
                                 price);
    }
    // The stored price, or the old one after a refusal.
    m_printPart->setRows(m_lists.lineParts(currentLineId()));
}

void WorkOrderScreen::storeDueNote()
{
    const qint64 scheduleId = currentScheduleId();
    if (scheduleId != 0 && m_genNote->toPlainText() != m_shownNote &&
        m_lists.setDueServiceNote(scheduleId, m_genNote->toPlainText())) {
        m_shownNote = m_genNote->toPlainText();
    }
}

bool WorkOrderScreen::storePrintNote()
{
    const qint64 lineId = currentLineId();
    if (lineId == 0 || m_printNote->toPlainText() == m_shownNote) {
        return true;
    }
    const WorkOrderRecording::Edit edit = m_recording.setNote(lineId, m_printNote->toPlainText());
    if (edit == WorkOrderRecording::Edit::Refused) {
        return false;
    }
    if (edit == WorkOrderRecording::Edit::Failed) {
        m_printNote->setPlainText(m_shownNote);
    }
    m_shownNote = m_printNote->toPlainText();
    return true;
}

qint64 WorkOrderScreen::currentEquipmentId() const
{
    return m_printWo->currentValue(QStringLiteral("EquipmentID")).toLongLong();
}

qint64 WorkOrderScreen::currentWorkOrderNo() const
{
    return m_printWo->currentValue(QStringLiteral("WorkOrderNo")).toLongLong();
}

qint64 WorkOrderScreen::currentScheduleId() const
{
    return m_genFrame->isHidden()
               ? 0
               : m_genService->currentValue(QStringLiteral("ServiceUsedID")).toLongLong();
}

qint64 WorkOrderScreen::currentLineId() const
{
    return m_printFrame->isHidden()
               ? 0
               : m_printService->currentValue(QStringLiteral("NserviceUsedID")).toLongLong();
}

QString WorkOrderScreen::currentPartId() const
{
    return m_printPart->currentValue(QStringLiteral("PartNumber")).toString();
}

// Tab 1

void WorkOrderScreen::refreshRecordTab()
{
    m_recordTab->refreshRecordWorkorder();
}

void WorkOrderScreen::selectRecordOrder(qint64 workOrderNo)
{
    m_recordTab->findAndSelect(workOrderNo);
}
