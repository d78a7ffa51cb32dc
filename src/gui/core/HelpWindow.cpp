#include "HelpWindow.h"

#include "HelpFiles.h"
#include "Prompter.h"
#include "Session.h"

#include <QApplication>
#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

QPointer<HelpWindow> HelpWindow::s_window;

HelpWindow::HelpWindow(QWidget* owner) : QWidget(owner, Qt::Window), m_browser(new QTextBrowser)
{
    setObjectName(QStringLiteral("frmHelp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Korvelle Help"));
    m_browser->setObjectName(QStringLiteral("txtHelp"));
    m_browser->setOpenExternalLinks(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_browser);
    resize(640, 720);
}

void HelpWindow::openManual(Session& session)
{
    const QString manual = HelpFiles::manualPath(session);
    if (!QFileInfo::exists(manual)) {
        session.prompter().message(QStringLiteral("The help file %1 cannot be found.").arg(manual),
                                   Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
        return;
    }
    showManual(manual);
}

HelpWindow* HelpWindow::showManual(const QString& path, const QString& anchor)
{
    QWidget* owner = QApplication::activeModalWidget();
    if (s_window && s_window->parentWidget() != owner) {
        closeAll();
    }
    if (!s_window) {
        s_window = new HelpWindow(owner);
    }
    QUrl url = QUrl::fromLocalFile(path);
    url.setFragment(anchor);
    s_window->m_browser->setSource(url);
    s_window->show();
    s_window->raise();
    s_window->activateWindow();
    return s_window;
}

void HelpWindow::closeAll()
{
    if (s_window) {
        s_window->close(); // deletes it later; forget it now so that no one reuses it
        s_window = nullptr;
    }
}

HelpWindow* HelpWindow::current()
{
    return s_window;
}
