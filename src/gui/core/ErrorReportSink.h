#pragma once

#include "Failure.h"
#include "SendEmailScreen.h"

#include <QPointer>

class QWidget;
class Session;

/**
 * The desktop's failure sink: each failure opens the error report screen
 * modally and returns when it closes. A failure that comes while the screen
 * is open replaces the one it shows. Installed with session.setFailureSink().
 */
class ErrorReportSink : public FailureSink
{
public:
    /** The screen stands over parent; without one, over the window that is active. */
    explicit ErrorReportSink(Session& session, QWidget* parent = nullptr);

    void report(const Failure& failure) override;

    /** Replaces the desktop's hand-over of a mailto link, for tests. */
    void setUrlOpener(SendEmailScreen::UrlOpener opener) { m_urlOpener = std::move(opener); }
    /** The screen while it is open, else none. */
    SendEmailScreen* openScreen() const { return m_screen; }

private:
    Session& m_session;
    QPointer<QWidget> m_parent;
    QPointer<SendEmailScreen> m_screen;
    SendEmailScreen::UrlOpener m_urlOpener;
    bool m_building = false;
    Failure m_latest;
};
