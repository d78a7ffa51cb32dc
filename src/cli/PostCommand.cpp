#include "PostCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataSession.h"
#include "WorkOrderPosting.h"

namespace PostCommand {

namespace {

QString listed(const QList<qint64>& workOrders)
{
    if (workOrders.isEmpty()) {
        return QStringLiteral("none");
    }
    QStringList numbers;
    for (qint64 workOrder : workOrders) {
        numbers.append(QString::number(workOrder));
    }
    return numbers.join(QStringLiteral(", "));
}

/** A line on the error stream every so many posted lines, when there are many. */
WorkOrderPosting::Progress progress(const CliContext& context)
{
    return [&context](int done, int total) {
        constexpr int Every = 1000;
        if (total >= Every && (done == total || done % Every == 0)) {
            context.err << QStringLiteral("Posting: %1 of %2").arg(done).arg(total) << Qt::endl;
        }
    };
}

} // namespace

ExitCode run(const CliContext& context, Arguments& arguments)
{
    if (!arguments.isEmpty()) {
        return CommandLine::usageError(context, CommandLine::unexpected(arguments.firstLeft()));
    }
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    WorkOrderPosting posting(data.session());
    posting.setProgress(progress(context));
    const WorkOrderPosting::Outcome outcome = posting.postCompleteWorkOrders();
    if (!outcome.ok) {
        // The failure has been printed by the failure sink.
        return ExitCode::Failure;
    }
    context.out << QStringLiteral("Posted: ") << listed(outcome.posted) << Qt::endl
                << QStringLiteral("Held back: ") << listed(outcome.heldBack) << Qt::endl;
    return ExitCode::Success;
}

} // namespace PostCommand
