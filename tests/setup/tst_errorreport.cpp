#include "ErrorReport.h"
#include "Options.h"
#include "Store.h"
#include "TestInstallation.h"

#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QUrl>
#include <QUrlQuery>

namespace {

ErrorReport::Details sampleDetails()
{
    ErrorReport::Details d;
    d.failure = {QStringLiteral("frmCrew"), QStringLiteral("cmdUpdate_Click"), 3021,
                 QStringLiteral("Either BOF or EOF is True & the crew's row <gone>"), 42};
    d.userMessage = QStringLiteral("I pressed Save twice, 100% sure");
    d.userEmail = QStringLiteral("pat@grounds.com");
    d.moment = QDateTime(QDate(2025, 3, 1), QTime(9, 30, 15));
    d.dateTimeText = QStringLiteral("3/1/25 09:30:15");
    d.appVersion = QStringLiteral("2.2.0");
    d.dbVersion = QStringLiteral("220");
    d.mainApp = QStringLiteral("Main");
    d.computerName = QStringLiteral("OFFICE-PC");
    d.platform.name = QStringLiteral("Debian GNU/Linux 12");
    d.platform.versionNumber = QStringLiteral("6.1");
    d.platform.servicePack = QStringLiteral("12");
    return d;
}

/** Checks that each needle occurs in text after the one before; names the first out of place. */
QString firstOutOfOrder(const QString& text, const QStringList& needles)
{
    qsizetype from = 0;
    for (const QString& needle : needles) {
        const qsizetype at = text.indexOf(needle, from);
        if (at < 0) {
            return needle;
        }
        from = at + needle.size();
    }
    return QString();
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
        row("a@b.com", "Too short");
        row("  a@b.com  ", "Too short"); // still seven once trimmed
        row("ab@c.com");
        row("pat.grounds.com", "Missing the @");
        row("pat@home@grounds.com", "Too many @");
        row("pat@groundscom", "Missing the period");
        row("@patgrounds.com", "Invalid format");
        row(".pat@grounds.com", "Invalid format");
        row("pat@grounds.com.", "Invalid format");
        row("pat smith@grounds.com", "Invalid character");
        row("josé@grounds.com", "Invalid character");
        row("pat+x@grounds.com", "Invalid character");
        row("pat@grounds.c", "Suffix too short");
        row("pat@grounds.comma", "Suffix too long");
        row("pat.smith@grounds.com");
        row("Pat_Smith-2@Mail.Grounds.CO.UK");
        row("pat@grounds.info");
    }

    void emailCheck()
    {
        QFETCH(QString, address);
        QFETCH(QString, problem);
        QCOMPARE(ErrorReport::emailProblem(address), problem);
    }

    void htmlBodyTellsEverySectionInOrder()
    {
        const QString html = ErrorReport::htmlBody(sampleDetails());
        const QString rule = QStringLiteral("------------------------------");
        const QStringList expected{
            QStringLiteral(" <Font Color=Red><B>") + rule + QStringLiteral("Product Information") +
                rule + QStringLiteral("</B></Font> "),
            QStringLiteral("<B> App Version:- </B>2.2.0<BR><BR>"),
            QStringLiteral("<B> DBVERSION:- </B>220<BR><BR>"),
            QStringLiteral("<B> MainApp:- </B>Main"),
            QStringLiteral(" <BR><BR> <Font color=Red><B>") + rule +
                QStringLiteral("Error Description") + rule + QStringLiteral("</B></Font>  "),
            QStringLiteral("<B> Err DateTime:- </B>3/1/25 09:30:15"),
            QStringLiteral("<B> Module Name:-  </B>frmCrew"),
            QStringLiteral("<B> Procedure Name:-  </B>cmdUpdate_Click"),
            QStringLiteral("<B> Err No:-  </B>3021"),
            QStringLiteral("<B> Description:- </B>Either BOF or EOF is True &amp; the crew's row "
                           "&lt;gone&gt;"),
            QStringLiteral("<B> Line Number:- </B>42"),
            QStringLiteral("<B> User Email:- </B>pat@grounds.com"),
            QStringLiteral("<B> User Msg:- </B>I pressed Save twice, 100% sure"),
            QStringLiteral(" <BR><BR> <Font color=Red> <B>") + rule +
                QStringLiteral("Windows Information") + rule + QStringLiteral("</B></Font>  "),
            QStringLiteral("<B> User Name:- </B>OFFICE-PC<BR><BR>"),
            QStringLiteral("<B> Windows Version:- </B>Debian GNU/Linux 12<BR><BR>"),
            QStringLiteral("<B> Version number:- </B>6.1<BR><BR>"),
            QStringLiteral("<B> Service Pack/misc:- </B>12"),
        };
        QCOMPARE(firstOutOfOrder(html, expected), QString());
        QVERIFY(html.startsWith(expected.first()));
        QVERIFY(html.endsWith(expected.last()));
    }

    void plainBodyHasOneItemALine()
    {
        const QString text = ErrorReport::plainBody(sampleDetails());
        const QStringList lines = text.split(QStringLiteral("\r\n"));
        const QStringList expected{
            QStringLiteral(" App Version:- 2.2.0"),
            QStringLiteral(" DBVERSION:- 220"),
            QStringLiteral(" MainApp:-Main"),
            QStringLiteral(" Err Date Time:- 3/1/25 09:30:15"),
            QStringLiteral(" Module Name:- frmCrew"),
            QStringLiteral(" Procedure Name:- cmdUpdate_Click"),
            QStringLiteral(" Err No:- 3021"),
            QStringLiteral(" Description:- Either BOF or EOF is True & the crew's row <gone>"),
            QStringLiteral(" Line Number:-42"),
            QStringLiteral(" User Email:-pat@grounds.com"),
            QStringLiteral(" User Msg:- I pressed Save twice, 100% sure"),
            QStringLiteral(" User Name:- OFFICE-PC"),
            QStringLiteral(" Windows Version:-Debian GNU/Linux 12"),
            QStringLiteral(" Version number:- 6.1"),
            QStringLiteral(" Service Pack/misc:- 12"),
            QString(),
        };
        QCOMPARE(lines, expected);
    }

    void mailtoLinkCarriesThePlainBody()
    {
        const ErrorReport::Details d = sampleDetails();
        const QString link = ErrorReport::mailtoLink(QStringLiteral("bugs@maker.com"), d);
        QVERIFY(link.startsWith(QStringLiteral(
            "mailto:bugs@maker.com?Subject=Error Report&Body= App Version:- 2.2.0%0A")));
        QVERIFY(!link.contains(u'\r') && !link.contains(u'\n'));
        const QUrlQuery query{QUrl(link)};
        // The ampersand and the percent sign of the texts do not break the link.
        QString expected = ErrorReport::plainBody(d);
        expected.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        QCOMPARE(query.queryItemValue(QStringLiteral("Body"), QUrl::FullyDecoded), expected);
    }

    void collectReadsVersionsAndMachine()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Options::setRegistryValue(s, QStringLiteral("MainApp"), QStringLiteral("Desk"));
        Options::setOption(s, QStringLiteral("DBVERSION"), QStringLiteral("221"));
        PlatformInfo platform;
        platform.name = QStringLiteral("TestOS");
        platform.versionNumber = QStringLiteral("9.1");
        s.setPlatform(platform);
        const Failure failure{QStringLiteral("General Function"), QStringLiteral("GetOption"), 5,
                              QStringLiteral("x"), 0};
        const ErrorReport::Details d = ErrorReport::collect(s, failure, QStringLiteral("note"),
                                                            QStringLiteral("  pat@grounds.com "));
        QCOMPARE(d.appVersion, Options::versionNo(s));
        QVERIFY(!d.appVersion.isEmpty());
        QCOMPARE(d.dbVersion, QStringLiteral("221"));
        QCOMPARE(d.mainApp, QStringLiteral("Desk"));
        QCOMPARE(d.userEmail, QStringLiteral("pat@grounds.com"));
        QCOMPARE(d.platform.name, QStringLiteral("TestOS"));
        QCOMPARE(d.moment.date(), QDate(2025, 3, 1));
        QVERIFY(!d.computerName.isEmpty());
        QVERIFY(d.dateTimeText.contains(u' '));
    }

    void endpointsComeFromTheStore()
    {
        Store store;
        QVERIFY(!ErrorReport::MailEndpoint::fromStore(store).isComplete());
        QVERIFY(!ErrorReport::isConfigured(ErrorReport::reportDatabase(store)));

        const auto set = [&store](const char* section, const char* key, const char* value) {
            store.setValue(QString::fromLatin1(section), QString::fromLatin1(key),
                           QString::fromLatin1(value));
        };
        set("Mail", "Server", "mx.maker.com");
        set("Mail", "TLS", "StartTLS");
        set("Mail", "Recipient", "bugs@maker.com; ; dev@maker.com;");
        ErrorReport::MailEndpoint mail = ErrorReport::MailEndpoint::fromStore(store);
        QVERIFY(mail.isComplete());
        QCOMPARE(mail.tls, ErrorReport::MailEndpoint::Tls::StartTls);
        QCOMPARE(mail.effectivePort(), 587);
        QCOMPARE(mail.recipients(),
                 QStringList({QStringLiteral("bugs@maker.com"), QStringLiteral("dev@maker.com")}));
        mail.tls = ErrorReport::MailEndpoint::Tls::Ssl;
        QCOMPARE(mail.effectivePort(), 465);
        mail.port = 2525;
        QCOMPARE(mail.effectivePort(), 2525);

        set("ErrorReportDatabase", "Host", "db.maker.com");
        set("ErrorReportDatabase", "Name", "errors");
        const ConnectionSettings db = ErrorReport::reportDatabase(store);
        QVERIFY(ErrorReport::isConfigured(db));
        QCOMPARE(db.port, 5432);
    }

    void mailMessageHoldsTheHtmlBody()
    {
        ErrorReport::MailEndpoint mail;
        mail.server = QStringLiteral("localhost");
        mail.recipient = QStringLiteral("bugs@maker.com;dev@maker.com");
        const ErrorReport::Details d = sampleDetails();
        const QByteArray message = ErrorReport::mailMessage(mail, d);
        const qsizetype split = message.indexOf("\r\n\r\n");
        QVERIFY(split > 0);
        const QByteArray headers = message.left(split);
        QVERIFY(headers.contains("From: \"User---pat@grounds.com\" <pat@grounds.com>"));
        QVERIFY(headers.contains("To: \"Tandrill--Administrator\" <bugs@maker.com>, "
                                 "\"Tandrill--Administrator\" <dev@maker.com>"));
        QVERIFY(headers.contains("Subject: Error Report\r\n"));
        QVERIFY(!headers.contains("Reply-To"));
        for (const QByteArray& line : message.mid(split + 4).split('\n')) {
            QVERIFY(line.size() <= 78);
        }
        QCOMPARE(QString::fromUtf8(QByteArray::fromBase64(message.mid(split + 4))),
                 ErrorReport::htmlBody(d));

        mail.sender = QStringLiteral("reports@maker.com");
        const QByteArray relayed = ErrorReport::mailMessage(mail, d);
        QVERIFY(relayed.contains("From: \"User---pat@grounds.com\" <reports@maker.com>"));
        QVERIFY(relayed.contains("Reply-To: <pat@grounds.com>"));
    }

    void unreachableRemoteTableIsSilent()
    {
        TANDRILL_INSTALLATION(t);
        ConnectionSettings db;
        db.engine = SqlDialect::Engine::PostgreSQL;
        db.host = t.home() + QStringLiteral("/no-such-socket-folder");
        db.databaseName = QStringLiteral("errors");
        db.port = 1;
        QVERIFY(!ErrorReport::insertRemote(db, sampleDetails()));
        QVERIFY(t.failures().isEmpty());
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(!ErrorReport::insertRemote(ConnectionSettings(), sampleDetails()));
    }

    void remoteTableGetsTheReport()
    {
        ConnectionSettings server;
        QString reason;
        if (!TestInstallation::postgresSettings(&server, &reason)) {
            QSKIP(qPrintable(reason));
        }
        ConnectionSettings remote = server;
        remote.schema =
            QStringLiteral("err_%1").arg(QRandomGenerator::global()->generate64(), 0, 16);
        QVariantList row;
        bool inserted = false;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), remote.schema);
            db.setHostName(server.host);
            db.setPort(server.port);
            db.setDatabaseName(server.databaseName);
            db.setUserName(server.user);
            db.setPassword(server.password);
            QVERIFY2(db.open(), "PostgreSQL not reachable");
            QSqlQuery q(db);
            QVERIFY(q.exec(QStringLiteral("CREATE SCHEMA ") + remote.schema));
            QVERIFY(q.exec(
                QStringLiteral(
                    "CREATE TABLE %1.tblError (ErrNumber INTEGER, ErrDescription TEXT, "
                    "LineNumber INTEGER, UserMsg TEXT, ModuleName TEXT, ProcedureName TEXT, "
                    "UserEmail TEXT, Username TEXT, APPversion TEXT, DBversion TEXT, "
                    "WindowVersion TEXT, WinVersionNo TEXT, ServicePack TEXT, Reply INTEGER, "
                    "ErrdateTime TIMESTAMP)")
                    .arg(remote.schema)));
            inserted = ErrorReport::insertRemote(remote, sampleDetails());
            q.exec(QStringLiteral("SELECT ErrNumber, ErrDescription, LineNumber, UserMsg, "
                                  "ModuleName, Reply, ErrdateTime, APPversion, Username "
                                  "FROM %1.tblError")
                       .arg(remote.schema));
            while (q.next()) {
                for (int i = 0; i < 9; ++i) {
                    row.append(q.value(i));
                }
            }
            q.exec(QStringLiteral("DROP SCHEMA %1 CASCADE").arg(remote.schema));
        }
        QSqlDatabase::removeDatabase(remote.schema);
        QVERIFY(inserted);
        QCOMPARE(row.size(), 9); // one row
        QCOMPARE(row[0].toInt(), 3021);
        QCOMPARE(row[1].toString(), sampleDetails().failure.description);
        QCOMPARE(row[2].toInt(), 42);
        QCOMPARE(row[3].toString(), sampleDetails().userMessage);
        QCOMPARE(row[4].toString(), QStringLiteral("frmCrew"));
        QCOMPARE(row[5].toInt(), 0);
        QCOMPARE(row[6].toDateTime(), QDateTime(QDate(2025, 3, 1), QTime(9, 30, 15)));
        QCOMPARE(row[7].toString(), QStringLiteral("2.2.0"));
        QCOMPARE(row[8].toString(), QStringLiteral("OFFICE-PC"));
    }
};

QTEST_GUILESS_MAIN(TestErrorReport)
#include "tst_errorreport.moc"
