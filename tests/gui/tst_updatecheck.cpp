#include "UpdateCheck.h"

#include <QTest>

class TestUpdateCheck : public QObject
{
    Q_OBJECT

private slots:
    void versionsCompareAsText_data()
    {
        QTest::addColumn<QString>("offered");
        QTest::addColumn<QString>("installed");
        QTest::addColumn<bool>("newer");
        QTest::newRow("10.0 is below 9.0")
            << QStringLiteral("10.0") << QStringLiteral("9.0") << false;
        QTest::newRow("9.0 is above 10.0")
            << QStringLiteral("9.0") << QStringLiteral("10.0") << true;
        QTest::newRow("patch") << QStringLiteral("2.2.1") << QStringLiteral("2.2.0") << true;
        QTest::newRow("equal") << QStringLiteral("2.2.0") << QStringLiteral("2.2.0") << false;
        QTest::newRow("older") << QStringLiteral("2.1.9") << QStringLiteral("2.2.0") << false;
        QTest::newRow("blanks around")
            << QStringLiteral(" 2.2.0 ") << QStringLiteral("2.2.0\t") << false;
        QTest::newRow("longer is above")
            << QStringLiteral("2.2.0.1") << QStringLiteral("2.2.0") << true;
        QTest::newRow("nothing installed") << QStringLiteral("1.0") << QString() << true;
    }

    void versionsCompareAsText()
    {
        QFETCH(QString, offered);
        QFETCH(QString, installed);
        QFETCH(bool, newer);
        QCOMPARE(UpdateCheck::isNewer(offered, installed), newer);
    }

    void documentIsJudged_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("installed");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QUrl>("download");
        using Kind = UpdateCheck::Verdict::Kind;
        const QUrl none;
        QTest::newRow("newer, absolute link")
            << QByteArray("<?xml version=\"1.0\"?><Korvelle><Version>2.3.0</Version>"
                          "<Download>https://dl.example/k-2.3.0.run</Download></Korvelle>")
            << QStringLiteral("2.2.0") << int(Kind::Newer)
            << QStringLiteral("Korvelle2.3.0 is available.")
            << QUrl(QStringLiteral("https://dl.example/k-2.3.0.run"));
        QTest::newRow("newer, relative link")
            << QByteArray("<Korvelle><Download>Korvelle-2.3.run</Download>"
                          "<Version> 2.3 </Version></Korvelle>")
            << QStringLiteral("2.2.0") << int(Kind::Newer)
            << QStringLiteral("Korvelle2.3 is available.")
            << QUrl(QStringLiteral("http://site.example/setup/LatestUPT/Korvelle-2.3.run"));
        QTest::newRow("nested elements")
            << QByteArray("<Update><Korvelle><Version>3.0</Version>"
                          "<Download>/d/3.0</Download></Korvelle></Update>")
            << QStringLiteral("2.2.0") << int(Kind::Newer)
            << QStringLiteral("Korvelle3.0 is available.")
            << QUrl(QStringLiteral("http://site.example/d/3.0"));
        QTest::newRow("same") << QByteArray("<Korvelle><Version>2.2.0</Version></Korvelle>")
                              << QStringLiteral("2.2.0") << int(Kind::Current)
                              << QStringLiteral("No updates available") << none;
        QTest::newRow("10.0 against 9.0")
            << QByteArray("<Korvelle><Version>10.0</Version><Download>x</Download></Korvelle>")
            << QStringLiteral("9.0") << int(Kind::Current) << QStringLiteral("No updates available")
            << none;
        QTest::newRow("no version") << QByteArray("<Korvelle><Download>x</Download></Korvelle>")
                                    << QStringLiteral("2.2.0") << int(Kind::Invalid)
                                    << QStringLiteral("The update document at "
                                                      "http://site.example/setup/LatestUPT/"
                                                      "Korvelle.xml names no version.")
                                    << none;
        QTest::newRow("newer without link")
            << QByteArray("<Korvelle><Version>9.9</Version></Korvelle>") << QStringLiteral("2.2.0")
            << int(Kind::Invalid)
            << QStringLiteral("The update document at http://site.example/setup/LatestUPT/"
                              "Korvelle.xml names no download.")
            << none;
        QTest::newRow("not XML") << QByteArray("<html><body>Not found") << QStringLiteral("2.2.0")
                                 << int(Kind::Invalid) << QString() << none;
        QTest::newRow("empty") << QByteArray() << QStringLiteral("2.2.0") << int(Kind::Invalid)
                               << QString() << none;
    }

    void documentIsJudged()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, installed);
        QFETCH(int, kind);
        QFETCH(QString, message);
        QFETCH(QUrl, download);
        const QUrl from(QStringLiteral("http://site.example/setup/LatestUPT/Korvelle.xml"));
        const UpdateCheck::Verdict verdict = UpdateCheck::evaluate(document, from, installed);
        QCOMPARE(int(verdict.kind), kind);
        if (message.isEmpty()) {
            QVERIFY2(verdict.message.startsWith(
                         QStringLiteral("The update document at %1 cannot be read: ")
                             .arg(from.toString())),
                     qPrintable(verdict.message));
        } else {
            QCOMPARE(verdict.message, message);
        }
        QCOMPARE(verdict.download, download);
    }
};

QTEST_GUILESS_MAIN(TestUpdateCheck)
#include "tst_updatecheck.moc"
