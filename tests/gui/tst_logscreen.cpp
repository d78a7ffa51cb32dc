#include "LogScreen.h"
#include "TestInstallation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QTest>

namespace {

QPlainTextEdit* logText(LogScreen& screen)
{
    auto* text = screen.findChild<QPlainTextEdit*>(QStringLiteral("Text1"));
    if (!text) {
        qFatal("No Text1");
    }
    return text;
}

void writeLog(TestInstallation& t, const QByteArray& bytes)
{
    const QString path = t.installation().logFile();
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("Cannot write the log");
    }
}

} // namespace

class TestLogScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void showsTheWholeLogReadOnly_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("shown");
        QByteArray many;
        QString manyShown;
        for (int i = 1; i <= 5000; ++i) {
            many += "Line " + QByteArray::number(i) + " imported\r\n";
            manyShown += QStringLiteral("Line %1 imported\n").arg(i);
        }
        QTest::addRow("windows line ends, long") << many << manyShown;
        QTest::addRow("utf-8") << QByteArray("Zürich crew\nDone")
                               << QStringLiteral("Zürich crew\nDone");
        QTest::addRow("latin-1") << QByteArray("Z\xfcrich crew") << QStringLiteral("Zürich crew");
    }

    void showsTheWholeLogReadOnly()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, shown);
        TANDRILL_INSTALLATION(t);
        writeLog(t, bytes);
        LogScreen screen(t.session());
        screen.show();
        QCOMPARE(screen.objectName(), QStringLiteral("frmTandrill_Log"));
        QVERIFY(logText(screen)->isReadOnly());
        QCOMPARE(logText(screen)->toPlainText(), shown);
    }

    void showsNothingWithoutALog()
    {
        TANDRILL_INSTALLATION(t);
        QFile::remove(t.installation().logFile());
        LogScreen screen(t.session());
        screen.show();
        QVERIFY(logText(screen)->toPlainText().isEmpty());
        QVERIFY(t.failures().isEmpty());
        QVERIFY(t.prompter().shown().isEmpty());
    }
};

QTEST_MAIN(TestLogScreen)
#include "tst_logscreen.moc"
