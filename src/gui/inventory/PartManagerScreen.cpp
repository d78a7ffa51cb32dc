#include "PartManagerScreen.h"

#include "FormPlacement.h"
#include "MessageTexts.h"
#include "NumberCellDelegate.h"
#include "PartScreen.h"
#include "Prompter.h"
#include "ScreenFields.h"
#include "Session.h"
#include "StockWidgets.h"

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

enum Column {
    SelectColumn,
    NumberColumn,
    DescriptionColumn,
    CategoryColumn,
    OnHandColumn,
    RequiredColumn,
    PriceColumn,
    SupplierColumn,
    InactiveColumn,
    SupplierIdColumn,
    ColumnCount
};

// The picker's fields, in the order of the columns after Select and Qty Req.
const char* const ListFields[] = {"PartID", "Description", "PartCategory", "Quantity",
                                  "Price",  "Supplier",    "Inactive",     "SupplierID"};
constexpr Column ListColumns[] = {NumberColumn,   DescriptionColumn, CategoryColumn,
                                  OnHandColumn,   PriceColumn,       SupplierColumn,
                                  InactiveColumn, SupplierIdColumn};

} // namespace

PartManagerScreen::PartManagerScreen(Session& session, const QString& excludeText, bool selectMode,
                                     QWidget* parent)
    : QDialog(parent), m_session(session), m_manager(session), m_picker(session),
      m_excludeText(excludeText), m_selectMode(selectMode)
{
    setObjectName(QStringLiteral("frmPartManager"));
    setWindowTitle(QStringLiteral("Part Manager"));
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("txtSearchText"));
    m_search->setPlaceholderText(QStringLiteral("Part Number/Description"));
    m_grid = new QTableWidget(0, ColumnCount, this);
    m_grid->setObjectName(QStringLiteral("grdPart"));
    m_grid->setHorizontalHeaderLabels(
        {QStringLiteral("Select"), QStringLiteral("Part Number"), QStringLiteral("Description"),
         QStringLiteral("Part Category"), QStringLiteral("Qty on Hand"), QStringLiteral("Qty Req"),
         QStringLiteral("Price"), QStringLiteral("Supplier"), QStringLiteral("Inactive"),
         QStringLiteral("SupplierID")});
    m_grid->setColumnHidden(SupplierIdColumn, true);
    m_grid->verticalHeader()->hide();
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setItemDelegateForColumn(RequiredColumn,
                                     new NumberCellDelegate(QStringLiteral("[0-9]*"), m_grid));

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Search On"), this));
    top->addWidget(m_search, 1);
    auto* buttons = new QHBoxLayout;
    QPushButton* select = button(this, "cmdSelect", QStringLiteral("&Process"));
    QPushButton* add = button(this, "cmdAdd", QStringLiteral("Add &New"));
    QPushButton* remove = button(this, "cmdDelete", QStringLiteral("&Delete"));
    QPushButton* exit = button(this, "cmdExit", QStringLiteral("&Return"));
    for (QPushButton* b : {select, add, remove}) {
        buttons->addWidget(b);
    }
    buttons->addStretch();
    buttons->addWidget(exit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);

    connect(m_search, &QLineEdit::textChanged, this, &PartManagerScreen::showGrid);
    connect(m_grid, &QTableWidget::itemChanged, this, &PartManagerScreen::onCellChanged);
    connect(m_grid, &QTableWidget::cellDoubleClicked, this,
            [this](int row, int) { onRowActivated(row); });
    connect(select, &QPushButton::clicked, this,
            [this] { m_selectMode ? process() : openCurrentPart(); });
    connect(add, &QPushButton::clicked, this, &PartManagerScreen::addPart);
    connect(remove, &QPushButton::clicked, this, &PartManagerScreen::deletePart);
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);
    resize(9270 / FormPlacement::TwipsPerPixel, 4965 / FormPlacement::TwipsPerPixel);
    FormPlacement::restore(m_session, this);
    showGrid();
}

bool PartManagerScreen::showPartManager(Session& session, QString* excludeInOut, bool selectMode,
                                        QWidget* parent)
{
    PartManagerScreen screen(session, *excludeInOut, selectMode, parent);
    if (screen.exec() != QDialog::Accepted) {
        return false;
    }
    *excludeInOut = screen.result();
    return true;
}

void PartManagerScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

void PartManagerScreen::showGrid()
{
    const QScopedValueRollback filling(m_filling, true);
    const Rows rows = m_picker.list(m_excludeText, m_search->text());
    m_grid->setRowCount(0);
    m_grid->setRowCount(int(rows.size()));
    for (int row = 0; row < rows.size(); ++row) {
        auto* select = new QTableWidgetItem;
        select->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        select->setCheckState(Qt::Unchecked);
        m_grid->setItem(row, SelectColumn, select);
        m_grid->setItem(row, RequiredColumn, new QTableWidgetItem(QStringLiteral("0")));
        for (int field = 0; field < int(std::size(ListFields)); ++field) {
            m_grid->setItem(row, ListColumns[field],
                            fixedCell(rows[row].value(QString::fromLatin1(ListFields[field]))));
        }
    }
    m_grid->resizeColumnsToContents();
}

void PartManagerScreen::onCellChanged(QTableWidgetItem* item)
{
    if (m_filling) {
        return;
    }
    const QScopedValueRollback filling(m_filling, true);
    const int row = item->row();
    if (item->column() == SelectColumn) {
        const bool ticked = item->checkState() == Qt::Checked;
        m_grid->item(row, RequiredColumn)
            ->setText(ticked ? QStringLiteral("1") : QStringLiteral("0"));
    } else if (item->column() == RequiredColumn) {
        const int required = item->text().toInt();
        item->setText(QString::number(required)); // what the editor left empty is 0
        m_grid->item(row, SelectColumn)->setCheckState(required != 0 ? Qt::Checked : Qt::Unchecked);
    }
}

void PartManagerScreen::onRowActivated(int row)
{
    if (!m_selectMode) {
        openCurrentPart();
        return;
    }
    m_grid->item(row, SelectColumn)->setCheckState(Qt::Checked);
    process();
}

void PartManagerScreen::process()
{
    if (m_grid->rowCount() == 0) {
        return;
    }
    QList<PartPicker::Pick> picks;
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        if (m_grid->item(row, SelectColumn)->checkState() == Qt::Checked) {
            picks.append({partId(row), m_grid->item(row, RequiredColumn)->text().toDouble(),
                          m_grid->item(row, PriceColumn)->data(Qt::UserRole),
                          m_grid->item(row, SupplierIdColumn)->data(Qt::UserRole)});
        }
    }
    m_result = PartPicker::resultText(picks);
    accept();
}

void PartManagerScreen::openCurrentPart()
{
    const int row = m_grid->currentRow();
    if (row < 0) {
        return;
    }
    PartScreen::showPartDetail(m_session, PartScreen::Mode::Browse, partId(row), this);
    showGrid();
}

void PartManagerScreen::addPart()
{
    PartScreen::showPartDetail(m_session, PartScreen::Mode::Add, QVariant(), this);
    showGrid();
}

void PartManagerScreen::deletePart()
{
    const int row = m_grid->currentRow();
    if (row < 0) {
        return;
    }
    Prompter& prompter = m_session.prompter();
    if (!prompter.askYesNo(MessageTexts::DeleteQuestion)) {
        return;
    }
    const QString user = m_manager.canDeletePart(partId(row));
    if (!user.isEmpty()) {
        prompter.inform(MessageTexts::recordInUse(user));
        return;
    }
    if (m_picker.deletePart(partId(row))) {
        showGrid();
    }
}

QString PartManagerScreen::partId(int row) const
{
    return m_grid->item(row, NumberColumn)->text();
}
