#pragma once

#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QStyledItemDelegate>

/** Grid cells whose editor takes only the keys of a number pattern. */
class NumberCellDelegate : public QStyledItemDelegate
{
public:
    NumberCellDelegate(const QString& pattern, QObject* parent)
        : QStyledItemDelegate(parent), m_pattern(pattern)
    {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override
    {
        auto* editor = new QLineEdit(parent);
        editor->setValidator(new QRegularExpressionValidator(m_pattern, editor));
        return editor;
    }

private:
    QRegularExpression m_pattern;
};
