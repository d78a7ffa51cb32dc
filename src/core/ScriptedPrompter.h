#pragma once

#include "Prompter.h"

#include <QList>
#include <QStringList>
#include <QTextStream>

/**
 * A prompter without a screen. It records every message, answers from a
 * queue of scripted answers and falls back to a default answer.
 * With an echo stream it prints each message there (the command line uses stderr).
 */
class ScriptedPrompter : public Prompter
{
public:
    struct Shown
    {
        QString text;
        QString title;
        Buttons buttons;
        Icon icon;
    };

    explicit ScriptedPrompter(QTextStream* echo = nullptr) : m_echo(echo) {}

    Answer message(const QString& text, Buttons buttons, Icon icon,
                   const QString& title = QString()) override;
    std::optional<QString> input(const QString& prompt, const QString& title = QString(),
                                 const QString& defaultText = QString()) override;

    void queueAnswer(Answer answer) { m_answers.append(answer); }
    void queueInput(const std::optional<QString>& text) { m_inputs.append(text); }
    void setDefaultAnswer(Answer answer) { m_defaultAnswer = answer; }

    const QList<Shown>& shown() const { return m_shown; }
    QStringList texts() const;
    void clear() { m_shown.clear(); }

private:
    QTextStream* m_echo;
    QList<Shown> m_shown;
    QList<Answer> m_answers;
    QList<std::optional<QString>> m_inputs;
    Answer m_defaultAnswer = Answer::Ok;
};
