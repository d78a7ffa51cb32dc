#include "Arguments.h"

namespace {

const QString EndMark = QStringLiteral("--");

bool looksLikeOption(const QString& word)
{
    return word.startsWith(u'-') && word.size() > 1;
}

} // namespace

Arguments::Arguments(QStringList words) : m_words(std::move(words)) {}

qsizetype Arguments::endOfOptions() const
{
    const qsizetype end = m_words.indexOf(EndMark);
    return end < 0 ? m_words.size() : end;
}

qsizetype Arguments::optionIndex(const QString& name) const
{
    const QString withValue = name + u'=';
    const qsizetype end = endOfOptions();
    for (qsizetype i = 0; i < end; ++i) {
        if (m_words.at(i) == name || m_words.at(i).startsWith(withValue)) {
            return i;
        }
    }
    return -1;
}

bool Arguments::has(const QString& name) const
{
    return optionIndex(name) >= 0;
}

bool Arguments::takeFlag(const QString& name)
{
    const qsizetype i = optionIndex(name);
    if (i < 0 || m_words.at(i) != name) {
        return false;
    }
    m_words.removeAt(i);
    return true;
}

bool Arguments::takeAt(qsizetype i, const QString& name, QString* value, QString* error)
{
    const QString word = m_words.takeAt(i);
    if (word.size() > name.size()) {
        *value = word.mid(name.size() + 1);
    } else if (i < endOfOptions() && !looksLikeOption(m_words.at(i))) {
        *value = m_words.takeAt(i);
    } else {
        *error = QStringLiteral("The option %1 needs a value.").arg(name);
        return false;
    }
    return true;
}

bool Arguments::takeValue(const QString& name, QString* value, QString* error)
{
    const qsizetype i = optionIndex(name);
    if (i < 0) {
        return true;
    }
    if (!takeAt(i, name, value, error)) {
        return false;
    }
    if (has(name)) {
        *error = QStringLiteral("The option %1 is given twice.").arg(name);
        return false;
    }
    return true;
}

bool Arguments::takeValues(const QString& name, QStringList* values, QString* error)
{
    while (has(name)) {
        QString value;
        if (!takeAt(optionIndex(name), name, &value, error)) {
            return false;
        }
        values->append(value);
    }
    return true;
}

QString Arguments::takePositional()
{
    const qsizetype end = endOfOptions();
    for (qsizetype i = 0; i < end; ++i) {
        if (!looksLikeOption(m_words.at(i))) {
            return m_words.takeAt(i);
        }
    }
    if (end < m_words.size()) {
        m_words.removeAt(end); // the "--" itself
        if (end < m_words.size()) {
            return m_words.takeAt(end);
        }
    }
    return QString();
}

QString Arguments::firstLeft() const
{
    for (const QString& word : m_words) {
        if (looksLikeOption(word) && word != EndMark) {
            return word;
        }
    }
    return m_words.isEmpty() ? QString() : m_words.first();
}
