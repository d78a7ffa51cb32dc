#include "ScriptedPrompter.h"

Prompter::Answer ScriptedPrompter::message(const QString& text, Buttons buttons, Icon icon,
                                           const QString& title)
{
    m_shown.append({text, title, buttons, icon});
    if (m_echo) {
        *m_echo << text << Qt::endl;
    }
    if (!m_answers.isEmpty()) {
        return m_answers.takeFirst();
    }
    if (buttons == Buttons::Ok) {
        return Answer::Ok;
    }
    return m_defaultAnswer;
}

std::optional<QString> ScriptedPrompter::input(const QString& prompt, const QString& title,
                                               const QString& defaultText)
{
    m_shown.append({prompt, title, Buttons::OkCancel, Icon::None});
    if (!m_inputs.isEmpty()) {
        return m_inputs.takeFirst();
    }
    return defaultText;
}

QStringList ScriptedPrompter::texts() const
{
    QStringList result;
    for (const Shown& s : m_shown) {
        result.append(s.text);
    }
    return result;
}
