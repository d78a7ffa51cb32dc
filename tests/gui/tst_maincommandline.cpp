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
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("error");
        const auto args = [](const char* text) {
            return QStringList{QStringLiteral("tandrill")} +
                   QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
        };
        const QString none;
        QTest::newRow("nothing") << args("") << none << QDate() << none << none << none;
        QTest::newRow("home and today")
            << args("--home /srv/k --today 2025-03-01") << QStringLiteral("/srv/k")
            << QDate(2025, 3, 1) << none << none << none;
        QTest::newRow("home with =")
            << args("--home=/srv/k") << QStringLiteral("/srv/k") << QDate() << none << none << none;
        QTest::newRow("leap day") << args("--today 2024-02-29") << none << QDate(2024, 2, 29)
                                  << none << none << none;
        QTest::newRow("no such day")
            << args("--today 2025-02-29") << none << QDate() << none << none
            << QStringLiteral("The date given with --today, \"2025-02-29\", is not a date of the "
                              "form yyyy-MM-dd.");
        QTest::newRow("other order of day")
            << args("--today 01.03.2025") << none << QDate() << none << none
            << QStringLiteral("The date given with --today, \"01.03.2025\", is not a date of the "
                              "form yyyy-MM-dd.");
        QTest::newRow("short form")
            << args("--today 2025-3-1") << none << QDate() << none << none
            << QStringLiteral("The date given with --today, \"2025-3-1\", is not a date of the "
                              "form yyyy-MM-dd.");
        QTest::newRow("today without value") << args("--today") << none << QDate() << none << none
                                             << QStringLiteral("Missing value after '--today'.");
        QTest::newRow("unknown option") << args("--colour red") << none << QDate() << none << none
                                        << QStringLiteral("Unknown option 'colour'.");
        QTest::newRow("screenshot")
            << args("--screenshot frmMainScreen out.png") << none << QDate()
            << QStringLiteral("frmMainScreen") << QStringLiteral("out.png") << none;
        QTest::newRow("screenshot without file")
            << args("--screenshot frmMainScreen") << none << QDate()
            << QStringLiteral("frmMainScreen") << none
            << QStringLiteral("--screenshot needs the screen's name and one file to write the "
                              "picture to.");
        QTest::newRow("stray argument") << args("out.png") << none << QDate() << none << none
                                        << QStringLiteral("Unexpected argument: out.png");
    }

    void arguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, home);
        QFETCH(QDate, today);
        QFETCH(QString, screen);
        QFETCH(QString, file);
        QFETCH(QString, error);
        const MainCommandLine line = MainCommandLine::parse(arguments);
        QCOMPARE(line.error, error);
        if (!error.isEmpty()) {
            return;
        }
        QCOMPARE(line.home, home);
        QCOMPARE(line.today, today);
        QCOMPARE(line.screenshotScreen, screen);
        QCOMPARE(line.screenshotFile, file);
        QCOMPARE(line.wantsScreenshot(), !screen.isEmpty());
    }

    void helpIsOffered()
    {
        const MainCommandLine line =
            MainCommandLine::parse({QStringLiteral("tandrill"), QStringLiteral("--help")});
        QVERIFY(line.helpRequested);
        QVERIFY(line.error.isEmpty());
        for (const char* option : {"--home", "--today", "--screenshot"}) {
            QVERIFY2(line.helpText.contains(QLatin1String(option)), option);
        }
    }
};

QTEST_GUILESS_MAIN(TestMainCommandLine)
#include "tst_maincommandline.moc"
