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

/** A button whose target is not part of this screen's library: disabled until one is given. */
inline QPushButton* pendingButton(QWidget* parent, const char* name, const QString& caption)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setEnabled(false);
    return button;
}

} // namespace ScreenFields
