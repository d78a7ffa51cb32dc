#pragma once

#include <QPushButton>
#include <QTableWidgetItem>

// Controls the stock screens share.
namespace StockWidgets {

/** A named button that Enter in the grid or the search does not press. */
inline QPushButton* button(QWidget* parent, const char* name, const QString& caption)
{
    auto* result = new QPushButton(caption, parent);
    result->setObjectName(QString::fromLatin1(name));
    result->setAutoDefault(false);
    return result;
}

/** A cell the user reads but does not edit; the value stays in its user role. */
inline QTableWidgetItem* fixedCell(const QVariant& value)
{
    auto* cell = new QTableWidgetItem(value.toString());
    cell->setData(Qt::UserRole, value);
    cell->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return cell;
}

} // namespace StockWidgets
