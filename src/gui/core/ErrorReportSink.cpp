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
    if (m_building) {
        m_latest = failure; // a failure while the screen is built is the one it shows
        return;
    }
    m_building = true;
    m_latest = failure;
    SendEmailScreen screen(m_session, m_parent ? m_parent.data() : QApplication::activeWindow());
    m_building = false;
    if (m_urlOpener) {
        screen.setUrlOpener(m_urlOpener);
    }
    screen.showFailure(m_latest);
    m_screen = &screen;
    screen.exec();
    m_screen = nullptr;
}
