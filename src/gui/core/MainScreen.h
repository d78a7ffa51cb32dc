#pragma once

#include <QHash>
#include <QMainWindow>
#include <QUrl>
#include <array>
#include <functional>

class MainNavigator;
class QMenu;
class Session;

/**
 * frmMainScreen, the one top-level window: header bar, side navigator, the
 * menu, and the home area where the overdue board stands.
 *
 * The screen knows no other screen. The program wires each menu entry and
 * navigator entry to the screen it opens with setHandler() and
 * setNavigatorHandler(); an entry without a handler stays disabled. The
 * entries of the Help menu and Exit are the screen's own.
 */
class MainScreen : public QMainWindow
{
    Q_OBJECT

public:
    using Handler = std::function<void()>;
    using UrlOpener = std::function<bool(const QUrl&)>;

    explicit MainScreen(Session& session, QWidget* parent = nullptr);
    ~MainScreen() override;

    /** The menu entry with this control name; for a submenu, its entry in the menu above. */
    QAction* action(const QString& objectName) const;

    /**
     * Makes the menu entry named objectName run handler. The entry is enabled
     * unless the user lacks its right, or, for "mnuUpdateDatabase", unless the
     * schema upgrade at start failed. False when there is no such entry.
     */
    bool setHandler(const QString& objectName, Handler handler);

    /**
     * Makes navigator entry index run handler. Entries 0 (as Print W/O) and
     * 2 (as View, Service) follow their menu entries and 7 opens the help:
     * for those, and for an index out of range, false.
     */
    bool setNavigatorHandler(int index, Handler handler);

    /**
     * Puts the home view (the overdue board) in place of the empty home area;
     * reload runs whenever the window gets the focus back, so the view is fresh.
     */
    void setHomeWidget(QWidget* widget, const Handler& reload = {});
    QWidget* homeWidget() const { return m_home; }

    /** How documents and web pages are opened; the desktop's browser and viewers by default. */
    void setUrlOpener(UrlOpener opener) { m_urlOpener = std::move(opener); }
    /** What Exit does once the screen is hidden; ending the event loop by default. */
    void setExitHandler(Handler handler) { m_exitHandler = std::move(handler); }
    /** How long Check For Updates waits for the update document. */
    void setUpdateTimeout(int milliseconds) { m_updateTimeoutMs = milliseconds; }

    /** The window's size when none is stored, in twips. */
    static constexpr int DefaultHeightTwips = 11190;
    static constexpr int DefaultWidthTwips = 15480;

public slots:
    /** Opens the program's manual in the help window. */
    void showHelp();

signals:
    /** The window got the focus back: the home view reloads its data. */
    void activated();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildMenus();
    QMenu* addMenu(QWidget* above, const QString& objectName, const QString& title);
    QAction* addEntry(QMenu* menu, const QString& objectName, const QString& caption);
    QWidget* buildHeader();
    void buildToolBar();
    void registerOwnEntries();
    void applyUser();
    void refreshEntries();
    bool isAvailable(const QString& objectName) const;
    void runEntry(const QString& objectName);
    void runNavigator(int index);
    void restoreSize();
    void storeSize();
    void exitNow();

    void showQuickStart();
    void openStoredUrl(const QString& section, const QString& name);
    void runTrapped(const QString& entry, const Handler& handler);
    void checkForUpdates();
    void openUrl(const QUrl& url);
    QString storedUrl(const QString& section, const QString& name) const;

    Session& m_session;
    MainNavigator* m_navigator = nullptr;
    QWidget* m_home = nullptr;
    QHash<QString, QAction*> m_actions;
    QHash<QString, Handler> m_handlers;
    std::array<Handler, 8> m_navigatorHandlers;
    UrlOpener m_urlOpener;
    Handler m_exitHandler;
    int m_updateTimeoutMs = 15000;
    bool m_updateDatabaseRun = false;
    bool m_storeSizeOnClose = true;
};
