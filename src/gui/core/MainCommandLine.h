#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

/**
 * The desktop program's command line:
 * tandrill [--home DIR] [--today yyyy-MM-dd] [--screenshot SCREEN FILE].
 */
struct MainCommandLine
{
    /** Exit code of a run stopped by a wrong command line. */
    static constexpr int UsageExitCode = 2;

    QString home;
    QDate today;
    QString screenshotScreen;
    QString screenshotFile;
    bool helpRequested = false;
    bool versionRequested = false;
    QString helpText;
    /** Why the command line cannot be followed; empty when it can. */
    QString error;

    bool wantsScreenshot() const { return !screenshotScreen.isEmpty(); }

    /** Reads arguments (the program's name first); a wrong one fills error. */
    static MainCommandLine parse(const QStringList& arguments);
};
