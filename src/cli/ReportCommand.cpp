#include "ReportCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataSession.h"
#include "Options.h"
#include "ReportCatalogue.h"
#include "ReportExport.h"
#include "ReportRunner.h"

#include <QFileInfo>

namespace ReportCommand {

namespace {

const QString Guid = QStringLiteral("GUID");

struct Request
{
    const ReportDefinition* report = nullptr;
    SqlFilter filter;
    ReportExport::Format format = ReportExport::Format::Pdf;
    QString out;
    bool yes = false;
};

ExitCode list(const CliContext& context)
{
    for (const ReportDefinition& report : ReportCatalogue::all()) {
        context.out << report.procedure << u'\t' << report.layout << u'\t' << report.title << u'\n';
    }
    return ExitCode::Success;
}

bool takeFormat(Arguments& arguments, Request* request, QString* error)
{
    QString name;
    if (!arguments.takeValue(QStringLiteral("--format"), &name, error) ||
        !arguments.takeValue(QStringLiteral("--out"), &request->out, error)) {
        return false;
    }
    if (request->out.isEmpty()) {
        *error = QStringLiteral("report needs --out FILE.");
        return false;
    }
    if (name.isEmpty()) {
        name = QFileInfo(request->out).suffix();
    }
    const std::optional<ReportExport::Format> format = ReportExport::formatNamed(name);
    if (!format) {
        *error = QStringLiteral("The format '%1' is none of pdf, xlsx, csv.").arg(name);
        return false;
    }
    request->format = *format;
    return true;
}

bool parse(Arguments& arguments, Request* request, QString* error)
{
    const QString name = arguments.takePositional();
    request->report = ReportCatalogue::find(name);
    if (!request->report) {
        *error = name.isEmpty() ? QStringLiteral("report needs a report's name or --list.")
                                : QStringLiteral("No report is named %1.").arg(name);
        return false;
    }
    request->yes = arguments.takeFlag(QStringLiteral("--yes"));
    QStringList values;
    if (!arguments.takeValue(QStringLiteral("--where"), &request->filter.where, error) ||
        !arguments.takeValues(QStringLiteral("--value"), &values, error) ||
        !takeFormat(arguments, request, error)) {
        return false;
    }
    for (const QString& value : std::as_const(values)) {
        request->filter.values.append(value);
    }
    if (!request->report->takesFilter && !request->filter.where.trimmed().isEmpty()) {
        *error = QStringLiteral("The report %1 takes no filter.").arg(request->report->procedure);
        return false;
    }
    if (!arguments.isEmpty()) {
        *error = CommandLine::unexpected(arguments.firstLeft());
        return false;
    }
    return true;
}

/** Tells the pages written on the error stream, a line every so many. */
ReportPainter::Progress pageProgress(const CliContext& context)
{
    return [&context](int page, int pages) {
        constexpr int Every = 50;
        if (page == pages || page % Every == 0) {
            context.err << QStringLiteral("Page %1 of %2 written").arg(page).arg(pages) << Qt::endl;
        }
    };
}

} // namespace

ExitCode run(const CliContext& context, Arguments& arguments)
{
    if (arguments.takeFlag(QStringLiteral("--list"))) {
        return arguments.isEmpty() ? list(context)
                                   : CommandLine::usageError(
                                         context, CommandLine::unexpected(arguments.firstLeft()));
    }
    return runOnData<Request>(
        context, arguments, parse, [&context](DataSession& data, const Request& request) {
            // Options are read under the workstation's identity, which the desktop gives at its
            // first start: a command line that runs first gives it the same way.
            if (Options::registryValue(data.session(), Guid).isEmpty()) {
                Options::setRegistryValue(data.session(), Guid, Options::newGuid());
            }
            data.prompter().setDefaultAnswer(request.yes ? Prompter::Answer::Yes
                                                         : Prompter::Answer::No);
            bool written = false;
            QString error;
            ReportRunner runner(data.session(), [&](ReportDocument& document) {
                written = ReportExport::write(document, request.format, request.out, &error,
                                              pageProgress(context));
            });
            if (!runner.show(*request.report, request.filter)) {
                return ExitCode::Failure;
            }
            if (!written) {
                context.err << error << Qt::endl;
                return ExitCode::Failure;
            }
            context.out << QStringLiteral("Written: ") << request.out << Qt::endl;
            return ExitCode::Success;
        });
}

} // namespace ReportCommand
