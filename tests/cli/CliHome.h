#pragma once

#include "Database.h"

#include <QDate>
#include <QStringList>
#include <QTemporaryDir>

/** What one run of the command line answered. */
struct CliResult
{
    int code = -1;
    QString out;
    QString err;
};

/** Runs the command line in this process, with its streams captured. */
CliResult runCli(const QStringList& words);

/**
 * A folder for an installation that is not made yet, on the engine this test
 * run is for. For PostgreSQL it makes a fresh schema and drops it at the end.
 */
class CliHome
{
public:
    CliHome();
    ~CliHome();
    CliHome(const CliHome&) = delete;
    CliHome& operator=(const CliHome&) = delete;

    bool isValid() const { return m_valid; }
    QString error() const { return m_error; }

    QString home() const { return m_dir.path() + QStringLiteral("/home"); }
    QString dataFile() const { return home() + QStringLiteral("/Data/Korvelle.db"); }
    QString storeFile() const { return home() + QStringLiteral("/Tandrill.ini"); }

    /** "init" with the server options when this run is for PostgreSQL, then the extra words. */
    QStringList initWords(const QStringList& extra = {}) const;
    /** Runs init with the extra words; false with its error output when it did not succeed. */
    bool init(const QStringList& extra = {QStringLiteral("--password=x")},
              const QDate& today = QDate(2025, 3, 1));
    /** Runs a command on this installation, with --home and --today set. */
    CliResult run(const QStringList& words, const QDate& today = QDate(2025, 3, 1)) const;
    /** The value printed by a one-column, one-row query, its CSV quotes taken off. */
    QString value(const QString& statement) const;

private:
    QTemporaryDir m_dir;
    ConnectionSettings m_pg;
    bool m_valid = false;
    QString m_error;
};

/** Makes a CliHome named h with an installation in it, or fails the test. */
#define TANDRILL_CLI_HOME(h, ...)                                                                  \
    CliHome h;                                                                                     \
    QVERIFY2(h.isValid() && h.init(__VA_ARGS__), qPrintable(h.error()))
