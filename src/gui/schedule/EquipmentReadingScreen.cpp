#include "EquipmentReadingScreen.h"

#include "DateBox.h"
#include "FormPlacement.h"
#include "Prompter.h"
#include "ScreenFields.h"
#include "Session.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int HeightTwips = 6720;
constexpr int WidthTwips = 8055;

enum Column {
    EquipmentIdColumn,
    UnitNoColumn,
    NameColumn,
    TypeColumn,
    LastDateColumn,
    LastCountColumn,
    CountColumn
};

/** txtGrid: the count is written in digits only; the blank goes while writing. */
class CountDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override
    {
        auto* editor = new QLineEdit(parent);
        editor->setObjectName(QStringLiteral("txtGrid"));
        editor->setValidator(new QRegularExpressionValidator(
            QRegularExpression(QStringLiteral("[0-9]{0,9}")), editor));
        return editor;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        const QString count = index.data().toString();
        static_cast<QLineEdit*>(editor)->setText(count == CountSheet::Blank ? QString() : count);
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        const QString count = static_cast<QLineEdit*>(editor)->text();
        model->setData(index, count.isEmpty() ? CountSheet::Blank : count);
    }
};

QTableWidgetItem* fixedCell(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

} // namespace

EquipmentReadingScreen::EquipmentReadingScreen(Session& session, QWidget* parent)
    : QDialog(parent), m_session(session), m_sheet(session)
{
    setObjectName(QStringLiteral("frmEquipmentReading"));
    setWindowTitle(QStringLiteral("Equipment Reading"));
    m_grid = new QTableWidget(0, CountColumn + 1, this);
    m_grid->setObjectName(QStringLiteral("grdEquipment"));
    m_grid->setHorizontalHeaderLabels({QStringLiteral("EquipmentID"), QStringLiteral("UnitNo"),
                                       QStringLiteral("Equipment Name"),
                                       QStringLiteral("CountType"), QStringLiteral("Last Date"),
                                       QStringLiteral("Last Count"), QStringLiteral("Count")});
    m_grid->hideColumn(EquipmentIdColumn);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setItemDelegateForColumn(CountColumn, new CountDelegate(m_grid));

    auto* print = ScreenFields::button(this, "cmdPrint", QStringLiteral("&Print"));
    print->setEnabled(false); // the count sheet report is not there yet
    auto* save = ScreenFields::button(this, "cmdUpdate", QStringLiteral("&Update"));
    auto* exit = ScreenFields::button(this, "cmdExit", QStringLiteral("&Return"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* button : {print, save, exit}) {
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);

    connect(m_grid, &QTableWidget::itemChanged, this, &EquipmentReadingScreen::checkCount);
    connect(save, &QPushButton::clicked, this, &EquipmentReadingScreen::update);
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);
    resize(WidthTwips / FormPlacement::TwipsPerPixel, HeightTwips / FormPlacement::TwipsPerPixel);
    FormPlacement::restore(m_session, this);
    refreshRecordSet();
}

void EquipmentReadingScreen::showEquipmentReading(Session& session, QWidget* parent)
{
    EquipmentReadingScreen screen(session, parent);
    screen.exec();
}

void EquipmentReadingScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

void EquipmentReadingScreen::refreshRecordSet()
{
    const QScopedValueRollback filling(m_filling, true);
    m_lines = m_sheet.lines();
    m_grid->setRowCount(0);
    m_grid->setRowCount(int(m_lines.size()));
    for (int row = 0; row < m_lines.size(); ++row) {
        const CountSheet::Line& line = m_lines[row];
        m_grid->setItem(row, EquipmentIdColumn, fixedCell(QString::number(line.equipmentId)));
        m_grid->setItem(row, UnitNoColumn, fixedCell(line.unitNo));
        m_grid->setItem(row, NameColumn, fixedCell(line.equipmentName));
        m_grid->setItem(row, TypeColumn, fixedCell(line.countType));
        m_grid->setItem(row, LastDateColumn,
                        fixedCell(line.lastDate.toString(DateBox::DisplayFormat)));
        m_grid->setItem(row, LastCountColumn, fixedCell(QString::number(line.lastCount)));
        m_grid->setItem(row, CountColumn, new QTableWidgetItem(CountSheet::Blank));
    }
    m_grid->resizeColumnsToContents();
}

void EquipmentReadingScreen::checkCount(QTableWidgetItem* item)
{
    if (!m_filling && item->column() == CountColumn) {
        refuseBelowLast(item->row());
    }
}

bool EquipmentReadingScreen::refuseBelowLast(int row)
{
    const QString refusal =
        CountSheet::countRefusal(m_lines.at(row), m_grid->item(row, CountColumn)->text());
    if (refusal.isEmpty()) {
        return false;
    }
    m_session.prompter().message(refusal, Prompter::Buttons::Ok, Prompter::Icon::Critical);
    // The cell opens again for a correction once its editor has closed.
    QTimer::singleShot(0, this, [this, row] {
        if (row < m_grid->rowCount()) {
            m_grid->setCurrentCell(row, CountColumn);
            m_grid->editItem(m_grid->item(row, CountColumn));
        }
    });
    return true;
}

void EquipmentReadingScreen::update()
{
    QList<CountSheet::Entry> entries;
    for (int row = 0; row < m_lines.size(); ++row) {
        if (refuseBelowLast(row)) {
            return;
        }
        entries.append({m_lines[row].equipmentId, m_lines[row].countType,
                        m_grid->item(row, CountColumn)->text()});
    }
    // After a failure the written counts stay for another try.
    if (m_sheet.record(entries)) {
        refreshRecordSet();
    }
}
