#pragma once

#include "DataHelpers.h"

#include <QTableWidget>

class Session;

/**
 * The column layout of a table grid as this user left it: widths and order,
 * kept per screen and grid by the field each column shows (fields[c] for
 * column c). Hidden columns are neither kept nor moved.
 */
namespace TableLayout {
void restore(QTableWidget& grid, const QStringList& fields, Session& session,
             const QString& formName);
void store(const QTableWidget& grid, const QStringList& fields, Session& session,
           const QString& formName);
} // namespace TableLayout

/**
 * A grid of the work order screen: named columns over rows read by the work
 * order logic. Each cell keeps the value it was filled with, so that a row's
 * key reads the same whatever the cell shows. Edits of an editable column are
 * told through edited(); filling the grid tells nothing.
 */
class WorkOrderGrid : public QTableWidget
{
    Q_OBJECT

public:
    enum class Kind {
        Text,
        Date,  ///< shown as the office types dates
        Money, ///< two decimals
        Check, ///< a flag shown as a tick the user cannot change
        Pick,  ///< a tick the user sets; not a field of the rows
        Hidden ///< a key the user does not see
    };

    struct Column
    {
        QString field;
        QString caption;
        Kind kind = Kind::Text;
        bool editable = false;
    };

    WorkOrderGrid(const char* name, const QList<Column>& columns, QWidget* parent = nullptr);

    /** Replaces the rows; the current row stays where it can, else the first. Tells nothing. */
    void setRows(const Rows& rows);
    /** The value row was filled with under field; null for a row that is not there. */
    QVariant value(int row, const QString& field) const;
    QVariant currentValue(const QString& field) const { return value(currentRow(), field); }
    bool isPicked(int row) const;
    void setPicked(int row, bool picked);
    /** Colours every cell of row. */
    void paintRow(int row, const QColor& background, const QColor& foreground = QColor());

    /** Sizes and orders the columns as this user left them. */
    void restoreLayout(Session& session, const QString& formName);
    void storeLayout(Session& session, const QString& formName) const;

signals:
    /** The user changed the cell of field on row to text. */
    void edited(int row, const QString& field, const QString& text);

private:
    int columnOf(const QString& field) const;
    QStringList fields() const;
    QTableWidgetItem* cell(const Column& column, const QVariant& value) const;
    void onItemChanged(QTableWidgetItem* item);

    QList<Column> m_columns;
};
