#include "DataHelpers.h"
#include "ErrorHandler.h"
#include "ErrorReportSink.h"
#include "Options.h"
#include "SendEmailScreen.h"
#include "SmtpSink.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <QTimer>
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

template <typename T> T* child(QWidget& screen, const char* name)
{
    T* widget = screen.findChild<T*>(QString::fromLatin1(name));
    if (!widget) {
        qFatal("No widget %s", name);
    }
    return widget;
}

void click(QWidget& screen, const char* button)
{
    QTest::mouseClick(child<QPushButton>(screen, button), Qt::LeftButton);
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
        QCOMPARE(child<QLineEdit>(w, "txtModuleName")->text(), QStringLiteral("frmCrew"));
        QCOMPARE(child<QLineEdit>(w, "txtProcedure")->text(), QStringLiteral("cmdUpdate_Click"));
        QCOMPARE(child<QLineEdit>(w, "txtErrorNo")->text(), QStringLiteral("3021"));
        QCOMPARE(child<QLineEdit>(w, "txtLineNo")->text(), QStringLiteral("118"));
        QCOMPARE(child<QPlainTextEdit>(w, "txtErrorDescription")->toPlainText(),
                 apostropheFailure().description);
        QVERIFY(child<QLineEdit>(w, "txtLineNo")->isReadOnly());
        QVERIFY(child<QPlainTextEdit>(w, "txtErrorDescription")->isReadOnly());
        QVERIFY(!child<QPlainTextEdit>(w, "txtUserMsg")->isReadOnly());
        QCOMPARE(child<QLineEdit>(w, "txtEmail")->text(), QStringLiteral("office@grounds.com"));
        QCOMPARE(child<QPushButton>(w, "cmdSend")->text(), QStringLiteral("Send"));
        QCOMPARE(child<QPushButton>(w, "cmdExit")->text(), QStringLiteral("Return"));
        QCOMPARE(child<QLabel>(w, "lblProgress")->text(),
                 QStringLiteral("Sending Error Report....."));
        QVERIFY(child<QLabel>(w, "lblProgress")->isHidden());
        QVERIFY(child<QProgressBar>(w, "ProgressBar1")->isHidden());
        for (const QString& text :
             {QStringLiteral("An error has occurred during the process."),
              QStringLiteral(
                  "Please send us the error report simply by clicking on the Send button."),
              QStringLiteral(
                  "Please enter a description of that steps that produced the error.")}) {
            bool found = false;
            for (const QLabel* label : w.findChildren<QLabel*>()) {
                found = found || label->text() == text;
            }
            QVERIFY2(found, qPrintable(text));
        }
    }

    void sendRefusesAMissingOrBadAddress_data()
    {
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("message");
        const QString missing = QStringLiteral("Please enter your email Address.");
        const QString invalid =
            QStringLiteral("Please enter a valid email Address, so that we can get back to you.");
        QTest::addRow("empty") << QString() << missing;
        QTest::addRow("blanks only") << QStringLiteral("   ") << missing;
        QTest::addRow("seven characters") << QStringLiteral("a@b.com") << invalid;
        QTest::addRow("two at") << QStringLiteral("pat@x@grounds.com") << invalid;
        QTest::addRow("one-letter suffix") << QStringLiteral("pat@grounds.c") << invalid;
    }

    void sendRefusesAMissingOrBadAddress()
    {
        QFETCH(QString, email);
        QFETCH(QString, message);
        TANDRILL_INSTALLATION(t);
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QPlainTextEdit>(w, "txtUserMsg"), QStringLiteral("Saved a crew"));
        QTest::keyClicks(child<QLineEdit>(w, "txtEmail"), email);
        click(w, "cmdSend");
        QCOMPARE(t.prompter().texts(), QStringList{message});
        QVERIFY(w.isVisible());
        QVERIFY(!s.screen.isSending());
        QVERIFY(child<QProgressBar>(w, "ProgressBar1")->isHidden());
        QCOMPARE(child<QLineEdit>(w, "txtEmail")->text(), email);
        QCOMPARE(child<QPlainTextEdit>(w, "txtUserMsg")->toPlainText(),
                 QStringLiteral("Saved a crew"));
        QVERIFY(errorList(t).isEmpty());
        QVERIFY(s.links.isEmpty());
    }

    void returnKeepsOneWholeRow()
    {
        TANDRILL_INSTALLATION(t);
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QPlainTextEdit>(w, "txtUserMsg"),
                         QStringLiteral("I clicked 'Save'"));
        QTest::keyClicks(child<QLineEdit>(w, "txtEmail"), QStringLiteral("pat@grounds.com"));
        click(w, "cmdExit");
        QVERIFY(!w.isVisible());

        const Rows rows = errorList(t);
        QCOMPARE(rows.size(), 1);
        const QSqlRecord& row = rows.first();
        QCOMPARE(row.value(QStringLiteral("ErrDescription")).toString(),
                 apostropheFailure().description);
        QCOMPARE(row.value(QStringLiteral("ErrNumber")).toLongLong(), 3021);
        QCOMPARE(row.value(QStringLiteral("LineNumber")).toInt(), 118);
        QCOMPARE(row.value(QStringLiteral("ModuleName")).toString(), QStringLiteral("frmCrew"));
        QCOMPARE(row.value(QStringLiteral("ProcedureName")).toString(),
                 QStringLiteral("cmdUpdate_Click"));
        QCOMPARE(row.value(QStringLiteral("UserMsg")).toString(),
                 QStringLiteral("I clicked 'Save'"));
        QCOMPARE(row.value(QStringLiteral("UserEmail")).toString(),
                 QStringLiteral("pat@grounds.com"));
        QCOMPARE(SqlValue::toDateTime(row.value(QStringLiteral("ErrDateTime"))).date(),
                 QDate(2025, 3, 1));
        QCOMPARE(Options::option(t.session(), QStringLiteral("GEN_COMPANY_EMAIL")),
                 QStringLiteral("pat@grounds.com"));
        QVERIFY(s.links.isEmpty());
        QVERIFY(t.prompter().shown().isEmpty());
    }

    void closeBoxKeepsTheReportLikeReturn()
    {
        TANDRILL_INSTALLATION(t);
        OpenScreen s(t);
        s.screen.close();
        QVERIFY(!s.screen.isVisible());
        QCOMPARE(errorList(t).size(), 1);
    }

    void sentReportLeavesNoRow()
    {
        TANDRILL_INSTALLATION(t);
        SmtpSink sink;
        QVERIFY(sink.isListening());
        pointMailAt(t, sink);
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QPlainTextEdit>(w, "txtUserMsg"), QStringLiteral("Crew screen"));
        QTest::keyClicks(child<QLineEdit>(w, "txtEmail"), QStringLiteral("pat@grounds.com"));
        click(w, "cmdSend");
        QVERIFY(s.screen.isSending());
        QVERIFY(!child<QPushButton>(w, "cmdExit")->isEnabled());
        QVERIFY(!child<QLabel>(w, "lblProgress")->isHidden());
        w.close(); // refused while the report is on its way
        QVERIFY(w.isVisible());

        QTRY_VERIFY_WITH_TIMEOUT(!w.isVisible(), 20000);
        QCOMPARE(t.prompter().texts(), QStringList{ThankYou});
        QVERIFY(errorList(t).isEmpty());
        QVERIFY(s.links.isEmpty());
        QCOMPARE(sink.mails().size(), 1);
        const SmtpSink::Mail& mail = sink.mails().first();
        QCOMPARE(mail.from, QByteArray("<pat@grounds.com>"));
        QCOMPARE(mail.recipients, QByteArrayList{QByteArray("<bugs@maker.com>")});
        const QString body = QString::fromUtf8(mail.decodedBody());
        QVERIFY(body.contains(QStringLiteral("Product Information")));
        QVERIFY(body.contains(QStringLiteral("Error Description")));
        QVERIFY(body.contains(QStringLiteral("Windows Information")));
        QVERIFY(body.contains(apostropheFailure().description.toHtmlEscaped()));
        QVERIFY(body.contains(QStringLiteral("<B> User Msg:- </B>Crew screen")));
    }

    void withoutEndpointsTheDesktopGetsAMailtoLink()
    {
        TANDRILL_INSTALLATION(t);
        OpenScreen s(t);
        QWidget& w = s.screen;
        QTest::keyClicks(child<QLineEdit>(w, "txtEmail"), QStringLiteral("pat@grounds.com"));
        click(w, "cmdSend");
        QTRY_VERIFY_WITH_TIMEOUT(!w.isVisible(), 20000);
        QVERIFY(t.prompter().shown().isEmpty());
        QCOMPARE(errorList(t).size(), 1);
        QCOMPARE(s.links.size(), 1);
        const QUrl& link = s.links.first();
        QCOMPARE(link.scheme(), QStringLiteral("mailto"));
        const QUrlQuery query(link);
        QCOMPARE(query.queryItemValue(QStringLiteral("Subject"), QUrl::FullyDecoded),
                 QStringLiteral("Error Report"));
        const QString body = query.queryItemValue(QStringLiteral("Body"), QUrl::FullyDecoded);
        QVERIFY(body.contains(QStringLiteral(" Description:- ") + apostropheFailure().description +
                              u'\n'));
        QVERIFY(body.contains(QStringLiteral(" User Email:-pat@grounds.com\n")));
    }

    void refusedMailFallsBackToTheLink()
    {
        TANDRILL_INSTALLATION(t);
        SmtpSink sink;
        sink.refuseRecipients();
        pointMailAt(t, sink);
        OpenScreen s(t);
        QTest::keyClicks(child<QLineEdit>(s.screen, "txtEmail"), QStringLiteral("pat@grounds.com"));
        click(s.screen, "cmdSend");
        QTRY_VERIFY_WITH_TIMEOUT(!s.screen.isVisible(), 20000);
        QCOMPARE(errorList(t).size(), 1);
        QCOMPARE(s.links.size(), 1);
        QCOMPARE(s.links.first().path(), QStringLiteral("bugs@maker.com"));
        QVERIFY(sink.mails().isEmpty());
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
            moduleShown = child<QLineEdit>(*screen, "txtModuleName")->text();
            numberShown = child<QLineEdit>(*screen, "txtErrorNo")->text();
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
};

QTEST_MAIN(TestSendEmailScreen)
#include "tst_sendemailscreen.moc"
