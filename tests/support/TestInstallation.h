#pragma once

#include "RecordingFailureSink.h"
#include "ScriptedPrompter.h"
#include "Session.h"

#include <QTemporaryDir>
#include <QTest>
#include <memory>

/**
 * A throwaway installation with a new data file on the engine this test run
 * is for (TANDRILL_TEST_ENGINE=pg selects the server of TANDRILL_TEST_PG, in
 * a schema of its own), and an open session with a fixed day, a scripted
 * prompter and a recording failure sink.
 *
 * The first installation of a process is made by DataFile::create; the later
 * ones are copies of it, since hashing the chief's password is slow on purpose.
 * Fresh makes one the slow way, for tests of the making itself.
 */
class TestInstallation
{
public:
    enum Making { Copied, Fresh };

    explicit TestInstallation(const QDate& today = QDate(2025, 3, 1), Making making = Copied);
    ~TestInstallation();

    bool isValid() const { return m_valid; }
    QString error() const { return m_error; }

    Session& session() { return *m_session; }
    ScriptedPrompter& prompter() { return m_prompter; }
    RecordingFailureSink& failures() { return m_failures; }
    Installation installation() const { return Installation(m_dir.path()); }
    QString home() const { return m_dir.path(); }

    /** True when this run is for PostgreSQL. */
    static bool wantsPostgres();
    /** The server's settings from TANDRILL_TEST_PG ("host=… port=… user=… dbname=…"). */
    static bool postgresSettings(ConnectionSettings* settings, QString* reason);
    /** Skips the test (or fails it when TANDRILL_TEST_PG_REQUIRED is set) without a server. */
    static bool engineAvailable(QString* reason);
    /** A new empty schema on the server of settings, named in settings. */
    static bool createPostgresSchema(ConnectionSettings* settings, QString* error);
    /** Drops the schema named in settings with everything in it. */
    static void dropPostgresSchema(const ConnectionSettings& settings);

private:
    QTemporaryDir m_dir;
    ScriptedPrompter m_prompter;
    RecordingFailureSink m_failures;
    std::unique_ptr<Session> m_session;
    ConnectionSettings m_pgSettings;
    bool m_valid = false;
    QString m_error;
};

/** In initTestCase(): skips the whole test on a run for an engine that is not reachable. */
#define TANDRILL_REQUIRE_ENGINE()                                                                  \
    do {                                                                                           \
        QString reason_;                                                                           \
        if (!TestInstallation::engineAvailable(&reason_)) {                                        \
            if (qEnvironmentVariableIsSet("TANDRILL_TEST_PG_REQUIRED"))                            \
                QFAIL(qPrintable(reason_));                                                        \
            QSKIP(qPrintable(reason_));                                                            \
        }                                                                                          \
    } while (false)

/** Makes a TestInstallation named t and fails the test when it could not be made. */
#define TANDRILL_INSTALLATION(t, ...)                                                              \
    TestInstallation t{__VA_ARGS__};                                                               \
    QVERIFY2(t.isValid(), qPrintable(t.error()))
