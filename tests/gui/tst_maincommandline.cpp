#include "MainCommandLine.h"

#include <QTest>

class TestMainCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void arguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("home");
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QString>("screenshot"); // "screen file"
        QTest::addColumn<QString>("error");
        const auto row = [](const char* arguments, const char* home, QDate today,
                            const char* screenshot, const QString& error = QString()) {
            QTest::newRow(*arguments ? arguments : "nothing")
                << QStringList{QStringLiteral("tandrill")} +
                       QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts)
                << QString::fromLatin1(home) << today << QString::fromLatin1(screenshot) << error;
        };
        row("", "", QDate(), "");
        row("--home /srv/k --today 2024-02-29", "/srv/k", QDate(2024, 2, 29), "");
        row("--today 2025-02-29", "", QDate(), "",
            QStringLiteral("The date given with --today, \"2025-02-29\", is not a date of the "
                           "form yyyy-MM-dd."));
        row("--colour red", "", QDate(), "", QStringLiteral("Unknown option 'colour'."));
        row("--screenshot frmMainScreen out.png", "", QDate(), "frmMainScreen out.png");
        row("--screenshot frmMainScreen", "", QDate(), "",
            QStringLiteral("--screenshot needs the screen's name and one file to write the "
                           "picture to."));
        row("out.png", "", QDate(), "", QStringLiteral("Unexpected argument: out.png"));
    }

    void arguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, home);
        QFETCH(QDate, today);
        QFETCH(QString, screenshot);
        QFETCH(QString, error);
        const MainCommandLine line = MainCommandLine::parse(arguments);
        QCOMPARE(line.error, error);
        if (error.isEmpty()) {
            QCOMPARE(line.home, home);
            QCOMPARE(line.today, today);
            QCOMPARE(QStringList({line.screenshotScreen, line.screenshotFile}).join(u' ').trimmed(),
                     screenshot);
            QCOMPARE(line.wantsScreenshot(), !screenshot.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestMainCommandLine)
#include "tst_maincommandline.moc"
