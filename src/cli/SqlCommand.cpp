#include "SqlCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "CsvWriter.h"
#include "DataSession.h"

#include <QSqlError>
#include <QSqlQuery>

namespace SqlCommand {

namespace {

/** The index just past a quoted part that starts at i with the quote character. */
qsizetype pastQuoted(const QString& sql, qsizetype i, QChar quote)
{
    for (++i; i < sql.size(); ++i) {
        if (sql.at(i) == quote) {
            if (i + 1 < sql.size() && sql.at(i + 1) == quote) {
                ++i; // a doubled quote stands for itself
                continue;
            }
            return i + 1;
        }
    }
    return i;
}

/** The index just past a dollar-quoted part ($tag$ ... $tag$), or i + 1 when none starts there. */
qsizetype pastDollarQuoted(const QString& sql, qsizetype i)
{
    qsizetype end = i + 1;
    while (end < sql.size() && (sql.at(end).isLetterOrNumber() || sql.at(end) == u'_')) {
        ++end;
    }
    if (end >= sql.size() || sql.at(end) != u'$' || (end > i + 1 && sql.at(i + 1).isDigit())) {
        return i + 1;
    }
    const QString tag = sql.mid(i, end - i + 1);
    const qsizetype close = sql.indexOf(tag, end + 1);
    return close < 0 ? sql.size() : close + tag.size();
}

/** The index just past a comment that starts at i, or i when none starts there. */
qsizetype pastComment(const QString& sql, qsizetype i)
{
    if (sql.mid(i, 2) == QLatin1String("--")) {
        const qsizetype end = sql.indexOf(u'\n', i);
        return end < 0 ? sql.size() : end + 1;
    }
    if (sql.mid(i, 2) == QLatin1String("/*")) {
        const qsizetype end = sql.indexOf(QLatin1String("*/"), i + 2);
        return end < 0 ? sql.size() : end + 2;
    }
    return i;
}

} // namespace

std::optional<QString> singleStatement(const QString& sql)
{
    qsizetype end = -1;
    for (qsizetype i = 0; i < sql.size();) {
        const QChar c = sql.at(i);
        const qsizetype afterComment = pastComment(sql, i);
        if (afterComment > i) {
            i = afterComment;
        } else if (c.isSpace()) {
            ++i;
        } else if (c == u';') {
            end = end < 0 ? i : end;
            ++i;
        } else if (end >= 0) {
            return std::nullopt;
        } else if (c == u'\'' || c == u'"') {
            i = pastQuoted(sql, i, c);
        } else if (c == u'$') {
            i = pastDollarQuoted(sql, i);
        } else {
            ++i;
        }
    }
    return end < 0 ? sql : sql.left(end);
}

ExitCode run(const CliContext& context, Arguments& arguments)
{
    const QString statement = arguments.takePositional();
    if (statement.trimmed().isEmpty()) {
        return CommandLine::usageError(context, QStringLiteral("sql needs a statement."));
    }
    if (!arguments.isEmpty()) {
        return CommandLine::usageError(context, CommandLine::unexpected(arguments.firstLeft()));
    }
    const std::optional<QString> single = singleStatement(statement);
    if (!single) {
        context.err << QStringLiteral("sql runs one statement at a time; nothing was run.")
                    << Qt::endl;
        return ExitCode::Failure;
    }
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    QSqlQuery query(data.session().db());
    query.setForwardOnly(true);
    // The statement is the user's own text: it runs as given, nothing is spliced into it.
    if (!query.exec(*single)) {
        context.err << query.lastError().text() << Qt::endl;
        return ExitCode::Failure;
    }
    if (query.isSelect()) {
        CsvWriter::writeQuery(query, context.out);
    } else {
        context.out << qMax(0, query.numRowsAffected()) << Qt::endl;
    }
    return ExitCode::Success;
}

} // namespace SqlCommand
