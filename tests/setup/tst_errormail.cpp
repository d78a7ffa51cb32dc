#include "ErrorReport.h"
#include "ErrorReportSender.h"
#include "SmtpSink.h"

#include <QSignalSpy>
#include <QTest>

namespace {

ErrorReport::Details sampleDetails()
{
    ErrorReport::Details d;
    d.failure = {QStringLiteral("frmWorkorder"), QStringLiteral("PostWorkorder"), 94,
                 QStringLiteral("Invalid use of Null in O'Neil's order\r\n. alone on a line"), 7};
    d.userEmail = QStringLiteral("pat@grounds.com");
    d.userMessage = QStringLiteral("Posted order 12");
    d.moment = QDateTime(QDate(2025, 3, 1), QTime(10, 0));
    d.appVersion = QStringLiteral("2.2.0");
    return d;
}

ErrorReport::MailEndpoint endpointFor(const SmtpSink& sink)
{
    ErrorReport::MailEndpoint mail;
    mail.server = QStringLiteral("127.0.0.1");
    mail.port = sink.port();
    mail.recipient = QStringLiteral("bugs@maker.com;dev@maker.com");
    return mail;
}

} // namespace

class TestErrorMail : public QObject
{
    Q_OBJECT

private slots:
    void mailReachesTheServerWithTheWholeBody()
    {
        SmtpSink sink;
        QVERIFY(sink.isListening());
        ErrorReportSender sender;
        QSignalSpy finished(&sender, &ErrorReportSender::finished);
        const ErrorReport::Details d = sampleDetails();
        sender.start(d, endpointFor(sink), ConnectionSettings());
        QVERIFY(sender.isBusy());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY2(finished.at(0).at(0).toBool(), qPrintable(finished.at(0).at(1).toString()));
        QVERIFY(!sender.isBusy());

        QCOMPARE(sink.mails().size(), 1);
        const SmtpSink::Mail& mail = sink.mails().first();
        QCOMPARE(mail.from, QByteArray("<pat@grounds.com>"));
        QCOMPARE(mail.recipients,
                 QByteArrayList({QByteArray("<bugs@maker.com>"), QByteArray("<dev@maker.com>")}));
        QVERIFY(mail.headers().contains("Subject: Error Report"));
        const QString body = QString::fromUtf8(mail.decodedBody());
        QCOMPARE(body, ErrorReport::htmlBody(d));
        QVERIFY(body.contains(QStringLiteral("Product Information")));
        QVERIFY(body.contains(QStringLiteral("Error Description")));
        QVERIFY(body.contains(QStringLiteral("Windows Information")));
        QVERIFY(body.contains(QStringLiteral("O'Neil's order")));
    }

    void refusedMailIsReportedAsNotSent()
    {
        SmtpSink sink;
        sink.refuseRecipients();
        ErrorReportSender sender;
        QSignalSpy finished(&sender, &ErrorReportSender::finished);
        sender.start(sampleDetails(), endpointFor(sink), ConnectionSettings());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY(!finished.at(0).at(0).toBool());
        QVERIFY(!finished.at(0).at(1).toString().isEmpty());
        QVERIFY(sink.mails().isEmpty());
    }

    void serverThatIsNotThereFailsQuickly()
    {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
            port = probe.serverPort();
        }
        ErrorReport::MailEndpoint mail;
        mail.server = QStringLiteral("127.0.0.1");
        mail.port = port;
        mail.recipient = QStringLiteral("bugs@maker.com");
        QString error;
        QVERIFY(!ErrorReport::sendMail(mail, sampleDetails(), &error));
        QVERIFY(!error.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestErrorMail)
#include "tst_errormail.moc"
