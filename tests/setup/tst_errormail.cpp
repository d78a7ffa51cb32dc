#include "ErrorReport.h"
#include "ErrorReportSender.h"
#include "SmtpSink.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const ErrorReport::Details Sample{
    .failure = {u"frmWorkorder"_s, u"PostWorkorder"_s, 94, u"Invalid use of Null"_s, 7},
    .userEmail = u"pat@grounds.com"_s,
    .moment = QDateTime(QDate(2025, 3, 1), QTime(10, 0))};

ErrorReport::MailEndpoint endpointAt(quint16 port)
{
    ErrorReport::MailEndpoint mail;
    mail.server = u"127.0.0.1"_s;
    mail.port = port;
    mail.recipient = u"bugs@maker.com;dev@maker.com"_s;
    return mail;
}

} // namespace

class TestErrorMail : public QObject
{
    Q_OBJECT

private slots:
    void mailReachesTheServerWithTheWholeBody()
    {
        ErrorReportSender sender; // made first so that a failing test drops the sink's line first
        SmtpSink sink;
        QSignalSpy finished(&sender, &ErrorReportSender::finished);
        sender.start(Sample, endpointAt(sink.port()), ConnectionSettings());
        QVERIFY(sender.isBusy());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY(!sender.isBusy());
        QCOMPARE(finished.at(0), (QVariantList{true, QString()}));
        QCOMPARE(sink.mails().size(), 1);
        const SmtpSink::Mail& mail = sink.mails().first();
        QCOMPARE(mail.from, QByteArray("<pat@grounds.com>"));
        QCOMPARE(mail.recipients, (QByteArrayList{"<bugs@maker.com>", "<dev@maker.com>"}));
        QCOMPARE(QString::fromUtf8(mail.decodedBody()), ErrorReport::htmlBody(Sample));
    }

    void mailWithoutAServerFailsWithAReason()
    {
        QString error;
        QVERIFY(!ErrorReport::sendMail(ErrorReport::MailEndpoint(), Sample, &error));
        QVERIFY(!error.isEmpty());
        quint16 port = 0;
        {
            QTcpServer probe; // nothing listens on its port once it is gone
            QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
            port = probe.serverPort();
        }
        error.clear();
        QVERIFY(!ErrorReport::sendMail(endpointAt(port), Sample, &error));
        QVERIFY(!error.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestErrorMail)
#include "tst_errormail.moc"
