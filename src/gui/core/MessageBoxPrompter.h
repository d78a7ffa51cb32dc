#pragma once

#include "Prompter.h"

#include <QPointer>

class QWidget;

/**
 * The desktop's prompter: every message, question and input box as a real
 * modal dialog, titled with the program's name unless a title is given.
 */
class MessageBoxPrompter : public Prompter
{
public:
    /** The dialogs stand over parent; without one, over the window that is active. */
    explicit MessageBoxPrompter(QWidget* parent = nullptr);

    Answer message(const QString& text, Buttons buttons, Icon icon,
                   const QString& title = QString()) override;
    std::optional<QString> input(const QString& prompt, const QString& title = QString(),
                                 const QString& defaultText = QString()) override;

    void setParent(QWidget* parent) { m_parent = parent; }

    /** The title of every box that is not given one. */
    static QString programTitle();

private:
    QWidget* dialogParent() const;

    QPointer<QWidget> m_parent;
};
