#include "WoRecordCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataHelpers.h"
#include "DataSession.h"
#include "ServiceTime.h"
#include "WorkOrderRecording.h"

#include <QRegularExpression>
#include <functional>

namespace WoRecordCommand {

namespace {

using Edit = WorkOrderRecording::Edit;
/** One edit, run once the data is open and the record found. */
using Action = std::function<Edit(WorkOrderRecording&)>;

bool matches(const QString& pattern, const QString& text)
{
    return QRegularExpression(QStringLiteral("^(?:%1)$").arg(pattern)).match(text).hasMatch();
}

/** Money and quantities as the grids take them: up to 99999.99. */
bool parseAmount(const QString& text, double* amount, QString* error)
{
    if (!matches(QStringLiteral("[0-9]{1,5}(\\.[0-9]{0,2})?"), text)) {
        *error = QStringLiteral("The amount '%1' is no number from 0 to 99999.99.").arg(text);
        return false;
    }
    *amount = text.toDouble();
    return true;
}

QTime parseClock(const QString& text, QString* error)
{
    const QTime time = QTime::fromString(text, QStringLiteral("H:mm"));
    if (!time.isValid()) {
        *error = QStringLiteral("The time '%1' is no time of the form HH:mm.").arg(text);
    }
    return time;
}

/** Exactly one of the switches and value options; the name of the one given. */
bool onlyOne(const Arguments& arguments, const QStringList& names, QString* chosen, QString* error)
{
    for (const QString& name : names) {
        if (arguments.has(name)) {
            if (!chosen->isEmpty()) {
                *error =
                    QStringLiteral("Give only one of %1.").arg(names.join(QStringLiteral(", ")));
                return false;
            }
            *chosen = name;
        }
    }
    return true;
}

ExitCode finish(const CliContext& context, Edit edit, const QString& refusal = QString())
{
    if (edit == Edit::Stored || edit == Edit::Unchanged) {
        return ExitCode::Success;
    }
    // A failure has been printed by the failure sink, a told refusal by the prompter.
    if (edit == Edit::Refused && !refusal.isEmpty()) {
        context.err << refusal << Qt::endl;
    }
    return ExitCode::Failure;
}

ExitCode refuse(const CliContext& context, const QString& text)
{
    context.err << text << Qt::endl;
    return ExitCode::Failure;
}

/** Opens the data, finds the line and runs the action on it. */
ExitCode onLine(const CliContext& context, qint64 lineId, bool yes,
                const std::function<ExitCode(WorkOrderRecording&, const WorkOrderRecording::Line&,
                                             Session&)>& action)
{
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    data.prompter().setDefaultAnswer(yes ? Prompter::Answer::Yes : Prompter::Answer::No);
    WorkOrderRecording recording(data.session());
    const std::optional<WorkOrderRecording::Line> found = recording.line(lineId);
    if (!found) {
        return refuse(
            context,
            QStringLiteral("There is no work order line with the NserviceUsedID %1.").arg(lineId));
    }
    return action(recording, *found, data.session());
}

struct LineRequest
{
    qint64 lineId = 0;
    QString action;
    QString value;
    QString end; ///< the end time of --times
    bool yes = false;
};

bool parseLine(Arguments& arguments, LineRequest* request, QString* error)
{
    const QStringList switches = {QStringLiteral("--complete"), QStringLiteral("--uncomplete"),
                                  QStringLiteral("--unskip")};
    const QStringList valued = {QStringLiteral("--skip"), QStringLiteral("--count"),
                                QStringLiteral("--crew"), QStringLiteral("--times")};
    if (!onlyOne(arguments, switches + valued, &request->action, error)) {
        return false;
    }
    request->yes = arguments.takeFlag(QStringLiteral("--yes"));
    if (valued.contains(request->action) &&
        !arguments.takeValue(request->action, &request->value, error)) {
        return false;
    }
    if (switches.contains(request->action)) {
        arguments.takeFlag(request->action);
    }
    const QString id = arguments.takePositional();
    if (request->action == QLatin1String("--times")) {
        request->end = arguments.takePositional();
    }
    if (!arguments.isEmpty()) {
        *error = CommandLine::unexpected(arguments.firstLeft());
        return false;
    }
    if (request->action.isEmpty() || id.isEmpty()) {
        *error = QStringLiteral("wo line needs a line's NserviceUsedID and one change.");
        return false;
    }
    if (request->action == QLatin1String("--skip") && DataHelpers::isBlank(request->value)) {
        *error = QStringLiteral("--skip needs the reason for skipping.");
        return false;
    }
    return CommandLine::parseKey(id, QStringLiteral("NserviceUsedID"), &request->lineId, error);
}

ExitCode changeTimes(const CliContext& context, const LineRequest& request, QString* error)
{
    const QTime start = parseClock(request.value, error);
    const QTime end = start.isValid() ? parseClock(request.end, error) : QTime();
    if (!end.isValid()) {
        return CommandLine::usageError(context, *error);
    }
    if (start > end) {
        return CommandLine::usageError(
            context,
            QStringLiteral("The start %1 lies after the end %2.").arg(request.value, request.end));
    }
    return onLine(
        context, request.lineId, request.yes,
        [&](WorkOrderRecording&, const WorkOrderRecording::Line& line, Session& s) {
            const ServiceTime::Entry entry{start, end, ServiceTime::hoursBetween(start, end)};
            return ServiceTime::save(s, line.lineId, ServiceTime::LineTable, entry)
                       ? ExitCode::Success
                       : ExitCode::Failure;
        });
}

ExitCode changeCrew(const CliContext& context, const LineRequest& request, QString* error)
{
    qint64 crewId = 0;
    if (!CommandLine::parseKey(request.value, QStringLiteral("CrewID"), &crewId, error)) {
        return CommandLine::usageError(context, *error);
    }
    return onLine(context, request.lineId, request.yes,
                  [&](WorkOrderRecording& r, const WorkOrderRecording::Line& line, Session& s) {
                      if (DataHelpers::recordCount(s, QStringLiteral("tblCrew"),
                                                   {QStringLiteral("CrewID = ?"), {crewId}}) == 0) {
                          return refuse(
                              context,
                              QStringLiteral("There is no crew with the CrewID %1.").arg(crewId));
                      }
                      return finish(context, r.setLineCrew(line.lineId, crewId));
                  });
}

ExitCode changeCount(const CliContext& context, const LineRequest& request, QString* error)
{
    if (!matches(QStringLiteral("[0-9]{1,9}"), request.value)) {
        *error = QStringLiteral("The count '%1' is no whole number.").arg(request.value);
        return CommandLine::usageError(context, *error);
    }
    const qint64 count = request.value.toLongLong();
    return onLine(context, request.lineId, request.yes,
                  [&](WorkOrderRecording& r, const WorkOrderRecording::Line& line, Session&) {
                      return finish(context, r.setLineCount(line.lineId, count));
                  });
}

ExitCode changeState(const CliContext& context, const LineRequest& request)
{
    return onLine(context, request.lineId, request.yes,
                  [&](WorkOrderRecording& r, const WorkOrderRecording::Line& line, Session&) {
                      const QString& a = request.action;
                      if (a == QLatin1String("--skip")) {
                          return finish(context, r.skipLine(line.lineId, request.value));
                      }
                      if (a == QLatin1String("--unskip")) {
                          return finish(context, r.unskipLine(line.lineId));
                      }
                      return finish(context, r.setLineCompleted(line.lineId,
                                                                a == QLatin1String("--complete")));
                  });
}

} // namespace

Command commandNamed(const QString& name)
{
    if (name == QLatin1String("complete")) {
        return complete;
    }
    if (name == QLatin1String("line")) {
        return line;
    }
    if (name == QLatin1String("part")) {
        return part;
    }
    return nullptr;
}

ExitCode complete(const CliContext& context, Arguments& arguments)
{
    QString date, error;
    const bool clear = arguments.takeFlag(QStringLiteral("--clear"));
    if (!arguments.takeValue(QStringLiteral("--date"), &date, &error)) {
        return CommandLine::usageError(context, error);
    }
    const QString number = arguments.takePositional();
    qint64 workOrderNo = 0;
    if (!arguments.isEmpty()) {
        return CommandLine::usageError(context, CommandLine::unexpected(arguments.firstLeft()));
    }
    if (clear && !date.isEmpty()) {
        return CommandLine::usageError(context,
                                       QStringLiteral("Give --date or --clear, not both."));
    }
    const QDate day = CommandLine::parseDay(date);
    if (!date.isEmpty() && !day.isValid()) {
        return CommandLine::usageError(
            context, QStringLiteral("The day '%1' is no date of the form yyyy-MM-dd.").arg(date));
    }
    if (!CommandLine::parseKey(number, QStringLiteral("WorkOrderNo"), &workOrderNo, &error)) {
        return CommandLine::usageError(context, error);
    }
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    WorkOrderRecording recording(data.session());
    if (!recording.order(workOrderNo)) {
        return refuse(
            context,
            QStringLiteral("There is no work order with the WorkOrderNo %1.").arg(workOrderNo));
    }
    if (day.isValid()) {
        return finish(context, recording.setCompletedDate(workOrderNo, day));
    }
    return finish(context, recording.setComplete(workOrderNo, !clear));
}

ExitCode line(const CliContext& context, Arguments& arguments)
{
    LineRequest request;
    QString error;
    if (!parseLine(arguments, &request, &error)) {
        return CommandLine::usageError(context, error);
    }
    if (request.action == QLatin1String("--times")) {
        return changeTimes(context, request, &error);
    }
    if (request.action == QLatin1String("--crew")) {
        return changeCrew(context, request, &error);
    }
    if (request.action == QLatin1String("--count")) {
        return changeCount(context, request, &error);
    }
    return changeState(context, request);
}

ExitCode part(const CliContext& context, Arguments& arguments)
{
    QString action, value, error;
    const QStringList switches = {QStringLiteral("--used"), QStringLiteral("--unused")};
    const QStringList valued = {QStringLiteral("--qty"), QStringLiteral("--price")};
    if (!onlyOne(arguments, switches + valued, &action, &error) ||
        (valued.contains(action) && !arguments.takeValue(action, &value, &error))) {
        return CommandLine::usageError(context, error);
    }
    if (switches.contains(action)) {
        arguments.takeFlag(action);
    }
    const QString id = arguments.takePositional();
    const QString partId = arguments.takePositional();
    qint64 lineId = 0;
    double amount = 0;
    if (!arguments.isEmpty()) {
        return CommandLine::usageError(context, CommandLine::unexpected(arguments.firstLeft()));
    }
    if (action.isEmpty() || partId.isEmpty()) {
        return CommandLine::usageError(
            context,
            QStringLiteral("wo part needs a line's NserviceUsedID, a part and one change."));
    }
    if (!CommandLine::parseKey(id, QStringLiteral("NserviceUsedID"), &lineId, &error) ||
        (valued.contains(action) && !parseAmount(value, &amount, &error))) {
        return CommandLine::usageError(context, error);
    }
    return onLine(
        context, lineId, false,
        [&](WorkOrderRecording& r, const WorkOrderRecording::Line& line, Session&) {
            const auto parts = r.parts(lineId);
            const bool onLine = std::any_of(parts.begin(), parts.end(),
                                            [&](const auto& p) { return p.partId == partId; });
            if (!onLine) {
                return refuse(
                    context, QStringLiteral("The line %1 has no part %2.").arg(lineId).arg(partId));
            }
            if (action == QLatin1String("--qty")) {
                return finish(context, r.setPartQuantityUsed(lineId, partId, value));
            }
            if (action == QLatin1String("--price")) {
                return finish(context, r.setPartPrice(lineId, partId, amount));
            }
            return finish(context, r.setPartUsed(lineId, partId, action == QLatin1String("--used")),
                          QStringLiteral("The line %1 is not Completed: a part is used "
                                         "only on a line that was done.")
                              .arg(line.lineId));
        });
}

} // namespace WoRecordCommand
