#include "InventoryCheckInScreen.h"

#include "FormPlacement.h"
#include "NumberCellDelegate.h"
#include "ScreenFields.h"
#include "StockWidgets.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSqlRecord>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace ScreenFields;
using namespace StockWidgets;

namespace {

enum Column { NumberColumn, DescriptionColumn, OnHandColumn, ReceivedColumn };

} // namespace

InventoryCheckInScreen::InventoryCheckInScreen(Session& session, QWidget* parent)
    : QDialog(parent), m_session(session), m_checkIn(session)
{
    setObjectName(QStringLiteral("frmInventryCheckIn"));
    setWindowTitle(QStringLiteral("Inventory Check In"));
    m_reorder = new QCheckBox(QStringLiteral("Reorder Inventory"), this);
    m_reorder->setObjectName(QStringLiteral("chkReorderInventory"));
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("txtSearchText"));
    m_grid = new QTableWidget(0, 4, this);
    m_grid->setObjectName(QStringLiteral("grdPart"));
    m_grid->setHorizontalHeaderLabels({QStringLiteral("Part Number"), QStringLiteral("Description"),
                                       QStringLiteral("Qty on Hand"),
                                       QStringLiteral("Qty Received")});
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->verticalHeader()->hide();
    // Digits, a point and a minus: a downward correction is booked as a negative receipt.
    m_grid->setItemDelegateForColumn(
        ReceivedColumn, new NumberCellDelegate(QStringLiteral("-?[0-9]*\\.?[0-9]*"), m_grid));
    m_update = button(this, "cmdUpdate", QStringLiteral("&Save"));
    m_cancel = button(this, "cmdCancel", QStringLiteral("Re&vert"));
    m_exit = button(this, "cmdExit", QStringLiteral("&Return"));

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Search On"), this));
    m_search->setPlaceholderText(QStringLiteral("Part Number/Description"));
    top->addWidget(m_search, 1);
    top->addWidget(m_reorder);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* b : {m_update, m_cancel, m_exit}) {
        buttons->addWidget(b);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);

    connect(m_reorder, &QCheckBox::toggled, this, &InventoryCheckInScreen::showGrid);
    connect(m_search, &QLineEdit::textChanged, this, &InventoryCheckInScreen::showGrid);
    connect(m_grid, &QTableWidget::itemChanged, this, &InventoryCheckInScreen::onCellChanged);
    connect(m_update, &QPushButton::clicked, this, &InventoryCheckInScreen::saveChanges);
    connect(m_cancel, &QPushButton::clicked, this, &InventoryCheckInScreen::showGrid);
    connect(m_exit, &QPushButton::clicked, this, [this] { done(QDialog::Rejected); });
    resize(8280 / FormPlacement::TwipsPerPixel, 5460 / FormPlacement::TwipsPerPixel);
    FormPlacement::restore(m_session, this);
    showGrid();
}

void InventoryCheckInScreen::showInventoryCheckIn(Session& session, QWidget* parent)
{
    InventoryCheckInScreen screen(session, parent);
    screen.exec();
}

void InventoryCheckInScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

void InventoryCheckInScreen::reject()
{
    // Received quantities typed but not saved keep the window open, as cmdExit is off then.
    if (!m_changed) {
        QDialog::reject();
    }
}

void InventoryCheckInScreen::showGrid()
{
    const QScopedValueRollback filling(m_filling, true);
    const Rows rows = m_checkIn.list(m_reorder->isChecked(), m_search->text());
    m_grid->setRowCount(0);
    m_grid->setRowCount(int(rows.size()));
    for (int row = 0; row < rows.size(); ++row) {
        const QSqlRecord& part = rows[row];
        m_grid->setItem(row, NumberColumn, fixedCell(part.value(QStringLiteral("PartID"))));
        m_grid->setItem(row, DescriptionColumn,
                        fixedCell(part.value(QStringLiteral("Description"))));
        m_grid->setItem(row, OnHandColumn, fixedCell(part.value(QStringLiteral("Quantity"))));
        m_grid->setItem(row, ReceivedColumn, new QTableWidgetItem(QStringLiteral("0")));
    }
    setChanged(false);
    m_grid->resizeColumnsToContents();
}

void InventoryCheckInScreen::setChanged(bool changed)
{
    m_changed = changed;
    m_update->setEnabled(changed);
    m_cancel->setEnabled(changed);
    m_exit->setEnabled(!changed);
}

void InventoryCheckInScreen::onCellChanged(QTableWidgetItem* item)
{
    if (m_filling || item->column() != ReceivedColumn) {
        return;
    }
    bool isNumber = false;
    item->text().toDouble(&isNumber);
    if (!isNumber) {
        // What the editor left that is no number ("", ".", "-") counts as nothing received.
        const QScopedValueRollback filling(m_filling, true);
        item->setText(QStringLiteral("0"));
    }
    setChanged(true);
}

void InventoryCheckInScreen::saveChanges()
{
    QList<InventoryCheckIn::Receipt> receipts;
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        receipts.append({m_grid->item(row, NumberColumn)->text(),
                         m_grid->item(row, OnHandColumn)->data(Qt::UserRole),
                         m_grid->item(row, ReceivedColumn)->text().toDouble()});
    }
    m_checkIn.save(receipts);
    showGrid();
}
