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

ErrorReport::MailEndpoint endpointAt(quint16 port)
{
    ErrorReport::MailEndpoint mail;
    mail.server = QStringLiteral("127.0.0.1");
    mail.port = port;
    mail.recipient = QStringLiteral("bugs@maker.com;dev@maker.com");
    return mail;
}

} // namespace

class TestErrorMail : public QObject
{
    Q_OBJECT

private slots:
    void mailReachesTheServerWithTheWholeBody_data()
    {
        QTest::addColumn<bool>("refused");
        QTest::newRow("taken") << false;
        QTest::newRow("recipients refused") << true;
    }

    void mailReachesTheServerWithTheWholeBody()
    {
        QFETCH(bool, refused);
        SmtpSink sink;
        QVERIFY(sink.isListening());
        if (refused) {
            sink.refuseRecipients();
        }
        ErrorReportSender sender;
        QSignalSpy finished(&sender, &ErrorReportSender::finished);
        const ErrorReport::Details d = sampleDetails();
        sender.start(d, endpointAt(sink.port()), ConnectionSettings());
        QVERIFY(sender.isBusy());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY(!sender.isBusy());
        const QString error = finished.at(0).at(1).toString();
        QCOMPARE(finished.at(0).at(0).toBool(), !refused);
        QCOMPARE(error.isEmpty(), !refused);
        QCOMPARE(sink.mails().size(), refused ? 0 : 1);
        if (refused) {
            return;
        }
        const SmtpSink::Mail& mail = sink.mails().first();
        QCOMPARE(mail.from, QByteArray("<pat@grounds.com>"));
        QCOMPARE(mail.recipients,
                 QByteArrayList({QByteArray("<bugs@maker.com>"), QByteArray("<dev@maker.com>")}));
        QVERIFY(mail.headers().contains("Subject: Error Report"));
        QCOMPARE(QString::fromUtf8(mail.decodedBody()), ErrorReport::htmlBody(d));
    }

    void mailWithoutAServerFailsQuickly()
    {
        QString error;
        QVERIFY(!ErrorReport::sendMail(ErrorReport::MailEndpoint(), sampleDetails(), &error));
        QVERIFY(!error.isEmpty());
        quint16 port = 0;
        {
            QTcpServer probe; // nothing listens on its port once it is gone
            QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
            port = probe.serverPort();
        }
        error.clear();
        QVERIFY(!ErrorReport::sendMail(endpointAt(port), sampleDetails(), &error));
        QVERIFY(!error.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestErrorMail)
#include "tst_errormail.moc"
