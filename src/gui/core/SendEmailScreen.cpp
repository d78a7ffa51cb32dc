#include "SendEmailScreen.h"

#include "ColourScheme.h"
#include "ErrorHandler.h"
#include "FormPlacement.h"
#include "Options.h"
#include "Prompter.h"
#include "Session.h"
#include "Sql.h"

#include <QDesktopServices>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlError>
#include <QUrl>
#include <QVBoxLayout>

namespace {

const QString EmailOption = QStringLiteral("GEN_COMPANY_EMAIL");

QLineEdit* readOnlyLine(const QString& name, QWidget* parent)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    return edit;
}

QLabel* wrappedLabel(const QString& name, const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setWordWrap(true);
    return label;
}

} // namespace

SendEmailScreen::SendEmailScreen(Session& session, QWidget* parent)
    : QDialog(parent), m_session(session),
      m_urlOpener([](const QUrl& url) { return QDesktopServices::openUrl(url); })
{
    setObjectName(QStringLiteral("frmSendEmail"));
    setWindowTitle(QStringLiteral("Error Report"));
    buildButtons(buildFields());
    connect(&m_sender, &ErrorReportSender::progress, m_progress, &QProgressBar::setValue);
    connect(&m_sender, &ErrorReportSender::finished, this, &SendEmailScreen::onDelivered);

    FormPlacement::restore(m_session, this);
    QPalette bar = m_progress->palette();
    bar.setColor(QPalette::Highlight, ColourScheme::GridSelection);
    bar.setColor(QPalette::Base, Qt::white);
    m_progress->setPalette(bar);
    const QString email = Options::option(m_session, EmailOption);
    if (!email.isEmpty()) {
        m_email->setText(email);
    }
}

QVBoxLayout* SendEmailScreen::buildFields()
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(wrappedLabel(QStringLiteral("lblOccurred"),
                                   QStringLiteral("An error has occurred during the process."),
                                   this));
    layout->addWidget(wrappedLabel(
        QStringLiteral("lblSendHint"),
        QStringLiteral("Please send us the error report simply by clicking on the Send button."),
        this));

    auto* form = new QFormLayout;
    m_module = readOnlyLine(QStringLiteral("txtModuleName"), this);
    m_procedure = readOnlyLine(QStringLiteral("txtProcedure"), this);
    m_number = readOnlyLine(QStringLiteral("txtErrorNo"), this);
    m_line = readOnlyLine(QStringLiteral("txtLineNo"), this);
    m_description = new QPlainTextEdit(this);
    m_description->setObjectName(QStringLiteral("txtErrorDescription"));
    m_description->setReadOnly(true);
    form->addRow(QStringLiteral("Module"), m_module);
    form->addRow(QStringLiteral("Procedure"), m_procedure);
    form->addRow(QStringLiteral("Error No."), m_number);
    form->addRow(QStringLiteral("Description"), m_description);
    form->addRow(QStringLiteral("Line No."), m_line);
    layout->addLayout(form);

    layout->addWidget(wrappedLabel(
        QStringLiteral("lblStepsHint"),
        QStringLiteral("Please enter a description of that steps that produced the error."), this));
    m_userMessage = new QPlainTextEdit(this);
    m_userMessage->setObjectName(QStringLiteral("txtUserMsg"));
    m_userMessage->setTabChangesFocus(true);
    layout->addWidget(m_userMessage);

    auto* emailRow = new QFormLayout;
    m_email = new QLineEdit(this);
    m_email->setObjectName(QStringLiteral("txtEmail"));
    emailRow->addRow(QStringLiteral("Your e-mail address"), m_email);
    layout->addLayout(emailRow);

    m_progressLabel = wrappedLabel(QStringLiteral("lblProgress"),
                                   QStringLiteral("Sending Error Report....."), this);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("ProgressBar1"));
    m_progress->setRange(0, 100);
    m_progressLabel->hide();
    m_progress->hide();
    layout->addWidget(m_progressLabel);
    layout->addWidget(m_progress);
    return layout;
}

void SendEmailScreen::buildButtons(QVBoxLayout* layout)
{
    m_send = new QPushButton(QStringLiteral("Send"), this);
    m_send->setObjectName(QStringLiteral("cmdSend"));
    m_exit = new QPushButton(QStringLiteral("Return"), this);
    m_exit->setObjectName(QStringLiteral("cmdExit"));
    for (QPushButton* button : {m_send, m_exit}) {
        button->setAutoDefault(false);
    }
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(m_send);
    row->addWidget(m_exit);
    layout->addLayout(row);
    connect(m_send, &QPushButton::clicked, this, &SendEmailScreen::send);
    connect(m_exit, &QPushButton::clicked, this, &SendEmailScreen::leaveWithoutSending);
}

void SendEmailScreen::showFailure(const Failure& failure)
{
    m_failure = failure;
    m_module->setText(failure.module);
    m_procedure->setText(failure.procedure);
    m_number->setText(QString::number(failure.number));
    m_description->setPlainText(failure.description);
    m_line->setText(QString::number(failure.line));
}

bool SendEmailScreen::validateFields()
{
    const QString email = m_email->text().trimmed();
    QString problem;
    if (email.isEmpty()) {
        problem = QStringLiteral("Please enter your email Address.");
    } else if (!ErrorReport::isValidEmail(email)) {
        problem =
            QStringLiteral("Please enter a valid email Address, so that we can get back to you.");
    }
    if (problem.isEmpty()) {
        return true;
    }
    m_session.prompter().message(problem, Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
    m_email->setFocus(Qt::OtherFocusReason);
    return false;
}

void SendEmailScreen::send()
{
    if (isSending() || !validateFields()) {
        return;
    }
    setSending(true);
    m_details = ErrorReport::collect(m_session, m_failure, m_userMessage->toPlainText(),
                                     m_email->text().trimmed());
    m_sender.start(m_details, ErrorReport::MailEndpoint::fromStore(m_session.store()),
                   ErrorReport::reportDatabase(m_session.store()));
}

void SendEmailScreen::onDelivered(bool sent, const QString& /*error*/)
{
    m_progress->hide();
    if (sent) {
        m_session.prompter().inform(
            QStringLiteral("Thank You for reporting this error. This goes directly to our "
                           "programmers for diagnosis and repair."));
        m_progressLabel->hide();
        setSending(false);
        accept();
        return;
    }
    // The report is kept here, and the user's own mail program gets a ready-made mail.
    const bool kept = keepInErrorList();
    const ErrorReport::MailEndpoint mail = ErrorReport::MailEndpoint::fromStore(m_session.store());
    m_urlOpener(QUrl(ErrorReport::mailtoLink(mail.recipients().join(u','), m_details)));
    setSending(false);
    if (kept) {
        accept();
    }
}

void SendEmailScreen::leaveWithoutSending()
{
    if (isSending()) {
        return;
    }
    if (keepInErrorList()) {
        QDialog::reject();
    }
}

void SendEmailScreen::reject()
{
    leaveWithoutSending();
}

bool SendEmailScreen::keepInErrorList()
{
    const QString procedure = QStringLiteral("SaveErrorList");
    QSqlError error;
    if (saveErrorList(m_session, m_failure, m_userMessage->toPlainText(), m_email->text().trimmed(),
                      &error) ||
        (m_failure.module == objectName() && m_failure.procedure == procedure)) {
        return true; // a failure to keep a failed save is told once, then let go
    }
    // Reported through this screen, which then shows why the failure could not be kept.
    errorHandler(m_session, Sql::failure(objectName(), procedure, error));
    return false;
}

void SendEmailScreen::setSending(bool sending)
{
    m_progressLabel->setVisible(sending);
    m_progress->setVisible(sending);
    m_progress->setValue(0);
    m_send->setEnabled(!sending);
    m_exit->setEnabled(!sending);
}

void SendEmailScreen::done(int result)
{
    Options::setOption(m_session, EmailOption, m_email->text());
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}
