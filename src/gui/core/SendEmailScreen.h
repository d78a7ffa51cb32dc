#pragma once

#include "ErrorReportSender.h"
#include "Failure.h"

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QUrl;
class QVBoxLayout;
class Session;

/**
 * The error report screen (frmSendEmail): shows one failure, lets the user
 * add a note and send the report to the maker, or leave it, in which case
 * the failure is kept in tblErrorList. A report that cannot be mailed is
 * kept too and handed to the desktop's mail program as a mailto link.
 */
class SendEmailScreen : public QDialog
{
    Q_OBJECT

public:
    /** Hands a link to the desktop; replaceable so that tests can catch it. */
    using UrlOpener = std::function<bool(const QUrl&)>;

    explicit SendEmailScreen(Session& session, QWidget* parent = nullptr);

    /** Shows a failure; a later one replaces the one shown. */
    void showFailure(const Failure& failure);
    const Failure& failure() const { return m_failure; }

    void setUrlOpener(UrlOpener opener) { m_urlOpener = std::move(opener); }
    bool isSending() const { return m_sender.isBusy(); }

public slots:
    /** The close box and Escape leave as Return does; refused while sending. */
    void reject() override;

protected:
    void done(int result) override;

private:
    QVBoxLayout* buildFields();
    void buildButtons(QVBoxLayout* layout);
    bool validateFields();
    void send();
    void leaveWithoutSending();
    void onDelivered(bool sent, const QString& error);
    void setSending(bool sending);
    /** False when the failure could not be kept and the screen now shows why. */
    bool keepInErrorList();

    Session& m_session;
    Failure m_failure;
    ErrorReport::Details m_details; ///< the report being sent
    ErrorReportSender m_sender;
    UrlOpener m_urlOpener;

    QLineEdit* m_module = nullptr;
    QLineEdit* m_procedure = nullptr;
    QLineEdit* m_number = nullptr;
    QPlainTextEdit* m_description = nullptr;
    QLineEdit* m_line = nullptr;
    QPlainTextEdit* m_userMessage = nullptr;
    QLineEdit* m_email = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_progressLabel = nullptr;
    QPushButton* m_send = nullptr;
    QPushButton* m_exit = nullptr;
};
