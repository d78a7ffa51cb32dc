#include "QuickFindScreen.h"

#include "ColourScheme.h"
#include "GridSettings.h"
#include "MessageTexts.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace {

/** Money with two decimals, and flags as a tick, in the grid's cells. */
class LookDelegate : public QStyledItemDelegate
{
public:
    LookDelegate(QuickFind::Look look, QObject* parent) : QStyledItemDelegate(parent), m_look(look)
    {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QVariant value = index.data();
        if (m_look == QuickFind::Look::Money && !value.isNull()) {
            option->text = QString::number(value.toDouble(), 'f', 2);
            option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
        } else if (m_look == QuickFind::Look::Tick) {
            // Both flag forms: "1" and -1 are set, "0" and 0 are not.
            option->features |= QStyleOptionViewItem::HasCheckIndicator;
            option->checkState = value.toInt() != 0 ? Qt::Checked : Qt::Unchecked;
            option->text.clear();
        }
    }

private:
    QuickFind::Look m_look;
};

QPushButton* button(QWidget* parent, const char* name, const QString& caption)
{
    auto* result = new QPushButton(caption, parent);
    result->setObjectName(QString::fromLatin1(name));
    result->setAutoDefault(false);
    return result;
}

QLineEdit* lineEdit(QWidget* parent, const char* name)
{
    auto* result = new QLineEdit(parent);
    result->setObjectName(QString::fromLatin1(name));
    return result;
}

} // namespace

QuickFindScreen::QuickFindScreen(Session& session, const QString& table, const QString& mainField,
                                 const QString& caption, const QString& formName,
                                 const QStringList& exclude, QWidget* parent)
    : QDialog(parent), m_session(session), m_find(session, table), m_mainField(mainField),
      m_formName(formName), m_exclude(exclude)
{
    setObjectName(QStringLiteral("frmQuickFind"));
    setWindowTitle(QStringLiteral("Quick Find"));
    buildControls(caption);
    resize(760, 480);
}

void QuickFindScreen::buildControls(const QString& caption)
{
    auto* mainLabel = new QLabel(QStringLiteral("Enter ") + caption, this);
    mainLabel->setObjectName(QStringLiteral("lblMainField"));
    m_fieldNames = new QComboBox(this);
    m_fieldNames->setObjectName(QStringLiteral("cboFieldNames"));
    m_manual = new QRadioButton(QStringLiteral("Manual"), this);
    m_manual->setObjectName(QStringLiteral("optOption_0"));
    m_auto = new QRadioButton(QStringLiteral("Auto"), this);
    m_auto->setObjectName(QStringLiteral("optOption_1"));
    m_searchText = lineEdit(this, "txtSearchText");
    m_searchText2 = lineEdit(this, "txtSearchText2");
    m_inactive = new QCheckBox(QStringLiteral("Show Inactive"), this);
    m_inactive->setObjectName(QStringLiteral("chkInactive"));
    m_grid = new RecordGrid(this);
    m_grid->setObjectName(QStringLiteral("grdDisplay"));
    // One line a row, so that a long list shows many rows at once.
    m_grid->setWordWrap(false);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 6);
    auto* select = button(this, "cmdSelect", QStringLiteral("&Select"));
    select->setDefault(true); // Enter on the grid chooses its row
    m_add = button(this, "cmdAdd", QStringLiteral("Add &New"));
    m_add->setEnabled(false);
    auto* exit = button(this, "cmdExit", QStringLiteral("E&xit"));

    m_filters = new QGridLayout;
    m_filters->addWidget(mainLabel, 0, 0);
    m_filters->addWidget(m_searchText, 0, 1);
    m_filters->addWidget(m_manual, 0, 2);
    m_filters->addWidget(m_inactive, 0, 3);
    m_filters->addWidget(m_fieldNames, 1, 0);
    m_filters->addWidget(m_searchText2, 1, 1);
    m_filters->addWidget(m_auto, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(select);
    buttons->addWidget(m_add);
    buttons->addWidget(exit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(m_filters);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);

    connect(m_manual, &QRadioButton::toggled, this, [this](bool on) { setAutoMode(!on); });
    connect(m_fieldNames, &QComboBox::currentIndexChanged, this, &QuickFindScreen::chooseField);
    connect(m_searchText, &QLineEdit::textChanged, this, &QuickFindScreen::search);
    connect(m_searchText2, &QLineEdit::textChanged, m_searchText, &QLineEdit::setText);
    connect(m_inactive, &QCheckBox::clicked, this, [this](bool show) {
        m_find.setShowInactive(show);
        reload();
    });
    connect(m_grid, &QAbstractItemView::doubleClicked, this, &QuickFindScreen::choose);
    connect(select, &QPushButton::clicked, this, &QuickFindScreen::choose);
    connect(m_add, &QPushButton::clicked, this, &QuickFindScreen::addNew);
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);
}

void QuickFindScreen::start(const QStringList& leftOutFields)
{
    m_inactive->setVisible(m_find.hasInactiveChoice());
    m_inactive->setChecked(m_find.showInactive());
    const QuickFind::Loaded loaded = m_find.load(request());
    m_fields = m_find.fields(loaded.columns, leftOutFields);
    showRows(loaded);
    QList<GridSettings::Column> layout = GridSettings::load(m_session, m_formName, m_find.table());
    for (GridSettings::Column& column : layout) {
        column.sortType = GridSettings::SortType::None; // the chosen field decides the order
    }
    m_grid->applyColumnSettings(layout);
    const QSignalBlocker quiet(m_fieldNames);
    for (const QuickFind::Field& field : m_fields) {
        m_fieldNames->addItem(field.caption);
    }
    m_fieldNames->setCurrentIndex(QuickFind::mainFieldIndex(m_fields, m_mainField));
    m_manual->setChecked(true);
    setAutoMode(false);
    chooseField(m_fieldNames->currentIndex());
    ColourScheme::apply(this);
}

QuickFind::Request QuickFindScreen::request() const
{
    return {m_mainField, m_exclude, 0};
}

void QuickFindScreen::showRows(const QuickFind::Loaded& loaded)
{
    QList<RecordTableModel::Field> columns;
    for (const QString& column : loaded.columns) {
        columns.append({column, column});
    }
    m_grid->assignData(loaded.rows, columns, m_find.keyColumn());
    for (int i = 0; i < columns.size(); ++i) {
        const QuickFind::Look look = QuickFind::look(columns[i].name);
        m_grid->setItemDelegateForColumn(
            i, look == QuickFind::Look::Plain ? nullptr : new LookDelegate(look, m_grid));
    }
    // A sort by the user's click changes the order the search walks.
    connect(m_grid->model(), &QAbstractItemModel::layoutChanged, this,
            &QuickFindScreen::prepareSearch);
    prepareSearch();
    if (m_grid->rowCount() > 0) {
        m_grid->setCurrentRow(0);
    }
}

void QuickFindScreen::reload()
{
    const int row = m_grid->currentRow();
    const QVariant key = row >= 0 ? m_grid->record(row).value(m_find.keyColumn()) : QVariant();
    const int sortColumn = m_grid->horizontalHeader()->sortIndicatorSection();
    showRows(m_find.load(request()));
    if (sortColumn >= 0) {
        m_grid->sortByColumn(sortColumn, m_grid->horizontalHeader()->sortIndicatorOrder());
    }
    const int again = m_grid->findKey(key);
    if (again >= 0) {
        m_grid->setCurrentRow(again);
    }
}

void QuickFindScreen::done(int result)
{
    GridSettings::save(m_session, m_formName, m_find.table(), m_grid->columnSettings());
    QDialog::done(result);
}

void QuickFindScreen::chooseField(int index)
{
    if (index < 0 || index >= m_fields.size()) {
        return;
    }
    const QuickFind::Field& field = m_fields[index];
    const QuickFind::InputRule rule = QuickFind::inputRule(field.type);
    for (QLineEdit* edit : {m_searchText, m_searchText2}) {
        const QSignalBlocker quiet(edit);
        edit->clear();
        edit->setMaxLength(rule.maxLength);
        edit->setValidator(new QRegularExpressionValidator(rule.accepted, edit));
    }
    const auto* model = static_cast<const RecordTableModel*>(m_grid->model());
    m_grid->sortByColumn(model->fieldIndex(field.caption), Qt::AscendingOrder);
    prepareSearch();
    if (m_grid->rowCount() > 0) {
        m_grid->setCurrentRow(0);
    }
}

void QuickFindScreen::prepareSearch()
{
    const int index = m_fieldNames->currentIndex();
    if (index < 0 || index >= m_fields.size() || m_grid->rowCount() == 0) {
        m_column = QuickFindColumn();
        return;
    }
    const int at = m_grid->record(0).indexOf(m_fields[index].caption);
    QVariantList values;
    values.reserve(m_grid->rowCount());
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        values.append(m_grid->record(row).value(at));
    }
    m_column = QuickFindColumn(values, m_fields[index].type);
}

void QuickFindScreen::search()
{
    const int row = m_column.find(m_searchText->text());
    if (row >= 0) {
        m_grid->setCurrentRow(row);
    }
}

void QuickFindScreen::setAutoMode(bool on)
{
    m_searchText->setEnabled(!on);
    m_fieldNames->setEnabled(on);
    m_searchText2->setEnabled(on);
}

void QuickFindScreen::choose()
{
    const int row = m_grid->currentRow();
    if (row < 0) {
        return;
    }
    m_chosenKey = m_grid->record(row).value(m_find.keyColumn()).toString();
    accept();
}

void QuickFindScreen::setAddOpener(const AddOpener& opener)
{
    m_addOpener = opener;
    m_add->setEnabled(bool(opener));
}

void QuickFindScreen::addNew()
{
    if (!m_find.mayAdd()) {
        m_session.prompter().inform(MessageTexts::NoActionRights);
        return;
    }
    m_addOpener(this);
    reload();
}

QString QuickFindScreen::showQuickFind(Session& session, const QString& table,
                                       const QString& mainField, const QString& caption,
                                       const QString& formName, const QStringList& exclude,
                                       QWidget* parent, const AddOpener& addOpener)
{
    QuickFindScreen screen(session, table, mainField, caption, formName, exclude, parent);
    screen.setAddOpener(addOpener);
    screen.start();
    screen.exec();
    return screen.chosenKey();
}
