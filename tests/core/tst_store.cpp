#include "Store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString Main = u"Software\\Korvelle"_s;

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

class TestStore : public QObject
{
    Q_OBJECT

private slots:
    // What one line cannot hold is refused, and what is saved loads back whole.
    void namesCompareWithoutCaseAndValuesAreTrimmed()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"Tandrill.ini"_s);
        Store store(path);
        QVERIFY(store.load() && !store.hasSection(Main)); // no file yet: empty
        QVERIFY(
            writeAll(path, "[Software\\Korvelle]\r\nVERSION =   2.1.4  \r\n; a comment\r\n\r\n"));
        QVERIFY(store.load() && store.hasSection(Main));
        QCOMPARE(store.value(u"software\\korvelle"_s, u"version"_s), u"2.1.4"_s);
        QVERIFY(store.setValue(u"software\\korvelle"_s, u"version"_s, u"2.2.0"_s));
        QVERIFY(store.setValue(Main, u"GUID"_s, QString()));
        QVERIFY(store.setValue(u"Database"_s, u"Password"_s, u"p'w\"=ä€;x"_s));
        QVERIFY(!store.setValue(Main, u"VERSION"_s, u"a\nb"_s));
        QVERIFY(!store.setValue(Main, u"[PATH]"_s, u"1"_s));
        QVERIFY(!store.setValue(u"A\n[B]"_s, u"PATH"_s, u"1"_s));
        QVERIFY(store.save());

        Store again(path);
        QVERIFY(again.load());
        QCOMPARE(again.value(Main, u"VERSION"_s), u"2.2.0"_s);
        QVERIFY(again.contains(Main, u"guid"_s) && !again.contains(Main, u"SRCPATH"_s));
        QCOMPARE(again.value(u"DATABASE"_s, u"password"_s), u"p'w\"=ä€;x"_s);
        // One value, not a second spelling beside the first.
        QCOMPARE(readAll(path).toLower().count("version"), 1);
    }

    void failedSaveGivesAClearErrorAndKeepsTheOldFile_data()
    {
        QTest::addColumn<QString>("cause");
        QTest::addRow("folder is a file") << u"file"_s;
        QTest::addRow("disk full") << u"full"_s;
    }
    void failedSaveGivesAClearErrorAndKeepsTheOldFile()
    {
        QFETCH(QString, cause);
        QTemporaryDir dir;
        const QString folder = dir.filePath(u"home"_s);
        const QString path = folder + u"/Tandrill.ini"_s;
        Store store(path);
        QVERIFY(store.setValue(Main, u"VERSION"_s, u"2.1.4"_s));
        QVERIFY(cause == u"file"_s ? writeAll(folder, "a file, not a folder")
                                   : QDir().mkpath(folder) && store.save());
        const QByteArray before = readAll(path);
        QVERIFY(store.setValue(Main, u"PATH"_s, QString(4000, u'x')));
        // A full disk: every write past a few bytes fails, even for root.
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit full = old;
        full.rlim_cur = cause == u"full"_s ? 64 : old.rlim_cur;
        setrlimit(RLIMIT_FSIZE, &full);
        QString error;
        const bool saved = store.save(&error);
        setrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, oldHandler);
        QVERIFY(!saved);
        QVERIFY2(error.startsWith(u"Cannot write "_s + path), qPrintable(error));
        QCOMPARE(readAll(path), before);
        QCOMPARE(QDir(folder).entryList(QDir::Files),
                 cause == u"file"_s ? QStringList() : QStringList{u"Tandrill.ini"_s});
    }
};

QTEST_GUILESS_MAIN(TestStore)
#include "tst_store.moc"
