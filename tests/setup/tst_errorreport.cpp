#include "ErrorReport.h"
#include "Options.h"
#include "Sql.h"
#include "Store.h"
#include "TestInstallation.h"

#include <QFile>
#include <QSqlQuery>
#include <QTest>
#include <QUrl>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace {

const ErrorReport::Details Sample{
    .failure = {u"frmCrew"_s, u"cmdUpdate_Click"_s, 3021,
                u"Either BOF or EOF is True & the crew's row <gone>"_s, 42},
    .userMessage = u"I pressed Save twice, 100% sure"_s,
    .userEmail = u"pat@grounds.com"_s,
    .moment = QDateTime(QDate(2025, 3, 1), QTime(9, 30, 15)),
    .dateTimeText = u"3/1/25 09:30:15"_s,
    .appVersion = u"2.2.0"_s,
    .dbVersion = u"220"_s,
    .mainApp = u"Main"_s,
    .computerName = u"OFFICE-PC"_s,
    .platform = {0, u"Debian GNU/Linux 12"_s, u"6.1"_s, u"12"_s, {}}};

/** What the mail of Sample holds, as checked in. */
QString golden(const char* name)
{
    QFile file(QStringLiteral(TANDRILL_GOLDEN_DIR "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class TestErrorReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void emailCheck_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* address, const char* problem = "") {
            QTest::newRow(address) << QString::fromUtf8(address) << QString::fromUtf8(problem);
        };
        row("  a@b.com  ", "Too short"); // seven once trimmed
        row("ab@c.com");
        row("pat.grounds.com", "Missing the @");
        row("pat@home@grounds.com", "Too many @");
        row("pat@groundscom", "Missing the period");
        row(".pat@grounds.com", "Invalid format");
        row("josé@grounds.com", "Invalid character");
        row("pat@grounds.c", "Suffix too short");
        row("pat@grounds.comma", "Suffix too long");
        row("Pat_Smith-2@Mail.Grounds.info");
    }
    void emailCheck()
    {
        QFETCH(QString, address);
        QFETCH(QString, problem);
        QCOMPARE(ErrorReport::emailProblem(address), problem);
    }

    void bodiesTellEverySectionInOrder()
    {
        QCOMPARE(ErrorReport::htmlBody(Sample), golden("error-report.html"));
        const QString plain = golden("error-report.txt"); // one item a line, CR LF between
        QCOMPARE(ErrorReport::plainBody(Sample), plain);
        const QString link = ErrorReport::mailtoLink(u"bugs@maker.com"_s, Sample);
        QVERIFY(link.startsWith(u"mailto:bugs@maker.com?Subject=Error Report&Body= App Version:- "
                                "2.2.0%0A"_s));
        // The ampersand and the percent sign of the texts do not break the link.
        QCOMPARE(QUrlQuery(QUrl(link)).queryItemValue(u"Body"_s, QUrl::FullyDecoded),
                 QString(plain).remove(u'\r'));
    }

    void collectReadsVersionsAndMachine()
    {
        TANDRILL_INSTALLATION(t);
        Options::setRegistryValue(t.session(), u"MainApp"_s, u"Desk"_s);
        Options::setOption(t.session(), u"DBVERSION"_s, u"221"_s);
        const ErrorReport::Details d =
            ErrorReport::collect(t.session(), Sample.failure, u"note"_s, u"  pat@grounds.com "_s);
        QCOMPARE(d.appVersion, QStringLiteral(TANDRILL_VERSION));
        QCOMPARE(d.dbVersion + u'|' + d.mainApp + u'|' + d.userEmail,
                 u"221|Desk|pat@grounds.com"_s);
        QCOMPARE(d.moment.date(), QDate(2025, 3, 1));
    }

    void mailGoesFromTheUserToEveryRecipient()
    {
        Store store;
        store.setValue(u"Mail"_s, u"TLS"_s, u"StartTLS"_s);
        store.setValue(u"Mail"_s, u"Recipient"_s, u"bugs@maker.com; ; dev@maker.com;"_s);
        ErrorReport::MailEndpoint mail = ErrorReport::MailEndpoint::fromStore(store);
        QCOMPARE(mail.effectivePort(), 587);
        const QByteArray message = ErrorReport::mailMessage(mail, Sample);
        QVERIFY(message.contains("\r\nFrom: \"User---pat@grounds.com\" <pat@grounds.com>\r\n"
                                 "To: \"Tandrill--Administrator\" <bugs@maker.com>, "
                                 "\"Tandrill--Administrator\" <dev@maker.com>\r\n"));
        for (const QByteArray& line : message.mid(message.indexOf("\r\n\r\n")).split('\n')) {
            QVERIFY(line.size() <= 78);
        }
        mail.sender = u"reports@maker.com"_s;
        QVERIFY(ErrorReport::mailMessage(mail, Sample)
                    .contains("<reports@maker.com>\r\n"
                              "Reply-To: <pat@grounds.com>\r\n"));
        mail.tls = ErrorReport::MailEndpoint::Tls::Ssl;
        QCOMPARE(mail.effectivePort(), 465);
    }

    void remoteTableGetsTheReport()
    {
        if (!TestInstallation::wantsPostgres()) {
            QSKIP("the maker's table is on PostgreSQL: the run for that engine checks it");
        }
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"CREATE TABLE tblError (ErrNumber INTEGER, ErrDescription TEXT, "
                             "LineNumber INTEGER, UserMsg TEXT, ModuleName TEXT, ProcedureName "
                             "TEXT, UserEmail TEXT, Username TEXT, APPversion TEXT, DBversion "
                             "TEXT, WindowVersion TEXT, WinVersionNo TEXT, ServicePack TEXT, "
                             "Reply INTEGER, ErrdateTime TIMESTAMP)"_s));
        QVERIFY(ErrorReport::insertRemote(
            ConnectionSettings::fromStore(t.session().store(), t.installation()), Sample));
        QVERIFY(Sql::exec(q, u"SELECT ErrNumber, ErrDescription, ServicePack, Reply, "
                             "ErrdateTime FROM tblError"_s));
        QVERIFY(q.next());
        QCOMPARE((QVariantList{q.value(0).toInt(), q.value(1), q.value(2), q.value(3).toInt(),
                               q.value(4).toDateTime()}),
                 (QVariantList{3021, Sample.failure.description, u"12"_s, 0, Sample.moment}));
        QVERIFY(!q.next());
    }
};

QTEST_GUILESS_MAIN(TestErrorReport)
#include "tst_errorreport.moc"
