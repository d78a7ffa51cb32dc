#include "ErrorReport.h"
#include "ErrorReportSender.h"
#include "SmtpSink.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

ErrorReport::Details sample()
{
    ErrorReport::Details d;
    d.failure = {u"frmWorkorder"_s, u"PostWorkorder"_s, 94, u"Invalid use of Null"_s, 7};
    d.userEmail = u"pat@grounds.com"_s;
    d.moment = QDateTime(QDate(2025, 3, 1), QTime(10, 0));
    return d;
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
        ErrorReport::MailEndpoint endpoint;
        endpoint.server = u"127.0.0.1"_s;
        endpoint.port = sink.port();
        endpoint.recipient = u"bugs@maker.com;dev@maker.com"_s;
        sender.start(sample(), endpoint, ConnectionSettings());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QCOMPARE(finished.at(0), (QVariantList{true, QString()}));
        QCOMPARE(sink.mails().size(), 1);
        const SmtpSink::Mail& mail = sink.mails().first();
        QCOMPARE(mail.from, QByteArray("<pat@grounds.com>"));
        QCOMPARE(mail.recipients, (QByteArrayList{"<bugs@maker.com>", "<dev@maker.com>"}));
        QCOMPARE(QString::fromUtf8(mail.decodedBody()), ErrorReport::htmlBody(sample()));
    }

    void mailWithoutAServerFailsWithAReason()
    {
        QString error;
        QVERIFY(!ErrorReport::sendMail(ErrorReport::MailEndpoint(), sample(), &error));
        QCOMPARE(error, u"No mail server is set up."_s);
    }
};

QTEST_GUILESS_MAIN(TestErrorMail)
#include "tst_errormail.moc"
