#pragma once

#include "CliContext.h"

#include <QStringList>

/**
 * The command line of the headless front end: global options, then one
 * command with its own options. Writes only to the given streams.
 */
namespace CommandLine {

/** Runs the words after the program's name; the answer is the exit code. */
int run(const QStringList& words, QTextStream& out, QTextStream& err);

/** The text that tells how the program is called. */
QString usageText();

/** Prints what is wrong and how to call the program; the usage exit code. */
ExitCode usageError(const CliContext& context, const QString& reason);

/** The reason for a word that no command expects there. */
QString unexpected(const QString& word);

/**
 * A record's key given on the command line: a positive whole number. Else false,
 * with error telling that the text is no such key (column names what it should be).
 */
bool parseKey(const QString& text, const QString& column, qint64* key, QString* error);

/** A day in the form yyyy-MM-dd, or an invalid date. */
QDate parseDay(const QString& text);

} // namespace CommandLine
