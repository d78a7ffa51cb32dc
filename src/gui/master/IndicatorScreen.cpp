#include "IndicatorScreen.h"

#include "FormPlacement.h"
#include "LookupCombo.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "Session.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <utility>

namespace {

const QString ItemIdField = QStringLiteral("ItemID");
const QString NameField = QStringLiteral("ItemName");

template <class T> T* named(QWidget* parent, const char* name)
{
    auto* widget = new T(parent);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

} // namespace

const QString IndicatorScreen::MissingItemMessage =
    QStringLiteral("One of lookup item has been deleted\nmanually from  database");

IndicatorScreen::IndicatorScreen(Session& session, qint64 list, qint64 parentItemId,
                                 bool engineMake, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmIndicator"), QStringLiteral("tblIndicator"),
                   ItemIdField, parent),
      m_manager(session), m_parentItemId(parentItemId), m_engineMake(engineMake)
{
    setWindowTitle(QStringLiteral("Lookup Lists"));
    m_lists = named<QListWidget>(this, "lstIndicatorP");
    m_parentLabel = named<QLabel>(this, "lblParentType");
    m_parents = named<QComboBox>(this, "cboParentType");
    m_parentLabel->setBuddy(m_parents);
    m_name = named<QLineEdit>(this, "txtName");
    auto* grid = named<RecordGrid>(this, "lstIndicator");
    grid->setFields({{ItemIdField, ItemIdField}, {NameField, QStringLiteral("Name")}}, ItemIdField);
    grid->horizontalHeader()->hide();
    buildLayout(grid);
    bindField(m_name, NameField, &m_item.itemName);

    fillLists(list);
    connect(m_lists, &QListWidget::currentRowChanged, this, &IndicatorScreen::chooseList);
    connect(m_parents, &QComboBox::currentIndexChanged, this, &IndicatorScreen::onParentChanged);
    resize(9090 / FormPlacement::TwipsPerPixel, 3720 / FormPlacement::TwipsPerPixel);
}

void IndicatorScreen::buildLayout(RecordGrid* grid)
{
    Controls controls = standardButtons(grid, Navigation::Without);
    // Quick find and help have no place on this small screen.
    delete std::exchange(controls.quickFind, nullptr);
    delete std::exchange(controls.help, nullptr);

    auto* parentRow = new QHBoxLayout;
    parentRow->addWidget(m_parentLabel);
    parentRow->addWidget(m_parents, 1);
    auto* nameRow = new QFormLayout;
    nameRow->addRow(QStringLiteral("&Name"), m_name);
    auto* items = new QVBoxLayout;
    items->addLayout(parentRow);
    items->addWidget(grid, 1);
    items->addLayout(nameRow);
    auto* lists = new QHBoxLayout;
    lists->addWidget(m_lists, 2);
    lists->addLayout(items, 3);

    auto* actions = new QHBoxLayout;
    actions->addWidget(controls.add);
    actions->addWidget(controls.remove);
    actions->addStretch();
    actions->addWidget(controls.saveFrame);
    actions->addWidget(controls.exit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(lists, 1);
    layout->addLayout(actions);
    setControls(controls);
}

QVariant IndicatorScreen::showIndicatorDetail(Session& session, int listNumber,
                                              const QVariant& selectedItemId,
                                              const QVariant& parentItemId, bool engineMake,
                                              QWidget* parent)
{
    IndicatorScreen screen(session, listNumber, parentItemId.toLongLong(), engineMake, parent);
    if (listNumber != IndicatorList::Model) {
        screen.chooseParent(parentItemId.toLongLong());
    }
    screen.selectItem(selectedItemId);
    screen.run();
    return screen.chosenId();
}

void IndicatorScreen::fillLists(qint64 list)
{
    for (const QSqlRecord& row : m_manager.lists(list)) {
        auto* entry = new QListWidgetItem(row.value(NameField).toString(), m_lists);
        entry->setData(Qt::UserRole, row.value(ItemIdField));
    }
    const QSignalBlocker quiet(m_lists);
    m_lists->setCurrentRow(0);
    chooseList();
}

void IndicatorScreen::chooseList()
{
    const qint64 list = currentList();
    const QString caption = IndicatorList::parentCaption(list);
    m_parentLabel->setText(caption);
    m_parentLabel->setVisible(!caption.isEmpty());
    m_parents->setVisible(!caption.isEmpty());
    {
        const QSignalBlocker quiet(m_parents);
        LookupCombo::loadItemWithId(m_parents,
                                    m_manager.parentChoices(list, m_parentItemId, m_engineMake),
                                    ItemIdField, NameField, true);
    }
    if (isVisible()) {
        refreshRecordSet(QVariant());
    }
}

void IndicatorScreen::chooseParent(qint64 parentItemId)
{
    if (IndicatorList::isDependent(currentList()) && parentItemId > 0) {
        LookupCombo::selectId(m_parents, parentItemId);
    }
}

void IndicatorScreen::onParentChanged()
{
    // While adding, the parent chosen is where the new item will go.
    if (isVisible() && !isEditing()) {
        refreshRecordSet(QVariant());
    }
}

void IndicatorScreen::selectItem(const QVariant& itemId)
{
    if (itemId.toLongLong() <= 0) {
        return;
    }
    const std::optional<Indicator> item = m_manager.item(itemId.toLongLong());
    if (!item) {
        session().prompter().inform(MissingItemMessage);
        return;
    }
    chooseParent(item->parentId);
    setPendingId(itemId);
}

qint64 IndicatorScreen::currentList() const
{
    const QListWidgetItem* entry = m_lists->currentItem();
    return entry ? entry->data(Qt::UserRole).toLongLong() : 0;
}

qint64 IndicatorScreen::parentOfItems() const
{
    const qint64 list = currentList();
    return IndicatorList::isDependent(list) ? LookupCombo::currentId(m_parents) : list;
}

Rows IndicatorScreen::loadRecords()
{
    m_shownParent = LookupCombo::currentId(m_parents);
    const qint64 parent = parentOfItems();
    return m_manager.items(parent > 0 ? parent : IndicatorList::NoParent);
}

bool IndicatorScreen::validateFields()
{
    const QString oldName =
        mode() == Mode::Modify ? currentRecord().value(NameField).toString() : QString();
    const Indicator candidate{parentOfItems(), 0, m_name->text()};
    const auto problem = m_manager.validate(candidate, currentList(), oldName);
    if (!problem) {
        return true;
    }
    session().prompter().inform(problem->message);
    (problem->field == IndicatorProblem::Field::Parent ? static_cast<QWidget*>(m_parents) : m_name)
        ->setFocus();
    return false;
}

bool IndicatorScreen::saveRecord(QVariant* id)
{
    const bool adding = mode() == Mode::Add;
    m_item.itemId = adding ? 0 : currentId().toLongLong();
    m_item.parentId = parentOfItems();
    m_item.show = true;
    m_item.fSize = 0;
    if (!m_manager.saveRecord(m_item, adding)) {
        return false;
    }
    *id = m_item.itemId;
    return true;
}

QString IndicatorScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteIndicator(id.toLongLong());
}

bool IndicatorScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toLongLong());
}

void IndicatorScreen::enableControls()
{
    m_lists->setEnabled(!isEditing());
    // An item keeps its parent; a new one may still be given one.
    m_parents->setEnabled(mode() != Mode::Modify);
    if (!isEditing() && LookupCombo::currentId(m_parents) != m_shownParent) {
        // A revert of an add puts back the parent whose items are shown.
        const QSignalBlocker quiet(m_parents);
        LookupCombo::selectId(m_parents, m_shownParent);
    }
}
