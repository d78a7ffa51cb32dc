#pragma once

#include <QList>
#include <QString>

class Session;

/**
 * The remembered layout of a screen's grid: one row of tblGridSetting per
 * column, per form and table, shared by all workstations.
 */
namespace GridSettings {

/** The sort of a column as stored; only one column of a grid is sorted. */
enum class SortType { None = 0, Ascending = 1, Descending = 2 };

struct Column
{
    QString fieldName;
    int width = 0;    ///< pixels
    int position = 0; ///< place in the displayed order, from 0
    SortType sortType = SortType::None;
};

/** The stored columns of one grid, in their displayed order; empty when none are stored. */
QList<Column> load(Session& session, const QString& formName, const QString& tableName);

/**
 * Replaces the stored layout of one grid with columns. An empty list
 * changes nothing, so that a grid without columns forgets no layout.
 * False (reported) when the layout could not be written.
 */
bool save(Session& session, const QString& formName, const QString& tableName,
          const QList<Column>& columns);

} // namespace GridSettings
