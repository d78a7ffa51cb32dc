#include "NextDateCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataSession.h"
#include "NextDateCalculator.h"
#include "Sql.h"

#include <QSqlError>
#include <QSqlQuery>

namespace NextDateCommand {

namespace {

struct Request
{
    bool all = false;
    qint64 id = 0;
    QDate given; ///< invalid: the row's own last dates
};

bool parse(Arguments& arguments, Request* request, QString* error)
{
    const QString givenOption = QStringLiteral("--given");
    const bool givenPresent = arguments.has(givenOption);
    QString given;
    if (!arguments.takeValue(givenOption, &given, error)) {
        return false;
    }
    if (givenPresent) {
        request->given = CommandLine::parseDay(given);
        if (!request->given.isValid()) {
            *error = QStringLiteral("The day '%1' is no date of the form yyyy-MM-dd.").arg(given);
            return false;
        }
    }
    request->all = arguments.takeFlag(QStringLiteral("--all"));
    const QString id = arguments.takePositional();
    if (!arguments.isEmpty()) {
        *error = CommandLine::unexpected(arguments.firstLeft());
        return false;
    }
    if (request->all) {
        if (!id.isEmpty()) {
            *error = QStringLiteral("next-date takes either an ID or --all, not both.");
            return false;
        }
        return true;
    }
    if (id.isEmpty()) {
        *error = QStringLiteral("next-date needs the ServiceUsedID of a service, or --all.");
        return false;
    }
    return CommandLine::parseKey(id, QStringLiteral("ServiceUsedID"), &request->id, error);
}

/** The keys of the services asked for, in order; false after printing why. */
bool serviceIds(const CliContext& context, Session& session, const Request& request,
                QList<qint64>* ids)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    const bool ok = request.all
                        ? Sql::exec(q, QStringLiteral("SELECT ServiceUsedID FROM tblServiceUsed "
                                                      "ORDER BY ServiceUsedID"))
                        : Sql::exec(q,
                                    QStringLiteral("SELECT ServiceUsedID FROM tblServiceUsed "
                                                   "WHERE ServiceUsedID = ?"),
                                    {request.id});
    if (!ok) {
        context.err << q.lastError().text() << Qt::endl;
        return false;
    }
    while (q.next()) {
        ids->append(q.value(0).toLongLong());
    }
    if (!request.all && ids->isEmpty()) {
        context.err
            << QStringLiteral("There is no service with the ServiceUsedID %1.").arg(request.id)
            << Qt::endl;
        return false;
    }
    return true;
}

} // namespace

QString dayText(const QDate& day)
{
    return day.isValid() ? day.toString(QStringLiteral("yyyy-MM-dd")) : QStringLiteral("none");
}

ExitCode run(const CliContext& context, Arguments& arguments)
{
    return runOnData<Request>(
        context, arguments, parse, [&context](DataSession& data, const Request& request) {
            QList<qint64> ids;
            if (!serviceIds(context, data.session(), request, &ids)) {
                return ExitCode::Failure;
            }
            NextDateCalculator calculator(data.session());
            const bool useGiven = request.given.isValid();
            for (const qint64 id : ids) {
                const QDate next = calculator.nextScheduledDate(id, useGiven, request.given);
                if (request.all) {
                    context.out << id << u'\t';
                }
                context.out << dayText(next) << u'\n';
            }
            context.out.flush();
            return ExitCode::Success;
        });
}

} // namespace NextDateCommand
