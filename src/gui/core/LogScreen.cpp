#include "LogScreen.h"

#include "FormPlacement.h"
#include "Session.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QStringDecoder>
#include <QVBoxLayout>

LogScreen::LogScreen(Session& session, QWidget* parent) : QDialog(parent), m_session(session)
{
    setObjectName(QStringLiteral("frmTandrill_Log"));
    setWindowTitle(QStringLiteral("Log File"));
    m_text = new QPlainTextEdit(this);
    m_text->setObjectName(QStringLiteral("Text1"));
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    resize(640, 480);
    FormPlacement::restore(m_session, this);
    loadLog();
}

void LogScreen::loadLog()
{
    QFile file(m_session.installation().logFile());
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    const QByteArray bytes = file.readAll();
    // The sync application may write UTF-8 or a Windows code page; Latin-1 shows the latter.
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8(bytes);
    if (utf8.hasError()) {
        text = QString::fromLatin1(bytes);
    }
    m_text->setPlainText(text);
}

void LogScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}
