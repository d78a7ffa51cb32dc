#pragma once

#include "ErrorReport.h"

#include <QObject>

class QThread;

/**
 * Delivers one error report away from the screen's thread: first the row in
 * the maker's remote table (silently skipped when it cannot go), then the
 * mail. The screen stays responsive and hears progress and the outcome
 * through signals.
 */
class ErrorReportSender : public QObject
{
    Q_OBJECT

public:
    explicit ErrorReportSender(QObject* parent = nullptr);
    /** Waits for a delivery under way, so that its thread never outlives the sender. */
    ~ErrorReportSender() override;

    /** Starts the delivery; ignored while one is under way. */
    void start(const ErrorReport::Details& details, const ErrorReport::MailEndpoint& mail,
               const ConnectionSettings& database);
    bool isBusy() const { return m_thread != nullptr; }

signals:
    /** The share of the mail sent, in percent. */
    void progress(int percent);
    /** The mail went (sent) or not, with the reason. */
    void finished(bool sent, const QString& error);

private:
    QThread* m_thread = nullptr;
    bool m_sent = false;
    QString m_error;
};
