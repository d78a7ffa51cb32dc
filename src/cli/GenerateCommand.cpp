#include "GenerateCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "CrewRange.h"
#include "DataSession.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderLists.h"

#include <QSqlRecord>
#include <algorithm>

namespace GenerateCommand {

namespace {

struct Request
{
    WorkOrderFilter filter;
    QStringList units;
};

bool takeDay(Arguments& arguments, const QString& option, QDate* day, QString* error)
{
    QString text;
    if (!arguments.takeValue(option, &text, error)) {
        return false;
    }
    *day = CommandLine::parseDay(text);
    if (!day->isValid()) {
        *error = text.isEmpty()
                     ? QStringLiteral("generate needs --from and --to.")
                     : QStringLiteral("The day '%1' is no date of the form yyyy-MM-dd.").arg(text);
        return false;
    }
    return true;
}

bool takeCrewRange(Arguments& arguments, const QString& option, QString* range, QString* error)
{
    if (!arguments.takeValue(option, range, error)) {
        return false;
    }
    if (!CrewRange::isValid(*range)) {
        *error = QStringLiteral("The crew range '%1' may hold only crew numbers and ranges such "
                                "as 3,7-9.")
                     .arg(*range);
        return false;
    }
    return true;
}

bool parse(Arguments& arguments, Request* request, QString* error)
{
    WorkOrderFilter& f = request->filter;
    if (!takeDay(arguments, QStringLiteral("--from"), &f.from, error) ||
        !takeDay(arguments, QStringLiteral("--to"), &f.to, error) ||
        !takeCrewRange(arguments, QStringLiteral("--crew"), &f.crewRange, error) ||
        !takeCrewRange(arguments, QStringLiteral("--assign"), &f.assignCrew, error) ||
        !arguments.takeValues(QStringLiteral("--unit"), &request->units, error)) {
        return false;
    }
    if (!arguments.isEmpty()) {
        *error = CommandLine::unexpected(arguments.firstLeft());
        return false;
    }
    if (f.to < f.from) {
        *error = QStringLiteral("The date --to lies before --from.");
        return false;
    }
    return true;
}

/** The due machines of the named units, in the order named; false naming one not due. */
bool chooseUnits(const Rows& list, const QStringList& units, QList<qint64>* machines,
                 QString* error)
{
    for (const QString& unit : units) {
        const auto due = std::find_if(list.begin(), list.end(), [&unit](const QSqlRecord& row) {
            return row.value(QStringLiteral("WorkOrderNo")).isNull() &&
                   row.value(QStringLiteral("UnitNo"))
                           .toString()
                           .compare(unit, Qt::CaseInsensitive) == 0;
        });
        if (due == list.end()) {
            *error = QStringLiteral("The unit '%1' has no due service in that range.").arg(unit);
            return false;
        }
        machines->append(due->value(QStringLiteral("EquipmentID")).toLongLong());
    }
    return true;
}

/** A line on the error stream every so many machines of a large fleet. */
WorkOrderGeneration::Progress machineProgress(const CliContext& context)
{
    return [&context](int done, int total) {
        constexpr int Every = 500;
        if (total >= Every && (done == total || done % Every == 0)) {
            context.err << QStringLiteral("Generating: %1 of %2 machines").arg(done).arg(total)
                        << Qt::endl;
        }
    };
}

} // namespace

ExitCode run(const CliContext& context, Arguments& arguments)
{
    return runOnData<Request>(
        context, arguments, parse, [&context](DataSession& data, const Request& request) {
            const Rows list = WorkOrderLists(data.session()).printList(request.filter);
            QList<qint64> machines;
            QString error;
            if (request.units.isEmpty()) {
                machines = WorkOrderLists::dueEquipment(list);
            } else if (!chooseUnits(list, request.units, &machines, &error)) {
                context.err << error << Qt::endl;
                return ExitCode::Failure;
            }
            WorkOrderGeneration generation(data.session());
            generation.setProgress(machineProgress(context));
            QList<qint64> numbers;
            // A failure has been printed by the failure sink; nothing was kept.
            if (!generation.generate(machines, request.filter, &numbers)) {
                return ExitCode::Failure;
            }
            for (qint64 number : numbers) {
                context.out << number << u'\n';
            }
            context.out << Qt::flush;
            return ExitCode::Success;
        });
}

} // namespace GenerateCommand
