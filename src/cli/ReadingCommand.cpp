#include "ReadingCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataSession.h"
#include "EquipmentManager.h"
#include "MeterReadings.h"
#include "ScheduleCodes.h"

#include <QRegularExpression>

namespace ReadingCommand {

namespace {

struct Request
{
    qint64 equipmentId = 0;
    QString countType;
    qint64 value = 0;
    QDate date; ///< invalid: today
};

bool parse(Arguments& arguments, Request* request, QString* error)
{
    QString date;
    if (!arguments.takeValue(QStringLiteral("--date"), &date, error)) {
        return false;
    }
    if (!date.isEmpty()) {
        request->date = CommandLine::parseDay(date);
        if (!request->date.isValid()) {
            *error = QStringLiteral("The day '%1' is no date of the form yyyy-MM-dd.").arg(date);
            return false;
        }
    }
    const QString id = arguments.takePositional();
    request->countType = arguments.takePositional();
    const QString value = arguments.takePositional();
    if (!arguments.isEmpty()) {
        *error = CommandLine::unexpected(arguments.firstLeft());
        return false;
    }
    if (value.isEmpty()) {
        *error = QStringLiteral("reading needs an EquipmentID, a count type and a value.");
        return false;
    }
    if (!CommandLine::parseKey(id, QStringLiteral("EquipmentID"), &request->equipmentId, error)) {
        return false;
    }
    if (!ScheduleCodes::isMeterPeriod(ScheduleCodes::periodCode(request->countType))) {
        *error = QStringLiteral("The count type '%1' is none of Counts, Hours, Kilometers, Miles.")
                     .arg(request->countType);
        return false;
    }
    if (!QRegularExpression(QStringLiteral("^[0-9]{1,9}$")).match(value).hasMatch()) {
        *error = QStringLiteral("The value '%1' is no whole number.").arg(value);
        return false;
    }
    request->value = value.toLongLong();
    return true;
}

} // namespace

ExitCode run(const CliContext& context, Arguments& arguments)
{
    return runOnData<Request>(
        context, arguments, parse, [&context](DataSession& data, const Request& request) {
            Session& session = data.session();
            if (!EquipmentManager(session).find(request.equipmentId)) {
                context.err << QStringLiteral("There is no machine with the EquipmentID %1.")
                                   .arg(request.equipmentId)
                            << Qt::endl;
                return ExitCode::Failure;
            }
            QString refusal;
            const QDate date = request.date.isValid() ? request.date : session.today();
            if (MeterReadings(session).addCheckedCount(request.equipmentId, date, request.countType,
                                                       request.value, &refusal)) {
                return ExitCode::Success;
            }
            // A failure has been printed by the failure sink.
            if (!refusal.isEmpty()) {
                context.err << refusal << Qt::endl;
            }
            return ExitCode::Failure;
        });
}

} // namespace ReadingCommand
