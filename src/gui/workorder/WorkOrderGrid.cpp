#include "WorkOrderGrid.h"

#include "DateBox.h"
#include "GridSettings.h"
#include "SqlValue.h"

#include <QDoubleValidator>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <algorithm>

namespace {

/** Money cells take up to 99999.99, as the office types prices. */
class MoneyEditor : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override
    {
        auto* edit = new QLineEdit(parent);
        auto* mask = new QDoubleValidator(0, 99999.99, 2, edit);
        mask->setNotation(QDoubleValidator::StandardNotation);
        mask->setLocale(QLocale::c());
        edit->setValidator(mask);
        return edit;
    }
};

QString shown(WorkOrderGrid::Kind kind, const QVariant& value)
{
    switch (kind) {
    case WorkOrderGrid::Kind::Date:
        return SqlValue::toDate(value).toString(DateBox::DisplayFormat);
    case WorkOrderGrid::Kind::Money:
        return value.isNull() ? QString() : QString::number(value.toDouble(), 'f', 2);
    case WorkOrderGrid::Kind::Check:
    case WorkOrderGrid::Kind::Pick:
        return QString();
    default:
        return value.toString();
    }
}

} // namespace

WorkOrderGrid::WorkOrderGrid(const char* name, const QList<Column>& columns, QWidget* parent)
    : QTableWidget(0, int(columns.size()), parent), m_columns(columns)
{
    setObjectName(QString::fromLatin1(name));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed);
    horizontalHeader()->setSectionsMovable(true);
    verticalHeader()->hide();
    QStringList captions;
    for (int c = 0; c < m_columns.size(); ++c) {
        captions.append(m_columns[c].caption);
        setColumnHidden(c, m_columns[c].kind == Kind::Hidden);
        if (m_columns[c].kind == Kind::Money && m_columns[c].editable) {
            setItemDelegateForColumn(c, new MoneyEditor(this));
        }
    }
    setHorizontalHeaderLabels(captions);
    connect(this, &QTableWidget::itemChanged, this, &WorkOrderGrid::onItemChanged);
}

void WorkOrderGrid::setRows(const Rows& rows)
{
    const QSignalBlocker quiet(this);
    const int current = currentRow();
    setRowCount(0);
    setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < m_columns.size(); ++c) {
            const Column& column = m_columns[c];
            const int at = rows[r].indexOf(column.field);
            const QVariant value = at < 0 || rows[r].isNull(at) ? QVariant() : rows[r].value(at);
            setItem(r, c, cell(column, value));
        }
    }
    const int firstShown = int(std::distance(
        m_columns.cbegin(), std::find_if(m_columns.cbegin(), m_columns.cend(),
                                         [](const Column& c) { return c.kind != Kind::Hidden; })));
    setCurrentCell(rows.isEmpty() ? -1 : std::clamp(current, 0, int(rows.size()) - 1), firstShown);
}

QTableWidgetItem* WorkOrderGrid::cell(const Column& column, const QVariant& value) const
{
    auto* item = new QTableWidgetItem(shown(column.kind, value));
    item->setData(Qt::UserRole, value);
    Qt::ItemFlags flags = item->flags() & ~Qt::ItemIsEditable & ~Qt::ItemIsUserCheckable;
    if (column.kind == Kind::Check || column.kind == Kind::Pick) {
        item->setCheckState(SqlValue::toYesNo(value) ? Qt::Checked : Qt::Unchecked);
    }
    if (column.kind == Kind::Pick) {
        flags |= Qt::ItemIsUserCheckable;
    } else if (column.editable) {
        flags |= Qt::ItemIsEditable;
    }
    item->setFlags(flags);
    return item;
}

QVariant WorkOrderGrid::value(int row, const QString& field) const
{
    const QTableWidgetItem* it = item(row, columnOf(field));
    return it ? it->data(Qt::UserRole) : QVariant();
}

bool WorkOrderGrid::isPicked(int row) const
{
    for (int c = 0; c < m_columns.size(); ++c) {
        if (m_columns[c].kind == Kind::Pick && item(row, c)) {
            return item(row, c)->checkState() == Qt::Checked;
        }
    }
    return false;
}

void WorkOrderGrid::setPicked(int row, bool picked)
{
    for (int c = 0; c < m_columns.size(); ++c) {
        if (m_columns[c].kind == Kind::Pick && item(row, c)) {
            item(row, c)->setCheckState(picked ? Qt::Checked : Qt::Unchecked);
        }
    }
}

void WorkOrderGrid::paintRow(int row, const QColor& background, const QColor& foreground)
{
    const QSignalBlocker quiet(this);
    for (int c = 0; c < columnCount(); ++c) {
        item(row, c)->setBackground(background);
        if (foreground.isValid()) {
            item(row, c)->setForeground(foreground);
        }
    }
}

void WorkOrderGrid::restoreLayout(Session& session, const QString& formName)
{
    TableLayout::restore(*this, fields(), session, formName);
}

void WorkOrderGrid::storeLayout(Session& session, const QString& formName) const
{
    TableLayout::store(*this, fields(), session, formName);
}

QStringList WorkOrderGrid::fields() const
{
    QStringList names;
    for (const Column& column : m_columns) {
        names.append(column.field);
    }
    return names;
}

void TableLayout::restore(QTableWidget& grid, const QStringList& fields, Session& session,
                          const QString& formName)
{
    for (const GridSettings::Column& stored :
         GridSettings::load(session, formName, grid.objectName())) {
        const auto found =
            std::find_if(fields.cbegin(), fields.cend(), [&stored](const QString& field) {
                return field.compare(stored.fieldName, Qt::CaseInsensitive) == 0;
            });
        const int c = found == fields.cend() ? -1 : int(found - fields.cbegin());
        if (c < 0 || grid.isColumnHidden(c)) {
            continue;
        }
        if (stored.width > 0) {
            grid.setColumnWidth(c, stored.width);
        }
        QHeaderView* header = grid.horizontalHeader();
        header->moveSection(header->visualIndex(c),
                            std::clamp(stored.position, 0, grid.columnCount() - 1));
    }
}

void TableLayout::store(const QTableWidget& grid, const QStringList& fields, Session& session,
                        const QString& formName)
{
    QList<GridSettings::Column> columns;
    for (int c = 0; c < fields.size() && c < grid.columnCount(); ++c) {
        if (!grid.isColumnHidden(c)) {
            columns.append({fields[c], grid.columnWidth(c), grid.horizontalHeader()->visualIndex(c),
                            GridSettings::SortType::None});
        }
    }
    std::sort(columns.begin(), columns.end(),
              [](const auto& a, const auto& b) { return a.position < b.position; });
    GridSettings::save(session, formName, grid.objectName(), columns);
}

int WorkOrderGrid::columnOf(const QString& field) const
{
    for (int c = 0; c < m_columns.size(); ++c) {
        if (m_columns[c].field.compare(field, Qt::CaseInsensitive) == 0) {
            return c;
        }
    }
    return -1;
}

void WorkOrderGrid::onItemChanged(QTableWidgetItem* item)
{
    const Column& column = m_columns.at(item->column());
    if (column.editable) {
        emit edited(item->row(), column.field, item->text());
    }
}
