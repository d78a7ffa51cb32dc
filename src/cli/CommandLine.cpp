#include "CommandLine.h"

#include "Arguments.h"
#include "GenerateCommand.h"
#include "InitCommand.h"
#include "Installation.h"
#include "NextDateCommand.h"
#include "PostCommand.h"
#include "ReadingCommand.h"
#include "ReportCommand.h"
#include "SqlCommand.h"
#include "WoAdminCommand.h"
#include "WoRecordCommand.h"

namespace CommandLine {

namespace {

using Command = ExitCode (*)(const CliContext&, Arguments&);

/** "wo": the work order commands, named by the word after it. */
ExitCode runWorkOrder(const CliContext& context, Arguments& arguments)
{
    const QString name = arguments.takePositional();
    if (WoAdminCommand::handles(name)) {
        return WoAdminCommand::run(context, name, arguments);
    }
    const Command command = WoRecordCommand::commandNamed(name);
    if (!command) {
        return usageError(
            context,
            name.isEmpty()
                ? QStringLiteral("wo needs one of complete, line, part, delete, unscheduled.")
                : QStringLiteral("Unknown command: wo %1").arg(name));
    }
    return command(context, arguments);
}

Command commandNamed(const QString& name)
{
    if (name == QLatin1String("init")) {
        return InitCommand::run;
    }
    if (name == QLatin1String("sql")) {
        return SqlCommand::run;
    }
    if (name == QLatin1String("next-date")) {
        return NextDateCommand::run;
    }
    if (name == QLatin1String("reading")) {
        return ReadingCommand::run;
    }
    if (name == QLatin1String("post")) {
        return PostCommand::run;
    }
    if (name == QLatin1String("report")) {
        return ReportCommand::run;
    }
    if (name == QLatin1String("generate")) {
        return GenerateCommand::run;
    }
    if (name == QLatin1String("wo")) {
        return runWorkOrder;
    }
    return nullptr;
}

} // namespace

QString usageText()
{
    return QStringLiteral(
        "Usage: tandrill-cli [--home DIR] [--today yyyy-MM-dd] COMMAND [OPTIONS]\n"
        "\n"
        "Commands:\n"
        "  init [--demo [--machines N]] [--password P]\n"
        "       [--pg-host H --pg-port N --pg-database D --pg-user U\n"
        "        [--pg-password W] [--pg-schema S]]\n"
        "      Makes a new installation and its data file, on a PostgreSQL server when\n"
        "      the --pg options are given. Without --password, Chief's password is made\n"
        "      up and printed once. --demo fills the data with a sample fleet of 40\n"
        "      machines, or of N (1 to 100000); the same N gives the same fleet.\n"
        "  sql \"STATEMENT\"\n"
        "      Runs one SQL statement. A query prints CSV with a header row; any other\n"
        "      statement prints the number of rows changed. Put -- before a statement\n"
        "      that begins with a dash.\n"
        "  next-date ID [--given yyyy-MM-dd]\n"
        "  next-date --all [--given yyyy-MM-dd]\n"
        "      Prints the next date of a service on a machine (tblServiceUsed) as\n"
        "      yyyy-MM-dd, or \"none\"; --all prints \"ServiceUsedID<TAB>date\" for each.\n"
        "      --given stands for the last dates performed and scheduled.\n"
        "  reading EQUIPMENTID TYPE VALUE [--date yyyy-MM-dd]\n"
        "      Stores a meter reading (TYPE Counts, Hours, Kilometers or Miles) dated\n"
        "      today or --date, and makes the machine's meter services due that it\n"
        "      reaches. A reading below the last, dated before the last or after\n"
        "      today, or of a period with a work order line open is refused.\n"
        "  post\n"
        "      Posts every Complete work order: done and skipped lines go to history,\n"
        "      their services move on, readings are stored and used parts leave stock.\n"
        "      Prints the work orders posted and those held back because a meter line\n"
        "      lacks its count.\n"
        "  report --list\n"
        "      Lists the reports: procedure, layout and title, separated by tabs.\n"
        "  report NAME [--where TEXT [--value V]...] [--yes] [--format pdf|xlsx|csv]\n"
        "         --out FILE\n"
        "      Runs a report (by procedure or layout name) into a file; the format\n"
        "      defaults to the file's extension. --where is the filter, its ? marks\n"
        "      taking the --value options in order. When the filter breaks the query,\n"
        "      --yes takes the whole list instead of failing.\n"
        "  generate --from yyyy-MM-dd --to yyyy-MM-dd [--crew RANGE] [--assign RANGE]\n"
        "           [--unit UNITNO]...\n"
        "      Makes the work orders of every machine with services due in the dates\n"
        "      and not on a work order yet, or of the units named, and prints their\n"
        "      numbers. --crew narrows by the service's crew, --assign by the machine's\n"
        "      (RANGE as 3,7-9). All are made or none.\n"
        "  wo delete WORKORDERNO\n"
        "      Deletes an open work order with its lines and parts; no history is\n"
        "      written and its services are due again.\n"
        "  wo unscheduled UNITNO...\n"
        "      Makes an empty work order for each unit and prints the numbers.\n"
        "  wo complete WORKORDERNO [--date yyyy-MM-dd | --clear]\n"
        "      Marks a work order Complete today or on --date, with every line that is\n"
        "      not skipped done and its parts used; --clear opens it again and clears\n"
        "      every line's Completed and Used (Skip stays).\n"
        "  wo line LINEID (--complete | --uncomplete | --skip NOTE | --unskip |\n"
        "                  --count N [--yes] | --crew CREWID | --times HH:mm HH:mm)\n"
        "      Records one change on a work order line (its NserviceUsedID). Completing\n"
        "      or skipping the first line marks the order Complete. A count below the\n"
        "      machine's last reading is stored only with --yes. --times stores start\n"
        "      and end, the hours between and their labour cost at the crew's rate.\n"
        "  wo part LINEID PARTID (--used | --unused | --qty Q | --price P)\n"
        "      Records a part of a line: used (only on a Completed line), the quantity\n"
        "      used or the price.\n"
        "\n"
        "Options:\n"
        "  --home DIR          the installation folder; else TANDRILL_HOME, else\n"
        "                      ~/.local/share/Tandrill\n"
        "  --today yyyy-MM-dd  the day to take as today\n"
        "  --help              prints this text\n"
        "\n"
        "Exit codes: 0 done, 1 failed (the reason on stderr), 2 wrong command line.\n");
}

ExitCode usageError(const CliContext& context, const QString& reason)
{
    context.err << QStringLiteral("tandrill-cli: ") << reason << u'\n' << u'\n' << usageText()
                << Qt::flush;
    return ExitCode::Usage;
}

QString unexpected(const QString& word)
{
    if (word.startsWith(u'-')) {
        return QStringLiteral("Unknown option: %1").arg(word);
    }
    return QStringLiteral("Unexpected argument: %1").arg(word);
}

bool parseKey(const QString& text, const QString& column, qint64* key, QString* error)
{
    bool numeric = false;
    *key = text.toLongLong(&numeric);
    if (!numeric || *key <= 0) {
        *error = QStringLiteral("The ID '%1' is no %2.").arg(text, column);
        return false;
    }
    return true;
}

QDate parseDay(const QString& text)
{
    return QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
}

int run(const QStringList& words, QTextStream& out, QTextStream& err)
{
    Arguments arguments(words);
    CliContext context{QString(), QDate(), out, err};
    if (arguments.takeFlag(QStringLiteral("--help")) || arguments.takeFlag(QStringLiteral("-h"))) {
        out << usageText() << Qt::flush;
        return int(ExitCode::Success);
    }
    const bool homeGiven = arguments.has(QStringLiteral("--home"));
    const bool todayGiven = arguments.has(QStringLiteral("--today"));
    QString home, today, error;
    if (!arguments.takeValue(QStringLiteral("--home"), &home, &error) ||
        !arguments.takeValue(QStringLiteral("--today"), &today, &error)) {
        return int(usageError(context, error));
    }
    if (homeGiven && home.isEmpty()) {
        return int(usageError(context, QStringLiteral("The option --home needs a folder.")));
    }
    if (todayGiven) {
        context.today = parseDay(today);
        if (!context.today.isValid()) {
            return int(usageError(
                context,
                QStringLiteral("The day '%1' is no date of the form yyyy-MM-dd.").arg(today)));
        }
    }
    const QString name = arguments.takePositional();
    if (name.isEmpty()) {
        const QString left = arguments.firstLeft();
        return int(usageError(context, left.isEmpty() ? QStringLiteral("No command given.")
                                                      : unexpected(left)));
    }
    const Command command = commandNamed(name);
    if (!command) {
        return int(usageError(context, QStringLiteral("Unknown command: %1").arg(name)));
    }
    context.home = Installation::resolveHome(home);
    const ExitCode code = command(context, arguments);
    out.flush();
    err.flush();
    return int(code);
}

} // namespace CommandLine
