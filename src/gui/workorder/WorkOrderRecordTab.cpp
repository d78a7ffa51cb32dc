#include "WorkOrderRecordTab.h"

#include "DataHelpers.h"
#include "DateBox.h"
#include "Lateness.h"
#include "MessageTexts.h"
#include "PartManager.h"
#include "PartManagerScreen.h"
#include "Prompter.h"
#include "ServiceDateConfirmationScreen.h"
#include "ServiceTimeScreen.h"
#include "ServicesManagerScreen.h"
#include "Session.h"
#include "WorkOrderGrid.h"
#include "WorkOrderPosting.h"
#include "WorkOrderRecords.h"

#include <QComboBox>
#include <QDoubleValidator>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSqlRecord>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

using Edit = WorkOrderRecording::Edit;
using Choices = WorkOrderRecordTab::Choices;

enum OrderColumn {
    Complete,
    CompletedDate,
    WorkOrderNo,
    UnitNo,
    EquipmentName,
    EquipmentType,
    Printed,
    EquipmentId,
    WoDate
};
enum LineColumn {
    Completed,
    Skip,
    ServiceNo,
    ServiceName,
    ServiceCrew,
    NextServiceDate,
    Period,
    ScheduleType,
    Count,
    StartTime,
    EndTime,
    Workhrs,
    LbrCost,
    ServiceId,
    LineId,
    LineSupplier
};
enum PartColumn { PartNumber, Used, Description, QtyReq, QtyUsed, Price, PartSupplier };

const QStringList OrderCaptions = {
    QStringLiteral("Complete"), QStringLiteral("CompletedDate"),  QStringLiteral("WorkOrderNo"),
    QStringLiteral("Unit No"),  QStringLiteral("Equipment Name"), QStringLiteral("Equipment Type"),
    QStringLiteral("Printed"),  QStringLiteral("EquipmentId"),    QStringLiteral("Work Order Date"),
};
const QStringList LineCaptions = {
    QStringLiteral("Completed"),      QStringLiteral("Skip"),
    QStringLiteral("Service No"),     QStringLiteral("Service Name"),
    QStringLiteral("Service Crew"),   QStringLiteral("Next Service Date"),
    QStringLiteral("Period"),         QStringLiteral("Schedule Type"),
    QStringLiteral("Count"),          QStringLiteral("StartTime"),
    QStringLiteral("EndTime"),        QStringLiteral("Workhrs"),
    QStringLiteral("Lbr Cost"),       QStringLiteral("ServiceID"),
    QStringLiteral("NServiceUsedID"), QStringLiteral("Supplier"),
};
const QStringList PartCaptions = {
    QStringLiteral("Part Number"), QStringLiteral("Used"),     QStringLiteral("Description"),
    QStringLiteral("Qty Req"),     QStringLiteral("Qty Used"), QStringLiteral("Price"),
    QStringLiteral("Supplier"),
};

const QString TimeFormat = QStringLiteral("hh:mm AP");
/** A meter line's Count cell asks for a reading in this colour. */
const QColor ReadingWanted(127, 184, 127);

/** What editing a cell opens; cells without an editor are read only. */
enum class Editor { None, Date, Crew, Supplier, Whole, Decimal };

Editor orderEditor(int column)
{
    return column == CompletedDate ? Editor::Date : Editor::None;
}

Editor lineEditor(int column)
{
    switch (column) {
    case ServiceCrew:
        return Editor::Crew;
    case LineSupplier:
        return Editor::Supplier;
    case Count:
        return Editor::Whole;
    default:
        return Editor::None;
    }
}

Editor partEditor(int column)
{
    switch (column) {
    case PartSupplier:
        return Editor::Supplier;
    case QtyUsed:
    case Price:
        return Editor::Decimal;
    default:
        return Editor::None;
    }
}

QLineEdit* maskedEditor(QWidget* parent, QValidator* mask)
{
    auto* edit = new QLineEdit(parent);
    mask->setParent(edit);
    edit->setValidator(mask);
    return edit;
}

/** The editors of the three grids; the value edited is the item's Qt::UserRole. */
class CellEditors : public QStyledItemDelegate
{
public:
    CellEditors(Editor (*editorOf)(int), const Choices* crews, const Choices* suppliers,
                QObject* parent)
        : QStyledItemDelegate(parent), m_editorOf(editorOf), m_crews(crews), m_suppliers(suppliers)
    {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override
    {
        switch (m_editorOf(index.column())) {
        case Editor::Date:
            return new DateBox(parent);
        case Editor::Crew:
        case Editor::Supplier: {
            auto* list = new QComboBox(parent);
            list->addItem(QString(), qint64(0));
            const Choices& choices =
                m_editorOf(index.column()) == Editor::Crew ? *m_crews : *m_suppliers;
            for (const auto& [id, text] : choices) {
                list->addItem(text, id);
            }
            return list;
        }
        case Editor::Whole:
            return maskedEditor(parent, new QIntValidator(0, 999999999));
        case Editor::Decimal: {
            auto* mask = new QDoubleValidator(0, 99999.99, 2);
            mask->setNotation(QDoubleValidator::StandardNotation);
            mask->setLocale(QLocale::c());
            return maskedEditor(parent, mask);
        }
        case Editor::None:
            break;
        }
        return nullptr;
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        const QVariant value = index.data(Qt::UserRole);
        if (auto* date = qobject_cast<DateBox*>(editor)) {
            date->setValue(value.toDate());
        } else if (auto* list = qobject_cast<QComboBox*>(editor)) {
            list->setCurrentIndex(std::max(0, list->findData(value.toLongLong())));
        } else if (auto* edit = qobject_cast<QLineEdit*>(editor)) {
            edit->setText(value.toString());
        }
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        QVariant value;
        if (auto* date = qobject_cast<DateBox*>(editor)) {
            value = date->value();
        } else if (auto* list = qobject_cast<QComboBox*>(editor)) {
            value = list->currentData();
        } else if (auto* edit = qobject_cast<QLineEdit*>(editor)) {
            value = edit->text();
        }
        model->setData(index, value, Qt::UserRole);
    }

private:
    Editor (*m_editorOf)(int);
    const Choices* m_crews;
    const Choices* m_suppliers;
};

QString choiceText(const Choices& choices, qint64 id)
{
    for (const auto& [choiceId, text] : choices) {
        if (choiceId == id) {
            return text;
        }
    }
    return QString();
}

Choices choicesOf(const Rows& rows, const QString& idColumn, const QString& textColumn)
{
    Choices choices;
    for (const QSqlRecord& row : rows) {
        choices.append({row.value(idColumn).toLongLong(), row.value(textColumn).toString()});
    }
    return choices;
}

QString number(double value)
{
    return QString::number(value, 'f', 2);
}

/** The item at row and column, made when missing, so that an edit's own item is never deleted. */
QTableWidgetItem* cell(QTableWidget* grid, int row, int column)
{
    QTableWidgetItem* item = grid->item(row, column);
    if (!item) {
        item = new QTableWidgetItem;
        grid->setItem(row, column, item);
    }
    return item;
}

/** Shows text and keeps value as what the cell's editor edits; editable only with an editor. */
void put(QTableWidget* grid, int row, int column, const QString& text, const QVariant& value,
         Editor editor)
{
    QTableWidgetItem* item = cell(grid, row, column);
    item->setText(text);
    item->setData(Qt::UserRole, value);
    item->setFlags(editor == Editor::None
                       ? Qt::ItemIsEnabled | Qt::ItemIsSelectable
                       : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
}

void putCheck(QTableWidget* grid, int row, int column, bool checked, bool userCheckable)
{
    QTableWidgetItem* item = cell(grid, row, column);
    item->setFlags(userCheckable
                       ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                       : Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

void paintRow(QTableWidget* grid, int row, const QColor& background, const QColor& text)
{
    for (int c = 0; c < grid->columnCount(); ++c) {
        cell(grid, row, c)->setBackground(background.isValid() ? QBrush(background) : QBrush());
        cell(grid, row, c)->setForeground(text.isValid() ? QBrush(text) : QBrush());
    }
}

bool isChecked(const QTableWidgetItem* item)
{
    return item->checkState() == Qt::Checked;
}

/** The part numbers a picker leaves out: quoted, apostrophes doubled, joined by ",". */
QString excludeText(const QList<WorkOrderRecording::Part>& parts)
{
    QStringList quoted;
    for (const WorkOrderRecording::Part& part : parts) {
        quoted.append(u'\'' + QString(part.partId).replace(u'\'', QLatin1String("''")) + u'\'');
    }
    return quoted.join(u',');
}

/** The row of rows that grid has current, or none. */
template <typename Row> const Row* shownAt(const QTableWidget* grid, const QList<Row>& rows)
{
    const int row = grid->currentRow();
    return row >= 0 && row < rows.size() ? &rows[row] : nullptr;
}

/** A grid's columns are known by their captions, the names its rows show them under. */
QStringList captions(const QTableWidget& grid)
{
    QStringList names;
    for (int c = 0; c < grid.columnCount(); ++c) {
        names.append(grid.horizontalHeaderItem(c)->text());
    }
    return names;
}

} // namespace

WorkOrderRecordTab::WorkOrderRecordTab(Session& session, QWidget* parent)
    : QWidget(parent), m_session(session), m_recording(session)
{
    m_crews = choicesOf(DataHelpers::crewInfo(session), QStringLiteral("CrewID"),
                        QStringLiteral("CrewNumber"));
    m_suppliers = choicesOf(PartManager(session).suppliers(), QStringLiteral("SupplierID"),
                            QStringLiteral("Name"));
    build();
    enableButtons();
}

void WorkOrderRecordTab::build()
{
    setObjectName(QStringLiteral("tabComplete"));
    m_orderRows = grid("grdRecordWo", OrderCaptions);
    m_orderRows->setItemDelegate(new CellEditors(orderEditor, &m_crews, &m_suppliers, this));
    m_orderRows->setColumnHidden(EquipmentId, true);
    m_orderRows->installEventFilter(this);
    m_lineRows = grid("grdRecordService", LineCaptions);
    m_lineRows->setItemDelegate(new CellEditors(lineEditor, &m_crews, &m_suppliers, this));
    for (int hidden : {int(Period), int(ServiceId), int(LineId)}) {
        m_lineRows->setColumnHidden(hidden, true);
    }
    m_partRows = grid("grdRecordPart", PartCaptions);
    m_partRows->setItemDelegate(new CellEditors(partEditor, &m_crews, &m_suppliers, this));
    m_note = new QPlainTextEdit(this);
    m_note->setObjectName(QStringLiteral("txtRecordNote"));
    m_note->installEventFilter(this);

    connect(m_orderRows, &QTableWidget::itemChanged, this, &WorkOrderRecordTab::onOrderChanged);
    connect(m_lineRows, &QTableWidget::itemChanged, this, &WorkOrderRecordTab::onLineChanged);
    connect(m_partRows, &QTableWidget::itemChanged, this, &WorkOrderRecordTab::onPartChanged);
    connect(m_orderRows, &QTableWidget::cellDoubleClicked, this,
            &WorkOrderRecordTab::onOrderDoubleClicked);
    connect(m_lineRows, &QTableWidget::cellClicked, this, &WorkOrderRecordTab::onLineClicked);
    connect(m_orderRows, &QTableWidget::currentCellChanged, this,
            &WorkOrderRecordTab::onOrderSelected);
    connect(m_lineRows, &QTableWidget::currentCellChanged, this,
            &WorkOrderRecordTab::onLineSelected);
    connect(m_partRows, &QTableWidget::currentCellChanged, this,
            &WorkOrderRecordTab::enableButtons);

    auto* lineButtons = new QHBoxLayout;
    lineButtons->addWidget(button("cmdSkipAll", QStringLiteral("Skip All")));
    lineButtons->addWidget(button("cmdRecordAddService", QStringLiteral("Add Service")));
    lineButtons->addStretch();
    auto* partButtons = new QVBoxLayout;
    partButtons->addWidget(button("cmdRecordAddPart", QStringLiteral("Add Part")));
    partButtons->addWidget(button("cmdRecordRemovePart", QStringLiteral("Remove Part")));
    partButtons->addStretch();
    auto* lower = new QGridLayout;
    lower->addWidget(m_partRows, 0, 0);
    lower->addLayout(partButtons, 0, 1);
    lower->addWidget(new QLabel(QStringLiteral("Note"), this), 1, 0);
    lower->addWidget(m_note, 2, 0);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_orderRows, 2);
    layout->addWidget(m_lineRows, 2);
    layout->addLayout(lineButtons);
    layout->addLayout(lower, 2);
    layout->addWidget(button("cmdPost", QStringLiteral("&Post")), 0, Qt::AlignRight);

    const std::pair<const char*, void (WorkOrderRecordTab::*)()> actions[] = {
        {"cmdSkipAll", &WorkOrderRecordTab::skipAll},
        {"cmdRecordAddService", &WorkOrderRecordTab::addServices},
        {"cmdRecordAddPart", &WorkOrderRecordTab::addParts},
        {"cmdRecordRemovePart", &WorkOrderRecordTab::removePart},
        {"cmdPost", &WorkOrderRecordTab::post},
    };
    for (const auto& [name, action] : actions) {
        connect(findChild<QPushButton*>(QString::fromLatin1(name)), &QPushButton::clicked, this,
                action);
    }
}

QTableWidget* WorkOrderRecordTab::grid(const char* name, const QStringList& captions)
{
    auto* rows = new QTableWidget(0, int(captions.size()), this);
    rows->setObjectName(QString::fromLatin1(name));
    rows->setHorizontalHeaderLabels(captions);
    rows->setSelectionMode(QAbstractItemView::SingleSelection);
    rows->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                          QAbstractItemView::EditKeyPressed);
    rows->verticalHeader()->hide();
    return rows;
}

QList<QTableWidget*> WorkOrderRecordTab::grids() const
{
    return {m_orderRows, m_lineRows, m_partRows};
}

void WorkOrderRecordTab::restoreLayouts(const QString& formName)
{
    for (QTableWidget* rows : grids()) {
        TableLayout::restore(*rows, captions(*rows), m_session, formName);
    }
}

void WorkOrderRecordTab::storeLayouts(const QString& formName) const
{
    for (QTableWidget* rows : grids()) {
        TableLayout::store(*rows, captions(*rows), m_session, formName);
    }
}

QPushButton* WorkOrderRecordTab::button(const char* name, const QString& caption)
{
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

void WorkOrderRecordTab::refreshRecordWorkorder()
{
    showOrders();
}

bool WorkOrderRecordTab::findAndSelect(qint64 workOrderNo)
{
    for (int r = 0; r < m_orders.size(); ++r) {
        if (m_orders[r].workOrderNo == workOrderNo) {
            selectRow(m_orderRows, r);
            showLines();
            return true;
        }
    }
    return false;
}

QList<qint64> WorkOrderRecordTab::equipmentIds() const
{
    QList<qint64> ids;
    for (const WorkOrderRecording::Order& order : m_orders) {
        ids.append(order.equipmentId);
    }
    return ids;
}

void WorkOrderRecordTab::showOrders()
{
    const qint64 selected = selectedOrder();
    m_orders = m_recording.openOrders();
    const QSignalBlocker quiet(m_orderRows);
    m_orderRows->setRowCount(int(m_orders.size()));
    int current = m_orders.isEmpty() ? -1 : 0;
    for (int r = 0; r < m_orders.size(); ++r) {
        const WorkOrderRecording::Order& order = m_orders[r];
        putCheck(m_orderRows, r, Complete, order.complete, false);
        put(m_orderRows, r, CompletedDate, order.completedDate.toString(DateBox::DisplayFormat),
            order.completedDate, Editor::Date);
        const QString texts[] = {QString::number(order.workOrderNo), order.unitNo,
                                 order.equipmentName, order.equipmentType};
        for (int c = WorkOrderNo; c <= EquipmentType; ++c) {
            put(m_orderRows, r, c, texts[c - WorkOrderNo], {}, Editor::None);
        }
        putCheck(m_orderRows, r, Printed, order.printed, false);
        put(m_orderRows, r, EquipmentId, QString::number(order.equipmentId), {}, Editor::None);
        put(m_orderRows, r, WoDate, order.woDate.toString(DateBox::DisplayFormat), {},
            Editor::None);
        paintRow(m_orderRows, r, order.late ? QColor(Lateness::RedBackground) : QColor(),
                 order.late ? QColor(Qt::white) : QColor());
        if (order.workOrderNo == selected) {
            current = r;
        }
    }
    selectRow(m_orderRows, current);
    showLines();
}

void WorkOrderRecordTab::showLines()
{
    const qint64 selected = selectedLine();
    m_linesOrder = selectedOrder();
    m_lines = m_linesOrder ? m_recording.lines(m_linesOrder) : QList<WorkOrderRecording::Line>();
    const Lateness::Thresholds late = Lateness::thresholds(m_session);
    const QSignalBlocker quiet(m_lineRows);
    m_lineRows->setRowCount(int(m_lines.size()));
    int current = m_lines.isEmpty() ? -1 : 0;
    for (int r = 0; r < m_lines.size(); ++r) {
        const WorkOrderRecording::Line& line = m_lines[r];
        putCheck(m_lineRows, r, Completed, line.completed, true);
        putCheck(m_lineRows, r, Skip, line.skip, true);
        put(m_lineRows, r, ServiceNo, line.jobNo, {}, Editor::None);
        put(m_lineRows, r, ServiceName, line.name, {}, Editor::None);
        put(m_lineRows, r, ServiceCrew, choiceText(m_crews, line.crewId), line.crewId,
            Editor::Crew);
        put(m_lineRows, r, NextServiceDate, line.nextScheduledDate.toString(DateBox::DisplayFormat),
            {}, Editor::None);
        put(m_lineRows, r, Period, line.period, {}, Editor::None);
        put(m_lineRows, r, ScheduleType, line.scheduleType, {}, Editor::None);
        put(m_lineRows, r, Count, line.countValue.toString(), line.countValue.toString(),
            Editor::Whole);
        put(m_lineRows, r, StartTime, line.startTime.toString(TimeFormat), {}, Editor::None);
        put(m_lineRows, r, EndTime, line.endTime.toString(TimeFormat), {}, Editor::None);
        put(m_lineRows, r, Workhrs, line.workHours.toString(TimeFormat), {}, Editor::None);
        put(m_lineRows, r, LbrCost, number(line.costEstimate), {}, Editor::None);
        put(m_lineRows, r, ServiceId, QString::number(line.serviceId), {}, Editor::None);
        put(m_lineRows, r, LineId, QString::number(line.lineId), {}, Editor::None);
        put(m_lineRows, r, LineSupplier, choiceText(m_suppliers, line.supplierId), line.supplierId,
            Editor::Supplier);
        const Lateness::Colour colour =
            Lateness::colour(line.nextScheduledDate, m_session.today(), late);
        paintRow(m_lineRows, r,
                 colour == Lateness::Colour::Red      ? QColor(Lateness::RedBackground)
                 : colour == Lateness::Colour::Yellow ? QColor(Lateness::YellowBackground)
                                                      : QColor(),
                 colour == Lateness::Colour::Red ? QColor(Qt::white) : QColor());
        if (line.wantsReading()) {
            m_lineRows->item(r, Count)->setBackground(ReadingWanted);
        }
        if (line.lineId == selected) {
            current = r;
        }
    }
    selectRow(m_lineRows, current);
    showParts();
    showNote();
}

void WorkOrderRecordTab::showParts()
{
    const QString selected = selectedPart();
    const qint64 lineId = selectedLine();
    m_parts = lineId ? m_recording.parts(lineId) : QList<WorkOrderRecording::Part>();
    const QSignalBlocker quiet(m_partRows);
    m_partRows->setRowCount(int(m_parts.size()));
    int current = m_parts.isEmpty() ? -1 : 0;
    for (int r = 0; r < m_parts.size(); ++r) {
        const WorkOrderRecording::Part& part = m_parts[r];
        put(m_partRows, r, PartNumber, part.partId, {}, Editor::None);
        putCheck(m_partRows, r, Used, part.used, true);
        put(m_partRows, r, Description, part.description, {}, Editor::None);
        put(m_partRows, r, QtyReq, QString::number(part.quantityRequired), {}, Editor::None);
        put(m_partRows, r, QtyUsed, QString::number(part.quantityUsed),
            QString::number(part.quantityUsed), Editor::Decimal);
        put(m_partRows, r, Price, number(part.price), number(part.price), Editor::Decimal);
        put(m_partRows, r, PartSupplier, choiceText(m_suppliers, part.supplierId), part.supplierId,
            Editor::Supplier);
        if (part.partId == selected) {
            current = r;
        }
    }
    selectRow(m_partRows, current);
    enableButtons();
}

void WorkOrderRecordTab::showNote()
{
    m_noteLine = selectedLine();
    const int row = m_lineRows->currentRow();
    m_note->setPlainText(row >= 0 ? m_lines[row].note : QString());
    m_note->document()->setModified(false);
    m_note->setEnabled(m_noteLine != 0);
}

void WorkOrderRecordTab::selectRow(QTableWidget* grid, int row)
{
    const QSignalBlocker quiet(grid);
    grid->setCurrentCell(row, std::max(0, grid->currentColumn()));
}

void WorkOrderRecordTab::enableButtons()
{
    const auto enable = [this](const char* name, bool on) {
        findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(on);
    };
    enable("cmdSkipAll", selectedOrderComplete());
    enable("cmdRecordAddService", selectedOrder() != 0);
    enable("cmdRecordAddPart", selectedLine() != 0);
    enable("cmdRecordRemovePart", !selectedPart().isEmpty());
    enable("cmdPost", !m_orders.isEmpty());
}

bool WorkOrderRecordTab::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_note && event->type() == QEvent::FocusOut && !leaveNote()) {
        QTimer::singleShot(0, m_note, [this] { m_note->setFocus(); });
    }
    if (watched == m_orderRows && event->type() == QEvent::KeyPress) {
        const QString key = static_cast<QKeyEvent*>(event)->text();
        if (key.compare(QLatin1String("t"), Qt::CaseInsensitive) == 0 && selectedOrder() != 0) {
            m_recording.setCompletedDate(selectedOrder(), m_session.today());
            showOrders();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void WorkOrderRecordTab::onOrderChanged(QTableWidgetItem* item)
{
    const qint64 workOrderNo = m_orders[item->row()].workOrderNo;
    if (item->column() == Complete) {
        m_recording.setComplete(workOrderNo, isChecked(item));
    } else if (item->column() == CompletedDate) {
        m_recording.setCompletedDate(workOrderNo, item->data(Qt::UserRole).toDate());
    }
    // What the edit stored and what followed from it, or the old value after a refusal.
    showOrders();
}

void WorkOrderRecordTab::onOrderDoubleClicked(int row, int column)
{
    if (column == Complete) {
        QTableWidgetItem* item = m_orderRows->item(row, column);
        item->setCheckState(isChecked(item) ? Qt::Unchecked : Qt::Checked);
    }
}

void WorkOrderRecordTab::onLineChanged(QTableWidgetItem* item)
{
    editLine(m_lines[item->row()], item);
    // A line's edit may also stamp its order's header: all three grids are read again.
    showOrders();
}

void WorkOrderRecordTab::editLine(const WorkOrderRecording::Line& line,
                                  const QTableWidgetItem* item)
{
    const QVariant value = item->data(Qt::UserRole);
    switch (item->column()) {
    case Completed:
        m_recording.setLineCompleted(line.lineId, isChecked(item));
        break;
    case Skip:
        if (isChecked(item)) {
            skip(line.lineId);
        } else {
            m_recording.unskipLine(line.lineId);
        }
        break;
    case ServiceCrew:
        m_recording.setLineCrew(line.lineId, value.toLongLong());
        break;
    case LineSupplier:
        m_recording.setLineSupplier(line.lineId, value.toLongLong());
        break;
    case Count:
        // A count cannot be taken back to nothing: an emptied cell shows the old count again.
        if (!value.toString().isEmpty()) {
            m_recording.setLineCount(line.lineId, value.toLongLong());
        }
        break;
    default:
        break;
    }
}

void WorkOrderRecordTab::skip(qint64 lineId)
{
    const std::optional<QString> reason = m_recording.askSkipReason(lineId);
    if (reason) {
        m_recording.skipLine(lineId, *reason);
    }
}

void WorkOrderRecordTab::onPartChanged(QTableWidgetItem* item)
{
    editPart(m_parts[item->row()], item);
    showParts();
}

void WorkOrderRecordTab::editPart(const WorkOrderRecording::Part& part,
                                  const QTableWidgetItem* item)
{
    const qint64 lineId = selectedLine();
    const QVariant value = item->data(Qt::UserRole);
    switch (item->column()) {
    case Used:
        m_recording.setPartUsed(lineId, part.partId, isChecked(item));
        break;
    case PartSupplier:
        m_recording.setPartSupplier(lineId, part.partId, value.toLongLong());
        break;
    case QtyUsed:
        m_recording.setPartQuantityUsed(lineId, part.partId, value.toString());
        break;
    case Price:
        m_recording.setPartPrice(lineId, part.partId, value.toDouble());
        break;
    default:
        break;
    }
}

void WorkOrderRecordTab::onLineClicked(int row, int column)
{
    if (column != StartTime && column != EndTime && column != Workhrs) {
        return;
    }
    const WorkOrderRecording::Line& line = m_lines[row];
    ServiceTimeScreen::showServiceTimeForm(m_session, line.lineId,
                                           {ServiceTime::stored(line.startTime),
                                            ServiceTime::stored(line.endTime),
                                            ServiceTime::stored(line.workHours)},
                                           QString(), this);
    showLines();
}

void WorkOrderRecordTab::onOrderSelected()
{
    if (noteHeld()) {
        for (int r = 0; r < m_orders.size(); ++r) {
            if (m_orders[r].workOrderNo == m_linesOrder) {
                selectRow(m_orderRows, r);
            }
        }
        return;
    }
    showLines();
}

void WorkOrderRecordTab::onLineSelected()
{
    if (noteHeld()) {
        for (int r = 0; r < m_lines.size(); ++r) {
            if (m_lines[r].lineId == m_noteLine) {
                selectRow(m_lineRows, r);
            }
        }
        return;
    }
    showParts();
    showNote();
}

bool WorkOrderRecordTab::noteHeld()
{
    // A refused note has been told already on leaving the box; it holds its line until fixed.
    if (!m_note->document()->isModified()) {
        return false;
    }
    m_note->setFocus();
    return true;
}

bool WorkOrderRecordTab::leaveNote()
{
    if (m_noteLine == 0 || !m_note->document()->isModified()) {
        return true;
    }
    const Edit edit = m_recording.setNote(m_noteLine, m_note->toPlainText());
    if (edit == Edit::Refused || edit == Edit::Failed) {
        return false;
    }
    m_note->document()->setModified(false);
    for (WorkOrderRecording::Line& line : m_lines) {
        if (line.lineId == m_noteLine) {
            line.note = m_note->toPlainText();
        }
    }
    return true;
}

void WorkOrderRecordTab::skipAll()
{
    const std::optional<QString> reason = m_recording.askSkipAllReason(m_note->toPlainText());
    if (reason) {
        m_recording.skipAll(selectedOrder(), *reason);
    }
    showLines();
}

void WorkOrderRecordTab::addServices()
{
    QList<qint64> shown;
    for (const WorkOrderRecording::Line& line : m_lines) {
        shown.append(line.serviceId);
    }
    const std::optional<ServicePick> pick = ServicesManagerScreen::pickServices(
        m_session, shown, selectedEquipment(), this, ServicesManagerScreen::Machines::This);
    if (pick && !pick->ids.isEmpty()) {
        WorkOrderRecords(m_session).addServices(selectedOrder(), selectedEquipment(), *pick,
                                                selectedOrderComplete());
    }
    showLines();
}

void WorkOrderRecordTab::addParts()
{
    QString picked = excludeText(m_parts);
    if (PartManagerScreen::showPartManager(m_session, &picked, true, this) && !picked.isEmpty()) {
        WorkOrderRecords(m_session).addParts(selectedLine(), picked, selectedLineCompleted());
    }
    showParts();
}

void WorkOrderRecordTab::removePart()
{
    if (m_session.prompter().askYesNo(MessageTexts::DeleteQuestion)) {
        WorkOrderRecords(m_session).deletePart(selectedLine(), selectedPart());
    }
    showParts();
}

void WorkOrderRecordTab::post()
{
    WorkOrderPosting posting(m_session);
    posting.setDateConfirmation(ServiceDateConfirmationScreen::dateConfirmation(m_session, this));
    QProgressDialog progress(QStringLiteral("Posting Work Orders..."), QString(), 0, 1, this);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(1000);
    posting.setProgress([&progress](int done, int total) {
        progress.setMaximum(total);
        progress.setValue(done);
    });
    posting.postCompleteWorkOrders();
    progress.reset();
    refreshRecordWorkorder();
}

qint64 WorkOrderRecordTab::selectedOrder() const
{
    const auto* order = shownAt(m_orderRows, m_orders);
    return order ? order->workOrderNo : 0;
}

qint64 WorkOrderRecordTab::selectedEquipment() const
{
    const auto* order = shownAt(m_orderRows, m_orders);
    return order ? order->equipmentId : 0;
}

bool WorkOrderRecordTab::selectedOrderComplete() const
{
    const auto* order = shownAt(m_orderRows, m_orders);
    return order && order->complete;
}

qint64 WorkOrderRecordTab::selectedLine() const
{
    const auto* line = shownAt(m_lineRows, m_lines);
    return line ? line->lineId : 0;
}

bool WorkOrderRecordTab::selectedLineCompleted() const
{
    const auto* line = shownAt(m_lineRows, m_lines);
    return line && line->completed;
}

QString WorkOrderRecordTab::selectedPart() const
{
    const auto* part = shownAt(m_partRows, m_parts);
    return part ? part->partId : QString();
}
