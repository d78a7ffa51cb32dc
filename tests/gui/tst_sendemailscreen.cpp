#include "ErrorHandler.h"
#include "ErrorReportSink.h"
#include "Options.h"
#include "ScreenTest.h"
#include "SendEmailScreen.h"
#include "SmtpSink.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QPlainTextEdit>
#include <QSqlQuery>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const Failure Shown{u"frmCrew"_s, u"cmdUpdate_Click"_s, 3021, u"Can't save \"O'Brien\""_s, 118};

// The kept failures as "procedure|note|address".
QStringList errorList(TestInstallation& t)
{
    QStringList rows;
    QSqlQuery q(t.session().db());
    Sql::exec(q, u"SELECT ProcedureName || '|' || COALESCE(UserMsg, '') || '|' || "
                 "COALESCE(UserEmail, '') FROM tblErrorList"_s);
    while (q.next()) {
        rows.append(q.value(0).toString());
    }
    return rows;
}

QString plainText(const QWidget& screen, const char* name)
{
    return child<QPlainTextEdit>(screen, name)->toPlainText();
}

} // namespace

class TestSendEmailScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void badAddressIsRefusedThenTheFailureIsKeptOrSent_data()
    {
        QTest::addColumn<QString>("leave");
        QTest::addColumn<bool>("refused");    // by the mail server
        QTest::addColumn<QString>("outcome"); // the failures kept, the mails sent, the link opened
        const QString kept = u"cmdUpdate_Click|I clicked 'Save'|pat@grounds.com"_s;
        QTest::addRow("Return") << u"cmdExit"_s << false << kept + u" mails:0 link:"_s;
        QTest::addRow("close box") << u"close"_s << false << kept + u" mails:0 link:"_s;
        QTest::addRow("sent") << u"cmdSend"_s << false << u" mails:1 link:"_s;
        QTest::addRow("mail refused")
            << u"cmdSend"_s << true << kept + u" mails:0 link:bugs@maker.com"_s;
    }
    void badAddressIsRefusedThenTheFailureIsKeptOrSent()
    {
        QFETCH(QString, leave);
        QFETCH(bool, refused);
        QFETCH(QString, outcome);
        TANDRILL_INSTALLATION(t);
        SmtpSink sink;
        if (refused) {
            sink.refuseRecipients();
        }
        Store& store = t.session().store();
        store.setValue(u"Mail"_s, u"Server"_s, u"127.0.0.1"_s);
        store.setValue(u"Mail"_s, u"Port"_s, QString::number(sink.port()));
        store.setValue(u"Mail"_s, u"Recipient"_s, u"bugs@maker.com"_s);
        Options::setOption(t.session(), u"GEN_COMPANY_EMAIL"_s, u"office@grounds.com"_s);
        SendEmailScreen screen(t.session());
        QList<QUrl> links; // what goes to the desktop's mail program
        screen.setUrlOpener([&links](const QUrl& url) {
            links.append(url);
            return true;
        });
        screen.showFailure(Shown);
        screen.show();
        QTest::keyClicks(child<QPlainTextEdit>(screen, "txtUserMsg"), u"I clicked 'Save'"_s);
        QCOMPARE(QStringList({text(screen, "txtErrorNo"), text(screen, "txtLineNo"),
                              plainText(screen, "txtErrorDescription"), text(screen, "txtEmail")})
                     .join(u'|'),
                 u"3021|118|Can't save \"O'Brien\"|office@grounds.com"_s);

        // The rules of a good address are checked with the report; here the screen's answers.
        perform(screen, t.prompter(), u"txtEmail=   |cmdSend|txtEmail=pat@x@y.com|cmdSend"_s, "");
        QCOMPARE(t.prompter().texts(),
                 (QStringList{u"Please enter your email Address."_s,
                              u"Please enter a valid email Address, so that we can get back to "
                              "you."_s}));
        QVERIFY(screen.isVisible() && !screen.isSending() && links.isEmpty());
        QCOMPARE(text(screen, "txtEmail") + u'|' + plainText(screen, "txtUserMsg"),
                 u"pat@x@y.com|I clicked 'Save'"_s);
        QCOMPARE(errorList(t), QStringList());

        perform(screen, t.prompter(), u"txtEmail=pat@grounds.com|"_s + leave, "");
        if (leave == u"cmdSend") {
            QVERIFY(!child<QPushButton>(screen, "cmdExit")->isEnabled());
            screen.close(); // refused while the report is on its way
            QVERIFY(screen.isVisible());
        }
        QTRY_VERIFY_WITH_TIMEOUT(!screen.isVisible(), 20000);
        QCOMPARE(errorList(t).join(u',') + u" mails:"_s + QString::number(sink.mails().size()) +
                     u" link:"_s + links.value(0).path(),
                 outcome);
        QCOMPARE(Options::option(t.session(), u"GEN_COMPANY_EMAIL"_s), u"pat@grounds.com"_s);
        QCOMPARE(t.prompter().texts().mid(2),
                 sink.mails().isEmpty() ? QStringList()
                                        : QStringList{u"Thank You for reporting this error. This "
                                                      "goes directly to our programmers for "
                                                      "diagnosis and repair."_s});
        // What the report holds is checked with the report; here that it carries the note.
        const QByteArray report = sink.mails().isEmpty() ? links.value(0).toEncoded()
                                                         : sink.mails().first().decodedBody();
        QVERIFY2(leave != u"cmdSend" ||
                     QUrl::fromPercentEncoding(report).contains(u"I clicked 'Save'"),
                 report.constData());
    }

    void sinkShowsTheScreenAndALaterFailureReplacesIt()
    {
        TANDRILL_INSTALLATION(t);
        ErrorReportSink sink(t.session());
        t.session().setFailureSink(&sink);
        const Failure second{u"General Function"_s, u"GetOption"_s, 94, u"Invalid use of Null"_s,
                             3};
        QString shown;
        onModal<SendEmailScreen>("frmSendEmail", [&](SendEmailScreen* screen) {
            errorHandler(t.session(), second);
            shown = text(*screen, "txtModuleName") + u'|' + text(*screen, "txtErrorNo");
            click(*screen, "cmdExit");
        });
        QVERIFY(errorHandler(t.session(), Shown));
        QCOMPARE(shown, u"General Function|94"_s);
        QVERIFY(!sink.openScreen());
        QCOMPARE(errorList(t), QStringList{u"GetOption||"_s});
        t.session().setFailureSink(&t.failures());
    }

    void failureToKeepIsToldOnTheSameScreenOnce()
    {
        TANDRILL_INSTALLATION(t);
        ErrorReportSink sink(t.session());
        t.session().setFailureSink(&sink);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"DROP TABLE tblErrorList"_s));
        QStringList shown; // the procedure shown each time Return is pressed
        QSet<SendEmailScreen*> screens;
        QTimer answer;
        connect(&answer, &QTimer::timeout, [&] {
            if (SendEmailScreen* screen = sink.openScreen(); screen && screen->isVisible()) {
                screens.insert(screen);
                shown.append(text(*screen, "txtProcedure"));
                click(*screen, "cmdExit");
                if (shown.size() > 2) { // the screen would not let go: end it, to fail below
                    static_cast<QDialog*>(screen)->done(0);
                }
            }
        });
        answer.start(20);
        QVERIFY(errorHandler(t.session(), Shown));
        QCOMPARE(shown, (QStringList{u"cmdUpdate_Click"_s, u"SaveErrorList"_s}));
        QCOMPARE(screens.size(), 1);
        t.session().setFailureSink(&t.failures());
    }
};

QTEST_MAIN(TestSendEmailScreen)
#include "tst_sendemailscreen.moc"
