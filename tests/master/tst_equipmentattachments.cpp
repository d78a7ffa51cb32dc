#include "EquipmentAttachments.h"
#include "MessageTexts.h"
#include "TestInstallation.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

static const QByteArray Png = "\x89PNG\r\n\x1A\n rest";

static QString write(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() ? path : QString();
}

static QString listed(const Rows& rows)
{
    QStringList names;
    for (const QSqlRecord& r : rows)
        names.append(r.value(0).toString());
    return names.join(u',');
}

class TestEquipmentAttachments : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    // Machine 1 holds "Pump", machine 2 "Front"; one byte is a path (blank, the working folder).
    void addPicture_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("out");
        const auto row = [](const char* n, const QByteArray& b, const QString& name, QString out) {
            QTest::addRow("%s", n) << b << name << out;
        };
        row("png, name used by another machine", Png, u"Front"_s, u"|Front,Pump"_s);
        row("jpeg", "\xFF\xD8\xFF\xE0", u" Front "_s, u"|Front,Pump"_s);
        row("gif", "GIF89a..", u"Front"_s, u"|Front,Pump"_s);
        row("bitmap", "BM....", u"Front"_s, u"|Front,Pump"_s);
        row("blank path", " ", u"Front"_s, u"File Path should not be blank.|Pump"_s);
        row("blank name", Png, u" "_s, u"File Name should not be blank.|Pump"_s);
        row("a folder", ".", u"Front"_s, u"Invalid path of picture.|Pump"_s);
        row("text", "GIF88a", u"Front"_s, u"Oops! Invalid Picture File!|Pump"_s);
        row("any case", Png, u"pUMP"_s,
            u"File Name already exists. Please Enter Different Name|Pump"_s);
    }
    void addPicture()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QFETCH(QString, out);
        TANDRILL_INSTALLATION(t);
        EquipmentAttachments a(t.session());
        QVERIFY(a.addPicture(1, write(t.home() + u"/p"_s, Png), u"Pump"_s) &&
                a.addPicture(2, t.home() + u"/p"_s, u"Front"_s));
        const QString path = bytes.size() == 1 ? QString::fromLatin1(bytes) : t.home() + u"/c"_s;
        const bool saved = a.addPicture(1, bytes.size() == 1 ? path : write(path, bytes), name);
        const auto told = t.prompter().shown().value(0);
        QCOMPARE((told.title + u' ' + told.text).trimmed() + u'|' + listed(a.pictures(1)), out);
        QVERIFY(saved == t.prompter().shown().isEmpty() && t.failures().isEmpty());
        QCOMPARE(a.pictureData(1, u"Front"_s), saved ? bytes : QByteArray());
    }

    void documentsAreCopiedReplacedOnYesAndRemovedWithTheirFile()
    {
        TANDRILL_INSTALLATION(t);
        EquipmentAttachments a(t.session());
        const QString doc = u"manual.pdf"_s, source = write(t.home() + u'/' + doc, "old");
        const auto state = [&] {
            return QString::number(QFileInfo(a.documentPath(7, doc)).size()) + u'|' +
                   listed(a.documents(7)) + u'|' + listed(a.pictures(7));
        };
        QVERIFY(!a.addDocument(7, QString()) && !a.addDocument(7, t.home() + u"/none.pdf"_s));
        using A = Prompter::Answer;
        for (const A answer : {A::No, A::Yes, A::No, A::Yes, A::Yes})
            t.prompter().queueAnswer(answer);
        QVERIFY(a.addDocument(7, source) && a.addPicture(7, write(t.home() + u"/p"_s, Png), doc));
        write(source, "newer");
        QVERIFY(!a.addDocument(7, source) && state() == u"3|manual.pdf|manual.pdf"_s);
        QVERIFY(a.addDocument(7, source) && state() == u"5|manual.pdf|manual.pdf"_s);
        QVERIFY(!a.removeDocument(7, doc) && a.removeDocument(7, doc) && a.removePicture(7, doc));
        QCOMPARE(state(), u"0||"_s);
        QVERIFY(QDir(t.home() + u"/doc"_s).removeRecursively() && !a.addDocument(7, source));
        QCOMPARE(t.prompter().texts().join(u'|'),
                 u"Invalid File or Incorrect Path.|%1|%1|%2|%2|%2|Folder(Doc) has been deleted by "
                 "user. Please create a folder named'Doc' at following path %3"_s.arg(
                     u"manual.pdf already exists. Would you like to replace it."_s,
                     MessageTexts::DeleteQuestion, QDir::toNativeSeparators(t.home())));
        QVERIFY(a.documents(7).isEmpty() && !QFile::exists(t.home() + u"/doc"_s) &&
                t.failures().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestEquipmentAttachments)
#include "tst_equipmentattachments.moc"
