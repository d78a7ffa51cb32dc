#include "LogScreen.h"
#include "ScreenTest.h"
#include "TestInstallation.h"

#include <QDir>
#include <QFileInfo>
#include <QPlainTextEdit>

class TestLogScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void showsTheLogAsWritten_data()
    {
        QTest::addColumn<QByteArray>("bytes"); // null: there is no log
        QTest::addColumn<QString>("shown");
        QTest::addRow("utf-8") << QByteArray("Zürich crew\r\nDone")
                               << QStringLiteral("Zürich crew\nDone");
        QTest::addRow("latin-1") << QByteArray("Z\xfcrich crew") << QStringLiteral("Zürich crew");
        QTest::addRow("no log") << QByteArray() << QString();
    }

    void showsTheLogAsWritten()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, shown);
        TANDRILL_INSTALLATION(t);
        const QString log = t.installation().logFile();
        QFile::remove(log);
        if (!bytes.isNull()) {
            QVERIFY(QDir().mkpath(QFileInfo(log).path()) && writeFile(log, bytes));
        }
        LogScreen screen(t.session());
        screen.show();
        QCOMPARE(child<QPlainTextEdit>(screen, "Text1")->toPlainText(), shown);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_MAIN(TestLogScreen)
#include "tst_logscreen.moc"
