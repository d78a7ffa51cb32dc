#include "MainCommandLine.h"

#include <QCommandLineParser>

MainCommandLine MainCommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Korvelle: maintenance manager for fleets of grounds-care equipment."));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption homeOption(
        QStringLiteral("home"),
        QStringLiteral(
            "The installation folder (else TANDRILL_HOME, else ~/.local/share/Tandrill)."),
        QStringLiteral("folder"));
    const QCommandLineOption todayOption(QStringLiteral("today"),
                                         QStringLiteral("Run as if today were this day."),
                                         QStringLiteral("yyyy-MM-dd"));
    const QCommandLineOption screenshotOption(
        QStringLiteral("screenshot"),
        QStringLiteral("Save a PNG picture of the screen named <screen> to <file>, then end."),
        QStringLiteral("screen"));
    parser.addOptions({homeOption, todayOption, screenshotOption});
    parser.addPositionalArgument(QStringLiteral("file"),
                                 QStringLiteral("With --screenshot: the picture to write."),
                                 QStringLiteral("[file]"));

    MainCommandLine line;
    line.helpText = parser.helpText();
    if (!parser.parse(arguments)) {
        line.error = parser.errorText();
        return line;
    }
    line.helpRequested = parser.isSet(helpOption);
    line.versionRequested = parser.isSet(versionOption);
    line.home = parser.value(homeOption);
    line.screenshotScreen = parser.value(screenshotOption);
    const QStringList positional = parser.positionalArguments();

    if (parser.isSet(todayOption)) {
        const QString text = parser.value(todayOption);
        line.today = QDate::fromString(text, Qt::ISODate);
        if (!line.today.isValid() || text.size() != 10) {
            line.error = QStringLiteral("The date given with --today, \"%1\", is not a date of "
                                        "the form yyyy-MM-dd.")
                             .arg(text);
            return line;
        }
    }
    if (parser.isSet(screenshotOption)) {
        if (line.screenshotScreen.isEmpty() || positional.size() != 1) {
            line.error = QStringLiteral("--screenshot needs the screen's name and one file to "
                                        "write the picture to.");
            return line;
        }
        line.screenshotFile = positional.first();
    } else if (!positional.isEmpty()) {
        line.error = QStringLiteral("Unexpected argument: %1").arg(positional.first());
    }
    return line;
}
