#include "MessageBoxPrompter.h"

#include "Installation.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>

namespace {

QMessageBox::Icon boxIcon(Prompter::Icon icon)
{
    switch (icon) {
    case Prompter::Icon::Information:
        return QMessageBox::Information;
    case Prompter::Icon::Question:
        return QMessageBox::Question;
    case Prompter::Icon::Exclamation:
        return QMessageBox::Warning;
    case Prompter::Icon::Critical:
        return QMessageBox::Critical;
    case Prompter::Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

/** Adds the buttons and says which one Escape and the close box choose. */
void addButtons(QMessageBox& box, Prompter::Buttons buttons)
{
    switch (buttons) {
    case Prompter::Buttons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        box.setEscapeButton(QMessageBox::Ok);
        break;
    case Prompter::Buttons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setEscapeButton(QMessageBox::No);
        break;
    case Prompter::Buttons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setEscapeButton(QMessageBox::Cancel);
        break;
    case Prompter::Buttons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        box.setEscapeButton(QMessageBox::Cancel);
        break;
    }
}

Prompter::Answer answerFor(QMessageBox::StandardButton button, Prompter::Buttons buttons)
{
    switch (button) {
    case QMessageBox::Ok:
        return Prompter::Answer::Ok;
    case QMessageBox::Yes:
        return Prompter::Answer::Yes;
    case QMessageBox::No:
        return Prompter::Answer::No;
    case QMessageBox::Cancel:
        return Prompter::Answer::Cancel;
    default:
        break;
    }
    // A box closed some other way counts as its escape choice.
    switch (buttons) {
    case Prompter::Buttons::Ok:
        return Prompter::Answer::Ok;
    case Prompter::Buttons::YesNo:
        return Prompter::Answer::No;
    case Prompter::Buttons::YesNoCancel:
    case Prompter::Buttons::OkCancel:
        break;
    }
    return Prompter::Answer::Cancel;
}

} // namespace

MessageBoxPrompter::MessageBoxPrompter(QWidget* parent) : m_parent(parent) {}

QString MessageBoxPrompter::programTitle()
{
    return QString::fromLatin1(Installation::AppName);
}

QWidget* MessageBoxPrompter::dialogParent() const
{
    if (m_parent) {
        return m_parent;
    }
    if (QWidget* modal = QApplication::activeModalWidget()) {
        return modal;
    }
    return QApplication::activeWindow();
}

Prompter::Answer MessageBoxPrompter::message(const QString& text, Buttons buttons, Icon icon,
                                             const QString& title)
{
    QMessageBox box(dialogParent());
    box.setWindowTitle(title.isEmpty() ? programTitle() : title);
    box.setText(text);
    box.setIcon(boxIcon(icon));
    addButtons(box, buttons);
    box.exec();
    return answerFor(box.standardButton(box.clickedButton()), buttons);
}

std::optional<QString> MessageBoxPrompter::input(const QString& prompt, const QString& title,
                                                 const QString& defaultText)
{
    QInputDialog dialog(dialogParent());
    dialog.setWindowTitle(title.isEmpty() ? programTitle() : title);
    dialog.setLabelText(prompt);
    dialog.setTextValue(defaultText);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.textValue();
}
