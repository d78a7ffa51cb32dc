#pragma once

#include <QString>
#include <QStringList>

/**
 * The words of a command line, taken off one by one. Options may stand
 * anywhere, as "--name value" or "--name=value"; a lone "--" ends the
 * options, so that a word after it is taken as it is.
 */
class Arguments
{
public:
    explicit Arguments(QStringList words);

    /** Takes a switch without value; true when it was there. */
    bool takeFlag(const QString& name);
    /**
     * Takes an option with a value. False with a reason when the option stands
     * without its value or twice; true (value untouched) when it is absent.
     */
    bool takeValue(const QString& name, QString* value, QString* error);
    /** Takes every value of an option that may stand several times, in order. */
    bool takeValues(const QString& name, QStringList* values, QString* error);
    /** True when the option is still there. */
    bool has(const QString& name) const;
    /** Takes the next word that is no option; empty when none is left. */
    QString takePositional();
    /** The first word left that looks like an option, or else the first word left. */
    QString firstLeft() const;
    bool isEmpty() const { return m_words.isEmpty(); }

private:
    qsizetype optionIndex(const QString& name) const;
    qsizetype endOfOptions() const;
    /** Takes the option at i with its value. */
    bool takeAt(qsizetype i, const QString& name, QString* value, QString* error);

    QStringList m_words;
};
