#include "RecordGrid.h"

#include <QHeaderView>
#include <QSqlRecord>
#include <algorithm>
#include <numeric>

namespace {

bool isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

/** Empty values first, numbers by value, the rest as text without regard to case. */
bool lessThan(const QVariant& a, const QVariant& b)
{
    if (a.isNull() || b.isNull()) {
        return a.isNull() && !b.isNull();
    }
    if (isNumber(a) && isNumber(b)) {
        return a.toDouble() < b.toDouble();
    }
    return a.toString().compare(b.toString(), Qt::CaseInsensitive) < 0;
}

} // namespace

Qt::Alignment colAlign(QMetaType::Type type)
{
    switch (type) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return Qt::AlignRight | Qt::AlignVCenter;
    case QMetaType::QDate:
    case QMetaType::QDateTime:
    case QMetaType::Bool:
        return Qt::AlignCenter;
    default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

RecordTableModel::RecordTableModel(QList<Field> fields, QObject* parent)
    : QAbstractTableModel(parent), m_fields(std::move(fields))
{}

void RecordTableModel::setRows(const Rows& rows)
{
    if (!m_rows.isEmpty()) {
        beginRemoveRows(QModelIndex(), 0, int(m_rows.size()) - 1);
        m_rows.clear();
        m_arrival.clear();
        endRemoveRows();
    }
    if (!rows.isEmpty()) {
        beginInsertRows(QModelIndex(), 0, int(rows.size()) - 1);
        m_rows = rows;
        m_arrival.resize(rows.size());
        std::iota(m_arrival.begin(), m_arrival.end(), 0);
        endInsertRows();
    }
}

int RecordTableModel::findRow(const QString& field, const QVariant& value) const
{
    const int column = fieldIndex(field);
    if (column < 0 || value.isNull()) {
        return -1;
    }
    const QString wanted = value.toString();
    for (int row = 0; row < m_rows.size(); ++row) {
        if (this->value(row, column).toString() == wanted) {
            return row;
        }
    }
    return -1;
}

int RecordTableModel::fieldIndex(const QString& name) const
{
    for (int i = 0; i < m_fields.size(); ++i) {
        if (m_fields[i].name.compare(name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

int RecordTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int RecordTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_fields.size());
}

QVariant RecordTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return QVariant();
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(
            colAlign(QMetaType::Type(value(index.row(), index.column()).typeId())));
    }
    return role == Qt::DisplayRole ? value(index.row(), index.column()) : QVariant();
}

QVariant RecordTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= m_fields.size()) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    return m_fields[section].caption;
}

void RecordTableModel::sort(int column, Qt::SortOrder order)
{
    QList<int> newOrder(m_rows.size());
    std::iota(newOrder.begin(), newOrder.end(), 0);
    if (column >= 0 && column < m_fields.size()) {
        std::stable_sort(newOrder.begin(), newOrder.end(), [&](int a, int b) {
            const QVariant left = value(a, column);
            const QVariant right = value(b, column);
            return order == Qt::AscendingOrder ? lessThan(left, right) : lessThan(right, left);
        });
    } else {
        std::sort(newOrder.begin(), newOrder.end(),
                  [&](int a, int b) { return m_arrival[a] < m_arrival[b]; });
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QList<int> placeOf(m_rows.size());
    Rows rows;
    QList<int> arrival;
    for (int place = 0; place < newOrder.size(); ++place) {
        placeOf[newOrder[place]] = place;
        rows.append(m_rows[newOrder[place]]);
        arrival.append(m_arrival[newOrder[place]]);
    }
    m_rows = rows;
    m_arrival = arrival;
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& index : before) {
        after.append(this->index(placeOf[index.row()], index.column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QVariant RecordTableModel::value(int row, int column) const
{
    return m_rows.at(row).value(m_fields.at(column).name);
}

RecordGrid::RecordGrid(QWidget* parent) : QTableView(parent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    verticalHeader()->hide();
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
}

void RecordGrid::setFields(const QList<RecordTableModel::Field>& fields, const QString& keyField)
{
    RecordTableModel* old = m_model;
    QItemSelectionModel* oldSelection = selectionModel();
    m_model = new RecordTableModel(fields, this);
    m_keyField = keyField;
    setModel(m_model);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            &RecordGrid::onCurrentChanged);
    delete oldSelection;
    delete old;
    const int key = m_model->fieldIndex(keyField);
    if (key >= 0) {
        setColumnHidden(key, true);
    }
    setSortingEnabled(true);
}

void RecordGrid::assignData(const Rows& rows, const QList<RecordTableModel::Field>& fields,
                            const QString& keyField)
{
    setFields(fields, keyField);
    setRows(rows);
}

void RecordGrid::setRows(const Rows& rows)
{
    setUpdatesEnabled(false);
    m_model->setRows(rows);
    m_model->sort(horizontalHeader()->sortIndicatorSection(),
                  horizontalHeader()->sortIndicatorOrder());
    setUpdatesEnabled(true);
}

int RecordGrid::rowCount() const
{
    return m_model ? m_model->rowCount() : 0;
}

const QSqlRecord& RecordGrid::record(int row) const
{
    return m_model->record(row);
}

int RecordGrid::findKey(const QVariant& id) const
{
    return m_model->findRow(m_keyField, id);
}

int RecordGrid::currentRow() const
{
    return currentIndex().isValid() ? currentIndex().row() : -1;
}

void RecordGrid::setCurrentRow(int row)
{
    int column = 0;
    while (column < m_model->columnCount() - 1 && isColumnHidden(column)) {
        ++column;
    }
    m_settingRow = true;
    const QModelIndex index = m_model->index(row, column);
    setCurrentIndex(index);
    scrollTo(index);
    m_settingRow = false;
}

QList<GridSettings::Column> RecordGrid::columnSettings() const
{
    QList<GridSettings::Column> columns;
    const QHeaderView* header = horizontalHeader();
    for (int place = 0; place < header->count(); ++place) {
        const int logical = header->logicalIndex(place);
        GridSettings::Column column;
        column.fieldName = m_model->fieldName(logical);
        column.width = header->isSectionHidden(logical) ? 0 : header->sectionSize(logical);
        column.position = place;
        if (header->sortIndicatorSection() == logical) {
            column.sortType = header->sortIndicatorOrder() == Qt::AscendingOrder
                                  ? GridSettings::SortType::Ascending
                                  : GridSettings::SortType::Descending;
        }
        columns.append(column);
    }
    return columns;
}

void RecordGrid::applyColumnSettings(const QList<GridSettings::Column>& columns)
{
    if (columns.isEmpty()) {
        return;
    }
    QHeaderView* header = horizontalHeader();
    setUpdatesEnabled(false);
    for (const GridSettings::Column& column : columns) {
        const int logical = m_model->fieldIndex(column.fieldName);
        if (logical < 0) {
            continue;
        }
        header->moveSection(header->visualIndex(logical),
                            qBound(0, column.position, header->count() - 1));
        if (column.width > 0 && !header->isSectionHidden(logical)) {
            header->resizeSection(logical, column.width);
        }
        if (column.sortType != GridSettings::SortType::None) {
            sortByColumn(logical, column.sortType == GridSettings::SortType::Ascending
                                      ? Qt::AscendingOrder
                                      : Qt::DescendingOrder);
        }
    }
    setUpdatesEnabled(true);
}

void RecordGrid::onCurrentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    if (!m_settingRow && current.isValid() && current.row() != previous.row()) {
        emit rowChosen(current.row());
    }
}
