#include "WoAdminCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataSession.h"
#include "WorkOrderRecords.h"

#include <QSqlRecord>

namespace WoAdminCommand {

namespace {

const QString Delete = QStringLiteral("delete");
const QString Unscheduled = QStringLiteral("unscheduled");

ExitCode deleteWorkOrder(const CliContext& context, Arguments& arguments)
{
    const QString text = arguments.takePositional();
    QString error;
    qint64 number = 0;
    if (!arguments.isEmpty()) {
        return CommandLine::usageError(context, CommandLine::unexpected(arguments.firstLeft()));
    }
    if (!CommandLine::parseKey(text, QStringLiteral("WorkOrderNo"), &number, &error)) {
        return CommandLine::usageError(context, error);
    }
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    WorkOrderRecords records(data.session());
    if (!records.workOrderExists(number)) {
        context.err << QStringLiteral("There is no open work order %1.").arg(number) << Qt::endl;
        return ExitCode::Failure;
    }
    return records.deleteWorkOrder(number) ? ExitCode::Success : ExitCode::Failure;
}

/** The machines of the unit numbers, in order; false naming a unit that does not exist. */
bool findMachines(Session& session, const QStringList& units, QList<qint64>* machines,
                  QString* error)
{
    for (const QString& unit : units) {
        const Rows rows = DataHelpers::read(
            session, QStringLiteral("WoAdminCommand"), QStringLiteral("findMachines"),
            QStringLiteral("SELECT EquipmentID FROM tblEquipment WHERE LOWER(UnitNo) = LOWER(?) "
                           "ORDER BY EquipmentID"),
            {unit});
        if (rows.isEmpty()) {
            *error = QStringLiteral("There is no machine with the unit number '%1'.").arg(unit);
            return false;
        }
        machines->append(rows.first().value(0).toLongLong());
    }
    return true;
}

ExitCode addUnscheduled(const CliContext& context, Arguments& arguments)
{
    QStringList units;
    for (QString unit = arguments.takePositional(); !unit.isEmpty();
         unit = arguments.takePositional()) {
        units.append(unit);
    }
    if (!arguments.isEmpty() || units.isEmpty()) {
        return CommandLine::usageError(
            context, units.isEmpty() ? QStringLiteral("wo unscheduled needs a "
                                                      "unit number.")
                                     : CommandLine::unexpected(arguments.firstLeft()));
    }
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    QList<qint64> machines;
    QList<qint64> numbers;
    QString error;
    if (!findMachines(data.session(), units, &machines, &error)) {
        context.err << error << Qt::endl;
        return ExitCode::Failure;
    }
    if (!WorkOrderRecords(data.session()).addUnscheduled(machines, &numbers)) {
        return ExitCode::Failure;
    }
    for (qint64 number : numbers) {
        context.out << number << u'\n';
    }
    context.out << Qt::flush;
    return ExitCode::Success;
}

} // namespace

bool handles(const QString& subcommand)
{
    return subcommand == Delete || subcommand == Unscheduled;
}

ExitCode run(const CliContext& context, const QString& subcommand, Arguments& arguments)
{
    return subcommand == Delete ? deleteWorkOrder(context, arguments)
                                : addUnscheduled(context, arguments);
}

} // namespace WoAdminCommand
