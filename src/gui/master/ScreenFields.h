#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

// Controls of the master screens, made with the names a test or a stored setting knows them by.
namespace ScreenFields {

inline QLineEdit* lineEdit(QWidget* parent, const char* name, int maxLength = 0)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    if (maxLength > 0) {
        edit->setMaxLength(maxLength);
    }
    return edit;
}

/** A list the user picks from, never types into. */
inline QComboBox* comboBox(QWidget* parent, const char* name)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(QString::fromLatin1(name));
    combo->setEditable(false);
    return combo;
}

/** A named button that Enter in a field or a grid does not press. */
inline QPushButton* button(QWidget* parent, const char* name, const QString& caption)
{
    auto* result = new QPushButton(caption, parent);
    result->setObjectName(QString::fromLatin1(name));
    result->setAutoDefault(false);
    return result;
}

/** The small button beside a list that opens the screen keeping the list's items. */
inline QPushButton* listButton(QWidget* parent, const char* name)
{
    auto* button = new QPushButton(QStringLiteral("..."), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setMaximumWidth(button->fontMetrics().horizontalAdvance(button->text()) * 3);
    return button;
}

} // namespace ScreenFields
