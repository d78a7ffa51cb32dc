#pragma once

#include "CliContext.h"
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
