#include "ErrorReportSink.h"

#include <QApplication>

ErrorReportSink::ErrorReportSink(Session& session, QWidget* parent)
    : m_session(session), m_parent(parent)
{}

void ErrorReportSink::report(const Failure& failure)
{
    if (m_screen) {
        m_screen->showFailure(failure);
        return;
    }
    SendEmailScreen screen(m_session, m_parent ? m_parent.data() : QApplication::activeWindow());
    if (m_urlOpener) {
        screen.setUrlOpener(m_urlOpener);
    }
    screen.showFailure(failure);
    m_screen = &screen;
    screen.exec();
    m_screen = nullptr;
}
