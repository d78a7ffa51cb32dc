#pragma once

#include "DataHelpers.h"
#include "GridSettings.h"

#include <QAbstractTableModel>
#include <QTableView>

/** A column's alignment by the kind of its values: numbers right, days and flags centred. */
Qt::Alignment colAlign(QMetaType::Type type);

/**
 * The rows of a record screen's grid, in the order shown. Sorting reorders
 * the rows themselves, so that a row number means the same record in the
 * grid and in the screen's navigation.
 */
class RecordTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Field
    {
        QString name;    ///< the column of the rows
        QString caption; ///< the header text
    };

    explicit RecordTableModel(QList<Field> fields, QObject* parent = nullptr);

    /** Replaces the rows; the columns stay, with their order, widths and sort. */
    void setRows(const Rows& rows);
    const QSqlRecord& record(int row) const { return m_rows.at(row); }
    /** The row whose field holds value (compared as text), or -1. */
    int findRow(const QString& field, const QVariant& value) const;
    int fieldIndex(const QString& name) const;
    QString fieldName(int column) const { return m_fields.at(column).name; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    /** Sorts by column; column -1 restores the order the rows came in. */
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    QVariant value(int row, int column) const;

    QList<Field> m_fields;
    Rows m_rows;
    QList<int> m_arrival; ///< each row's place in the order it came in
};

/**
 * A record screen's grid: one row a record, a hidden key column, columns
 * the user can move, resize and sort. The layout can be read and applied
 * as stored grid settings.
 */
class RecordGrid : public QTableView
{
    Q_OBJECT

public:
    explicit RecordGrid(QWidget* parent = nullptr);

    /** The columns, in their designed order; keyField is kept hidden. */
    void setFields(const QList<RecordTableModel::Field>& fields, const QString& keyField);
    /** New columns and their rows at once, for grids whose columns follow their query. */
    void assignData(const Rows& rows, const QList<RecordTableModel::Field>& fields,
                    const QString& keyField);
    QString keyField() const { return m_keyField; }

    /** Binds the rows, keeping the columns' layout and sorting them as shown. */
    void setRows(const Rows& rows);
    int rowCount() const;
    const QSqlRecord& record(int row) const;
    /** The row whose key is id, or -1. */
    int findKey(const QVariant& id) const;

    int currentRow() const;
    /** Makes row current and visible without telling rowChosen. */
    void setCurrentRow(int row);

    /** Every column with its field, width, displayed place and sort, in displayed order. */
    QList<GridSettings::Column> columnSettings() const;
    /** Moves, sizes and sorts the columns as stored; fields the grid lacks are skipped. */
    void applyColumnSettings(const QList<GridSettings::Column>& columns);

signals:
    /** The user made another row current, by click or key. */
    void rowChosen(int row);

private:
    void onCurrentChanged(const QModelIndex& current, const QModelIndex& previous);

    RecordTableModel* m_model = nullptr;
    QString m_keyField;
    bool m_settingRow = false;
};
