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
    Sql::exec(q, u"SELECT ProcedureName, UserMsg, UserEmail FROM tblErrorList"_s);
    while (q.next()) {
        rows.append(q.value(0).toString() + u'|' + q.value(1).toString() + u'|' +
                    q.value(2).toString());
    }
    return rows;
}

// A screen showing Shown, with a note typed, whose mailto links land in links.
struct OpenScreen
{
    explicit OpenScreen(TestInstallation& t) : screen(t.session())
    {
        screen.setUrlOpener([this](const QUrl& url) {
            links.append(url);
            return true;
        });
        screen.showFailure(Shown);
        screen.show();
        QTest::keyClicks(child<QPlainTextEdit>(screen, "txtUserMsg"), u"I clicked 'Save'"_s);
    }

    SendEmailScreen screen;
    QList<QUrl> links;
};

} // namespace

class TestSendEmailScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void badAddressIsRefusedAndLeavingKeepsTheFailure_data()
    {
        QTest::addColumn<QString>("leave");
        QTest::addRow("Return") << u"cmdExit"_s;
        QTest::addRow("close box") << u"close"_s;
    }
    void badAddressIsRefusedAndLeavingKeepsTheFailure()
    {
        QFETCH(QString, leave);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), u"GEN_COMPANY_EMAIL"_s, u"office@grounds.com"_s);
        OpenScreen s(t);
        QWidget& screen = s.screen;
        QCOMPARE(text(screen, "txtEmail"), u"office@grounds.com"_s);
        QCOMPARE(QStringList({text(screen, "txtModuleName"), text(screen, "txtProcedure"),
                              text(screen, "txtErrorNo"), text(screen, "txtLineNo"),
                              child<QPlainTextEdit>(screen, "txtErrorDescription")->toPlainText()}),
                 (QStringList{u"frmCrew"_s, u"cmdUpdate_Click"_s, u"3021"_s, u"118"_s,
                              Shown.description}));

        // The rules of a good address are checked with the report; here the screen's answers.
        perform(screen, t.prompter(), u"txtEmail=   |cmdSend|txtEmail=pat@x@y.com|cmdSend"_s, "");
        QCOMPARE(t.prompter().texts(),
                 (QStringList{u"Please enter your email Address."_s,
                              u"Please enter a valid email Address, so that we can get back to "
                              "you."_s}));
        QVERIFY(screen.isVisible() && !s.screen.isSending() && s.links.isEmpty());
        QCOMPARE(text(screen, "txtEmail") + u'|' +
                     child<QPlainTextEdit>(screen, "txtUserMsg")->toPlainText(),
                 u"pat@x@y.com|I clicked 'Save'"_s);
        QCOMPARE(errorList(t), QStringList());

        perform(screen, t.prompter(), u"txtEmail=pat@grounds.com|"_s + leave, "");
        QVERIFY(!screen.isVisible());
        QCOMPARE(errorList(t), QStringList{u"cmdUpdate_Click|I clicked 'Save'|pat@grounds.com"_s});
        QCOMPARE(Options::option(t.session(), u"GEN_COMPANY_EMAIL"_s), u"pat@grounds.com"_s);
    }

    void sendGoesByMailOrElseToTheDesktopMailProgram_data()
    {
        QTest::addColumn<bool>("sent");
        QTest::newRow("sent") << true;
        QTest::newRow("mail refused") << false;
    }
    void sendGoesByMailOrElseToTheDesktopMailProgram()
    {
        QFETCH(bool, sent);
        TANDRILL_INSTALLATION(t);
        SmtpSink sink;
        if (!sent) {
            sink.refuseRecipients();
        }
        Store& store = t.session().store();
        store.setValue(u"Mail"_s, u"Server"_s, u"127.0.0.1"_s);
        store.setValue(u"Mail"_s, u"Port"_s, QString::number(sink.port()));
        store.setValue(u"Mail"_s, u"Recipient"_s, u"bugs@maker.com"_s);
        OpenScreen s(t);
        perform(s.screen, t.prompter(), u"txtEmail+pat@grounds.com|cmdSend"_s, "");
        QVERIFY(!child<QPushButton>(s.screen, "cmdExit")->isEnabled());
        s.screen.close(); // refused while the report is on its way
        QVERIFY(s.screen.isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!s.screen.isVisible(), 20000);

        QCOMPARE(t.prompter().texts(),
                 sent ? QStringList{u"Thank You for reporting this error. This goes directly to "
                                    "our programmers for diagnosis and repair."_s}
                      : QStringList());
        QCOMPARE(sink.mails().size(), sent ? 1 : 0);
        QCOMPARE(errorList(t).size(), sent ? 0 : 1);
        QCOMPARE(s.links.size(), sent ? 0 : 1);
        // What the report holds is checked with the report; here that it carries the note.
        const QString report = sent ? QString::fromUtf8(sink.mails().first().decodedBody())
                                    : QUrl::fromPercentEncoding(s.links.first().toEncoded());
        QVERIFY2(report.contains(u"I clicked 'Save'"_s), qPrintable(report));
        QVERIFY(sent || s.links.first().path() == u"bugs@maker.com"_s);
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
