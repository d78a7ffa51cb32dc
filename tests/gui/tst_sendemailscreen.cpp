#include "DataHelpers.h"
#include "ErrorHandler.h"
#include "ErrorReportSink.h"
#include "Options.h"
#include "ScreenTest.h"
#include "SendEmailScreen.h"
#include "SmtpSink.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUrl>
#include <QUrlQuery>

namespace {

const QString ThankYou = QStringLiteral("Thank You for reporting this error. This goes directly "
                                        "to our programmers for diagnosis and repair.");

Failure apostropheFailure()
{
    return {QStringLiteral("frmCrew"), QStringLiteral("cmdUpdate_Click"), 3021,
            QStringLiteral("Can't save 'O'Brien''s' crew: \"quoted\" text"), 118};
}

Rows errorList(TestInstallation& t)
{
    Rows rows;
    QSqlQuery q(t.session().db());
    if (!Sql::exec(q, QStringLiteral("SELECT * FROM tblErrorList"))) {
        qFatal("tblErrorList cannot be read");
    }
    while (q.next()) {
        rows.append(q.record());
    }
    return rows;
}

void pointMailAt(TestInstallation& t, const SmtpSink& sink)
{
    Store& store = t.session().store();
    store.setValue(QStringLiteral("Mail"), QStringLiteral("Server"), QStringLiteral("127.0.0.1"));
    store.setValue(QStringLiteral("Mail"), QStringLiteral("Port"), QString::number(sink.port()));
    store.setValue(QStringLiteral("Mail"), QStringLiteral("TLS"), QStringLiteral("none"));
    store.setValue(QStringLiteral("Mail"), QStringLiteral("Recipient"),
                   QStringLiteral("bugs@maker.com"));
}

/** A screen with a failure on it, shown, whose mailto hand-overs land in links. */
struct OpenScreen
{
    explicit OpenScreen(TestInstallation& t, const Failure& failure = apostropheFailure())
        : screen(t.session())
    {
        screen.setUrlOpener([this](const QUrl& url) {
            links.append(url);
            return true;
        });
        screen.showFailure(failure);
        screen.show();
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

    void showsTheFailureAndTheLastAddress()
    {
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), QStringLiteral("GEN_COMPANY_EMAIL"),
                           QStringLiteral("office@grounds.com"));
        OpenScreen s(t);
        QWidget& w = s.screen;
        QCOMPARE(w.objectName(), QStringLiteral("frmSendEmail"));
        QCOMPARE(w.windowTitle(), QStringLiteral("Error Report"));
        QCOMPARE(text(w, "txtModuleName"), QStringLiteral("frmCrew"));
        QCOMPARE(text(w, "txtProcedure"), QStringLiteral("cmdUpdate_Click"));
        QCOMPARE(text(w, "txtErrorNo"), QStringLiteral("3021"));
        QCOMPARE(text(w, "txtLineNo"), QStringLiteral("118"));
        QCOMPARE(text(w, "txtEmail"), QStringLiteral("office@grounds.com"));
        QCOMPARE(child<QPlainTextEdit>(w, "txtErrorDescription")->toPlainText(),
                 apostropheFailure().description);
        QVERIFY(child(w, "txtLineNo")->isReadOnly());
        QVERIFY(child<QPlainTextEdit>(w, "txtErrorDescription")->isReadOnly());
        QVERIFY(!child<QPlainTextEdit>(w, "txtUserMsg")->isReadOnly());
        QCOMPARE(child<QPushButton>(w, "cmdSend")->text(), QStringLiteral("Send"));
        QCOMPARE(child<QPushButton>(w, "cmdExit")->text(), QStringLiteral("Return"));
        QCOMPARE(child<QLabel>(w, "lblProgress")->text(),
                 QStringLiteral("Sending Error Report....."));
        QVERIFY(child<QLabel>(w, "lblProgress")->isHidden());
        QVERIFY(child<QProgressBar>(w, "ProgressBar1")->isHidden());
        QStringList captions;
        for (const QLabel* label : w.findChildren<QLabel*>()) {
            captions.append(label->text());
        }
        for (const char* caption :
             {"An error has occurred during the process.",
              "Please send us the error report simply by clicking on the Send button.",
              "Please enter a description of that steps that produced the error."}) {
            QVERIFY2(captions.contains(QLatin1String(caption)), caption);
        }
    }

    void sendRefusesAMissingOrBadAddress_data()
    {
        // Every rule of a good address is checked where it is kept; here the screen's answers.
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("message");
        const QString missing = QStringLiteral("Please enter your email Address.");
        QTest::addRow("empty") << QString() << missing;
        QTest::addRow("blanks only") << QStringLiteral("   ") << missing;
        QTest::addRow("bad") << QStringLiteral("pat@x@grounds.com")
                             << QStringLiteral("Please enter a valid email Address, so that we "
                                               "can get back to you.");
    }

    void sendRefusesAMissingOrBadAddress()
    {
        QFETCH(QString, email);
        QFETCH(QString, message);
        TANDRILL_INSTALLATION(t);
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QPlainTextEdit>(w, "txtUserMsg"), QStringLiteral("Saved a crew"));
        QTest::keyClicks(child(w, "txtEmail"), email);
        click(w, "cmdSend");
        QCOMPARE(t.prompter().texts(), QStringList{message});
        QVERIFY(w.isVisible());
        QVERIFY(!s.screen.isSending());
        QVERIFY(child<QProgressBar>(w, "ProgressBar1")->isHidden());
        QCOMPARE(text(w, "txtEmail"), email);
        QCOMPARE(child<QPlainTextEdit>(w, "txtUserMsg")->toPlainText(),
                 QStringLiteral("Saved a crew"));
        QVERIFY(errorList(t).isEmpty());
        QVERIFY(s.links.isEmpty());
    }

    void leavingKeepsOneWholeRow_data()
    {
        QTest::addColumn<bool>("closeBox");
        QTest::newRow("Return") << false;
        QTest::newRow("close box") << true;
    }

    void leavingKeepsOneWholeRow()
    {
        QFETCH(bool, closeBox);
        TANDRILL_INSTALLATION(t);
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QPlainTextEdit>(w, "txtUserMsg"),
                         QStringLiteral("I clicked 'Save'"));
        QTest::keyClicks(child(w, "txtEmail"), QStringLiteral("pat@grounds.com"));
        if (closeBox) {
            w.close();
        } else {
            click(w, "cmdExit");
        }
        QVERIFY(!w.isVisible());

        const Rows rows = errorList(t);
        QCOMPARE(rows.size(), 1);
        const auto value = [&rows](const char* column) {
            return rows.first().value(QString::fromLatin1(column));
        };
        QCOMPARE(value("ErrDescription").toString(), apostropheFailure().description);
        QCOMPARE(value("ErrNumber").toLongLong(), 3021);
        QCOMPARE(value("LineNumber").toInt(), 118);
        QCOMPARE(value("ModuleName").toString(), QStringLiteral("frmCrew"));
        QCOMPARE(value("ProcedureName").toString(), QStringLiteral("cmdUpdate_Click"));
        QCOMPARE(value("UserMsg").toString(), QStringLiteral("I clicked 'Save'"));
        QCOMPARE(value("UserEmail").toString(), QStringLiteral("pat@grounds.com"));
        QCOMPARE(SqlValue::toDateTime(value("ErrDateTime")).date(), QDate(2025, 3, 1));
        QCOMPARE(Options::option(t.session(), QStringLiteral("GEN_COMPANY_EMAIL")),
                 QStringLiteral("pat@grounds.com"));
        QVERIFY(s.links.isEmpty());
        QVERIFY(t.prompter().shown().isEmpty());
    }

    void sendGoesByMailOrElseToTheDesktopMailProgram_data()
    {
        QTest::addColumn<int>("server"); // 0 none, 1 takes the mail, 2 refuses it
        QTest::newRow("sent") << 1;
        QTest::newRow("no mail server") << 0;
        QTest::newRow("mail refused") << 2;
    }

    void sendGoesByMailOrElseToTheDesktopMailProgram()
    {
        QFETCH(int, server);
        TANDRILL_INSTALLATION(t);
        SmtpSink sink;
        QVERIFY(sink.isListening());
        if (server == 2) {
            sink.refuseRecipients();
        }
        if (server > 0) {
            pointMailAt(t, sink);
        }
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QPlainTextEdit>(w, "txtUserMsg"), QStringLiteral("Crew screen"));
        QTest::keyClicks(child(w, "txtEmail"), QStringLiteral("pat@grounds.com"));
        click(w, "cmdSend");
        if (server > 0) {
            QVERIFY(s.screen.isSending());
            QVERIFY(!child<QPushButton>(w, "cmdExit")->isEnabled());
            QVERIFY(!child<QLabel>(w, "lblProgress")->isHidden());
            w.close(); // refused while the report is on its way
            QVERIFY(w.isVisible());
        }
        QTRY_VERIFY_WITH_TIMEOUT(!w.isVisible(), 20000);

        const bool sent = server == 1;
        QCOMPARE(t.prompter().texts(), sent ? QStringList{ThankYou} : QStringList());
        QCOMPARE(sink.mails().size(), sent ? 1 : 0);
        QCOMPARE(errorList(t).size(), sent ? 0 : 1);
        QCOMPARE(s.links.size(), sent ? 0 : 1);
        if (sent) {
            const SmtpSink::Mail& mail = sink.mails().first();
            QCOMPARE(mail.from, QByteArray("<pat@grounds.com>"));
            QCOMPARE(mail.recipients, QByteArrayList{QByteArray("<bugs@maker.com>")});
            // The body itself is checked with the report; here what the screen put in.
            const QString body = QString::fromUtf8(mail.decodedBody());
            QVERIFY(body.contains(apostropheFailure().description.toHtmlEscaped()));
            QVERIFY(body.contains(QStringLiteral("<B> User Msg:- </B>Crew screen")));
            return;
        }
        const QUrl& link = s.links.first();
        QCOMPARE(link.scheme(), QStringLiteral("mailto"));
        QCOMPARE(link.path(), server == 2 ? QStringLiteral("bugs@maker.com") : QString());
        const QUrlQuery query(link);
        QCOMPARE(query.queryItemValue(QStringLiteral("Subject"), QUrl::FullyDecoded),
                 QStringLiteral("Error Report"));
        const QString body = query.queryItemValue(QStringLiteral("Body"), QUrl::FullyDecoded);
        QVERIFY(body.contains(QStringLiteral(" Description:- ") + apostropheFailure().description +
                              u'\n'));
        QVERIFY(body.contains(QStringLiteral(" User Email:-pat@grounds.com\n")));
    }

    void sinkShowsTheScreenAndALaterFailureReplacesIt()
    {
        TANDRILL_INSTALLATION(t);
        ErrorReportSink sink(t.session());
        sink.setUrlOpener([](const QUrl&) { return true; });
        t.session().setFailureSink(&sink);
        QVERIFY(!errorHandler(t.session(), QStringLiteral("frmCrew"), QStringLiteral("x"), 0,
                              QStringLiteral("none")));
        QVERIFY(!sink.openScreen());

        const Failure second{QStringLiteral("General Function"), QStringLiteral("GetOption"), 94,
                             QStringLiteral("Invalid use of Null"), 3};
        bool secondHandled = false;
        QString moduleShown;
        QString numberShown;
        QTimer::singleShot(0, [&] {
            auto* screen = qobject_cast<SendEmailScreen*>(QApplication::activeModalWidget());
            if (!screen || screen != sink.openScreen()) {
                qFatal("The error report screen is not the modal window");
            }
            secondHandled = errorHandler(t.session(), second);
            moduleShown = text(*screen, "txtModuleName");
            numberShown = text(*screen, "txtErrorNo");
            click(*screen, "cmdExit");
        });
        QVERIFY(errorHandler(t.session(), apostropheFailure()));
        QVERIFY(secondHandled);
        QCOMPARE(moduleShown, QStringLiteral("General Function"));
        QCOMPARE(numberShown, QStringLiteral("94"));
        QVERIFY(!sink.openScreen());
        const Rows rows = errorList(t);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows.first().value(QStringLiteral("ErrDescription")).toString(),
                 second.description);
        t.session().setFailureSink(&t.failures());
    }

    void failureToKeepIsToldOnTheSameScreenOnce()
    {
        TANDRILL_INSTALLATION(t);
        ErrorReportSink sink(t.session());
        t.session().setFailureSink(&sink);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, QStringLiteral("DROP TABLE tblErrorList")));
        QStringList shown; // each time Return is pressed: the screen and the procedure it shows
        QTimer answer;
        connect(&answer, &QTimer::timeout, [&shown, &sink] {
            if (SendEmailScreen* screen = sink.openScreen(); screen && screen->isVisible()) {
                shown.append(QString::number(quintptr(screen)) + u' ' +
                             text(*screen, "txtProcedure"));
                click(*screen, "cmdExit");
            }
        });
        answer.start(20);
        QVERIFY(errorHandler(t.session(), apostropheFailure()));
        QCOMPARE(shown.size(), 2);
        QCOMPARE(shown[1].section(u' ', 0, 0), shown[0].section(u' ', 0, 0));
        QCOMPARE(shown[0].section(u' ', 1) + u'|' + shown[1].section(u' ', 1),
                 QStringLiteral("cmdUpdate_Click|SaveErrorList"));
        t.session().setFailureSink(&t.failures());
    }
};

QTEST_MAIN(TestSendEmailScreen)
#include "tst_sendemailscreen.moc"
