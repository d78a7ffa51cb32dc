#include "ErrorReportSender.h"

#include <QThread>

ErrorReportSender::ErrorReportSender(QObject* parent) : QObject(parent) {}

ErrorReportSender::~ErrorReportSender()
{
    if (m_thread) {
        m_thread->wait();
        delete m_thread;
    }
}

void ErrorReportSender::start(const ErrorReport::Details& details,
                              const ErrorReport::MailEndpoint& mail,
                              const ConnectionSettings& database)
{
    if (m_thread) {
        return;
    }
    m_sent = false;
    m_error.clear();
    // Queued to this object's thread; dropped if the sender is gone by then.
    auto tellProgress = [this](int percent) {
        QMetaObject::invokeMethod(
            this, [this, percent] { emit progress(percent); }, Qt::QueuedConnection);
    };
    m_thread = QThread::create([this, details, mail, database, tellProgress] {
        ErrorReport::insertRemote(database, details);
        m_sent = ErrorReport::sendMail(mail, details, &m_error, tellProgress);
    });
    connect(m_thread, &QThread::finished, this, [this] {
        m_thread->deleteLater();
        m_thread = nullptr;
        emit finished(m_sent, m_error);
    });
    m_thread->start();
}
