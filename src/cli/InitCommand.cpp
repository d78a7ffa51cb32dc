#include "InitCommand.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "DataFile.h"
#include "DataSession.h"
#include "DemoFleet.h"
#include "Installation.h"
#include "LayoutFiles.h"
#include "PasswordHash.h"

#include <algorithm>

namespace InitCommand {

namespace {

struct Request
{
    bool demo = false;
    int machines = DemoFleet::DefaultMachines;
    bool passwordGiven = false;
    DataFile::NewInstallation data;
};

const QString PgHost = QStringLiteral("--pg-host");
const QString PgPort = QStringLiteral("--pg-port");
const QString PgDatabase = QStringLiteral("--pg-database");
const QString PgUser = QStringLiteral("--pg-user");
const QString PgPassword = QStringLiteral("--pg-password");
const QString PgSchema = QStringLiteral("--pg-schema");
const QString Machines = QStringLiteral("--machines");

/** The size of the demo fleet; false with a reason when it is no size or there is no fleet. */
bool takeMachines(Arguments& arguments, Request* request, QString* error)
{
    if (!arguments.has(Machines)) {
        return true;
    }
    QString text;
    if (!arguments.takeValue(Machines, &text, error)) {
        return false;
    }
    if (!request->demo) {
        *error = QStringLiteral("The option %1 needs --demo.").arg(Machines);
        return false;
    }
    const bool digits = !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    bool inRange = false;
    const int machines = text.toInt(&inRange);
    if (!digits || !inRange || machines < 1 || machines > DemoFleet::MaxMachines) {
        *error = QStringLiteral("The number of machines '%1' is no whole number from 1 to %2.")
                     .arg(text)
                     .arg(DemoFleet::MaxMachines);
        return false;
    }
    request->machines = machines;
    return true;
}

/** The server options; false with a reason when they are incomplete or wrong. */
bool takeServer(Arguments& arguments, ConnectionSettings* settings, QString* error)
{
    QString host, port, database, user, password, schema;
    if (!arguments.takeValue(PgHost, &host, error) || !arguments.takeValue(PgPort, &port, error) ||
        !arguments.takeValue(PgDatabase, &database, error) ||
        !arguments.takeValue(PgUser, &user, error) ||
        !arguments.takeValue(PgPassword, &password, error) ||
        !arguments.takeValue(PgSchema, &schema, error)) {
        return false;
    }
    const bool anyGiven = !(host + port + database + user + password + schema).isEmpty();
    if (!anyGiven) {
        return true; // the embedded file
    }
    if (host.isEmpty() || port.isEmpty() || database.isEmpty() || user.isEmpty()) {
        *error = QStringLiteral("A PostgreSQL data file needs %1, %2, %3 and %4.")
                     .arg(PgHost, PgPort, PgDatabase, PgUser);
        return false;
    }
    bool numeric = false;
    const int portNumber = port.toInt(&numeric);
    if (!numeric || portNumber <= 0 || portNumber > 65535) {
        *error = QStringLiteral("The port '%1' is no port number.").arg(port);
        return false;
    }
    settings->engine = SqlDialect::Engine::PostgreSQL;
    settings->host = host;
    settings->port = portNumber;
    settings->databaseName = database;
    settings->user = user;
    settings->password = password;
    settings->schema = schema;
    return true;
}

bool parse(Arguments& arguments, Request* request, QString* error)
{
    const QString passwordOption = QStringLiteral("--password");
    request->demo = arguments.takeFlag(QStringLiteral("--demo"));
    request->passwordGiven = arguments.has(passwordOption);
    QString password;
    if (!arguments.takeValue(passwordOption, &password, error) ||
        !takeMachines(arguments, request, error) ||
        !takeServer(arguments, &request->data.connection, error)) {
        return false;
    }
    if (!arguments.isEmpty()) {
        *error = CommandLine::unexpected(arguments.firstLeft());
        return false;
    }
    if (request->passwordGiven && password.isEmpty()) {
        *error = QStringLiteral("The password of Chief must not be empty.");
        return false;
    }
    request->data.chiefPassword =
        request->passwordGiven ? password : PasswordHash::randomPassword();
    request->data.version = QStringLiteral(TANDRILL_VERSION);
    return true;
}

/** Tells long steps on the error stream, a line every so many. */
DemoFleet::Progress stepProgress(const CliContext& context)
{
    return [&context](const QString& step, int done, int total) {
        constexpr int Every = 1000;
        if (total >= Every && (done == total || done % Every == 0)) {
            context.err << QStringLiteral("%1: %2 of %3").arg(step).arg(done).arg(total)
                        << Qt::endl;
        }
    };
}

ExitCode fillDemo(const CliContext& context, int machines)
{
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    DemoFleet demo(data.session(), machines);
    demo.setProgress(stepProgress(context));
    QString error;
    if (!demo.generate(&error)) {
        context.err << QStringLiteral("The demo fleet could not be made: ") << error << Qt::endl;
        return ExitCode::Failure;
    }
    context.out << QStringLiteral("Demo fleet: ") << demo.summary() << Qt::endl;
    return ExitCode::Success;
}

} // namespace

ExitCode run(const CliContext& context, Arguments& arguments)
{
    Request request;
    QString error;
    if (!parse(arguments, &request, &error)) {
        return CommandLine::usageError(context, error);
    }
    const Installation installation(context.home);
    if (!DataFile::create(installation, request.data, &error) ||
        !LayoutFiles::installStandard(installation, &error)) {
        context.err << error << Qt::endl;
        return ExitCode::Failure;
    }
    ConnectionSettings where = request.data.connection;
    if (where.engine == SqlDialect::Engine::SQLite) {
        where.filePath = installation.dataFile();
    }
    context.out << QStringLiteral("Installation created in ") << installation.home() << u'\n'
                << QStringLiteral("Data: ") << where.describe() << Qt::endl;
    if (!request.passwordGiven) {
        context.out << QStringLiteral("Password of Chief: ") << request.data.chiefPassword
                    << Qt::endl;
    }
    return request.demo ? fillDemo(context, request.machines) : ExitCode::Success;
}

} // namespace InitCommand
