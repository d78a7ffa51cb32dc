#pragma once

#include "CliContext.h"
#include "CommandLine.h"
#include "PrintedFailureSink.h"
#include "ScriptedPrompter.h"
#include "Session.h"

/**
 * The open data of an existing installation, for the commands that read or
 * change it. Messages of the logic are printed on the error stream and
 * failures go through the command line's failure sink.
 */
class DataSession
{
public:
    explicit DataSession(const CliContext& context);

    /**
     * Loads the store and opens the data. On failure prints why on the error
     * stream and returns false; nothing is created or changed then.
     */
    bool open();

    Session& session() { return m_session; }
    ScriptedPrompter& prompter() { return m_prompter; }

private:
    bool checkInstallation();

    const CliContext& m_context;
    ScriptedPrompter m_prompter;
    Session m_session;
    PrintedFailureSink m_failures;
};

class Arguments;

/**
 * The road of a command that works on the data: its words parsed into a Request
 * (a usage error when they do not parse), the data opened, then the work done.
 */
template <typename Request, typename Parse, typename Work>
ExitCode runOnData(const CliContext& context, Arguments& arguments, Parse parse, Work work)
{
    Request request;
    QString error;
    if (!parse(arguments, &request, &error)) {
        return CommandLine::usageError(context, error);
    }
    DataSession data(context);
    if (!data.open()) {
        return ExitCode::Failure;
    }
    return work(data, request);
}
