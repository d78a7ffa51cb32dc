#pragma once

#include <QPointer>
#include <QWidget>

class QTextBrowser;
class Session;

/**
 * The window that shows the program's HTML manual. There is one at a time;
 * it stays open beside the screens until it or the main screen is closed.
 */
class HelpWindow : public QWidget
{
    Q_OBJECT

public:
    /**
     * Shows the manual at path, at anchor when one is given. Opened from a
     * modal screen it belongs to that screen, so that it is not blocked.
     */
    static HelpWindow* showManual(const QString& path, const QString& anchor = QString());
    /** Shows the installation's manual, or says that it cannot be found. */
    static void openManual(Session& session);
    /** Closes the help window, if one is open. */
    static void closeAll();
    /** The help window that is open, or null. */
    static HelpWindow* current();

    QTextBrowser* browser() const { return m_browser; }

private:
    explicit HelpWindow(QWidget* owner);

    QTextBrowser* m_browser;
    static QPointer<HelpWindow> s_window;
};
