#include "ColourScheme.h"

#include <QAbstractItemView>
#include <QFontDatabase>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QWidget>

namespace ColourScheme {

namespace {

void setBackground(QWidget* widget, const QColor& colour)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, colour);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

void setForeground(QWidget* widget, const QColor& colour)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    widget->setPalette(palette);
}

void setFamily(QWidget* widget, const QString& family)
{
    QFont font = widget->font();
    font.setFamily(family);
    widget->setFont(font);
}

void styleGrid(QAbstractItemView* grid)
{
    grid->setUpdatesEnabled(false);
    QPalette palette = grid->palette();
    palette.setColor(QPalette::Highlight, GridSelection);
    palette.setColor(QPalette::HighlightedText, GridSelectionText);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, GridAlternateRow);
    grid->setPalette(palette);
    grid->setAlternatingRowColors(true);
    grid->setFrameShape(QFrame::Box);
    if (auto* table = qobject_cast<QTableView*>(grid)) {
        table->setShowGrid(true);
        table->horizontalHeader()->setStretchLastSection(true);
        setForeground(table->horizontalHeader(), LabelForeground);
    }
    grid->setUpdatesEnabled(true);
}

/** A plain QFrame drawn as a panel; group boxes and undecorated frames are "frames". */
bool isPanel(const QWidget* widget)
{
    if (widget->metaObject() != &QFrame::staticMetaObject) {
        return false;
    }
    const auto shape = static_cast<const QFrame*>(widget)->frameShape();
    return shape == QFrame::Panel || shape == QFrame::StyledPanel || shape == QFrame::WinPanel;
}

bool isFrame(const QWidget* widget)
{
    return qobject_cast<const QGroupBox*>(widget) ||
           widget->metaObject() == &QFrame::staticMetaObject;
}

void styleWidget(QWidget* widget, const QString& family)
{
    setFamily(widget, family);
    if (auto* grid = qobject_cast<QAbstractItemView*>(widget)) {
        styleGrid(grid);
    } else if (qobject_cast<QLabel*>(widget)) {
        setForeground(widget, LabelForeground);
    } else if (isPanel(widget)) {
        setBackground(widget, PanelBackground);
    } else if (isFrame(widget)) {
        setBackground(widget, FormBackground);
        setForeground(widget, LabelForeground);
    }
}

} // namespace

QString fontFamily()
{
    static const QString family = QFontDatabase::hasFamily(QStringLiteral("Arial"))
                                      ? QStringLiteral("Arial")
                                      : QStringLiteral("DejaVu Sans");
    return family;
}

void apply(QWidget* root)
{
    if (!root) {
        return;
    }
    const QString family = fontFamily();
    setFamily(root, family);
    setBackground(root, FormBackground);
    const QList<QWidget*> children = root->findChildren<QWidget*>();
    for (QWidget* child : children) {
        styleWidget(child, family);
    }
}

} // namespace ColourScheme
