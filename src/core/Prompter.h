#pragma once

#include <QString>
#include <optional>

/**
 * Every message box, question and input box of the program goes through
 * this interface, so that each rule can run without a screen: the desktop
 * answers with real dialogs, tests and the command line script the answers.
 */
class Prompter
{
public:
    enum class Icon { None, Information, Question, Exclamation, Critical };
    enum class Buttons { Ok, YesNo, YesNoCancel, OkCancel };
    enum class Answer { Ok, Yes, No, Cancel };

    virtual ~Prompter() = default;

    /** Shows text with the program's title (or the given one) and returns the button chosen. */
    virtual Answer message(const QString& text, Buttons buttons, Icon icon,
                           const QString& title = QString()) = 0;

    /** Asks for a line of text; no value when the user cancels. */
    virtual std::optional<QString> input(const QString& prompt, const QString& title = QString(),
                                         const QString& defaultText = QString()) = 0;

    void inform(const QString& text, const QString& title = QString())
    {
        message(text, Buttons::Ok, Icon::Information, title);
    }
    bool askYesNo(const QString& text, const QString& title = QString())
    {
        return message(text, Buttons::YesNo, Icon::Question, title) == Answer::Yes;
    }
};
