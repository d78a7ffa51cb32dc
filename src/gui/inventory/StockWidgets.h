#pragma once

#include <QTableWidgetItem>

// Controls the stock screens share.
namespace StockWidgets {

/** A cell the user reads but does not edit; the value stays in its user role. */
inline QTableWidgetItem* fixedCell(const QVariant& value)
{
    auto* cell = new QTableWidgetItem(value.toString());
    cell->setData(Qt::UserRole, value);
    cell->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return cell;
}

} // namespace StockWidgets
