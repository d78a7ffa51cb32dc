#include "UpdateCheck.h"

#include <QTest>

class TestUpdateCheck : public QObject
{
    Q_OBJECT

private slots:
    void documentIsJudged_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("installed");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("message"); // %1 is the document's address
        QTest::addColumn<QUrl>("download");
        using Kind = UpdateCheck::Verdict::Kind;
        const auto row = [](const char* name, const char* document, const char* installed,
                            Kind kind, const char* message, const char* download = "") {
            QTest::newRow(name) << QByteArray(document) << QString::fromLatin1(installed)
                                << int(kind) << QString::fromLatin1(message)
                                << QUrl(QString::fromLatin1(download));
        };
        row("newer, absolute link",
            "<?xml version=\"1.0\"?><Korvelle><Version>2.3.0</Version>"
            "<Download>https://dl.example/k-2.3.0.run</Download></Korvelle>",
            "2.2.0", Kind::Newer, "Korvelle2.3.0 is available.", "https://dl.example/k-2.3.0.run");
        // Versions compare as text: 9.0 is above 10.0.
        row("newer as text, relative link",
            "<Korvelle><Download>Korvelle-9.0.run</Download><Version> 9.0 </Version></Korvelle>",
            "10.0", Kind::Newer, "Korvelle9.0 is available.",
            "http://site.example/setup/LatestUPT/Korvelle-9.0.run");
        row("same", "<Korvelle><Version>2.2.0</Version></Korvelle>", "2.2.0", Kind::Current,
            "No updates available");
        row("older as text", "<Korvelle><Version>10.0</Version></Korvelle>", "9.0", Kind::Current,
            "No updates available");
        row("no version", "<Korvelle><Download>x</Download></Korvelle>", "2.2.0", Kind::Invalid,
            "The update document at %1 names no version.");
        row("newer without link", "<Korvelle><Version>9.9</Version></Korvelle>", "2.2.0",
            Kind::Invalid, "The update document at %1 names no download.");
        row("not XML", "<html><body>Not found", "2.2.0", Kind::Invalid,
            "The update document at %1 cannot be read: ");
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
        // The reader's own words follow the colon.
        message.replace(QStringLiteral("%1"), from.toString());
        QVERIFY2(message.endsWith(u' ') ? verdict.message.startsWith(message)
                                        : verdict.message == message,
                 qPrintable(verdict.message));
        QCOMPARE(verdict.download, download);
    }
};

QTEST_GUILESS_MAIN(TestUpdateCheck)
#include "tst_updatecheck.moc"
