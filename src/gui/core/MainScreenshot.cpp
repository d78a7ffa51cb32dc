#include "MainScreenshot.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QFileInfo>
#include <QPixmap>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>
#include <memory>

namespace MainScreenshot {

bool save(QWidget* widget, const QString& file, QString* error)
{
    const QPixmap picture = widget->grab();
    if (picture.isNull() || !picture.save(file, "PNG")) {
        *error =
            QStringLiteral("Cannot write the picture %1").arg(QFileInfo(file).absoluteFilePath());
        return false;
    }
    return true;
}

QWidget* findShown(const QString& screenName)
{
    QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal->objectName() == screenName) {
        return modal;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->isVisible() && window->objectName() == screenName) {
            return window;
        }
    }
    // A view that lives inside a window, as the overdue board inside the main screen.
    for (QWidget* window : windows) {
        QWidget* inside = window->isVisible() ? window->findChild<QWidget*>(screenName) : nullptr;
        if (inside && inside->isVisible()) {
            return inside;
        }
    }
    return nullptr;
}

QString windowName(const QString& screenName)
{
    return screenName.section(u'.', 0, 0);
}

bool showFrame(QWidget* window, const QString& frame)
{
    QWidget* page = window->findChild<QWidget*>(frame);
    for (QWidget* child = page; child && child != window; child = child->parentWidget()) {
        auto* stack = qobject_cast<QStackedWidget*>(child->parentWidget());
        // A tab is chosen through its tab control, so that the screen follows the change.
        if (auto* tabs = stack ? qobject_cast<QTabWidget*>(stack->parentWidget()) : nullptr) {
            tabs->setCurrentWidget(child);
        } else if (stack) {
            stack->setCurrentWidget(child);
        }
    }
    return page != nullptr;
}

void captureWhenShown(const QString& screenName, const QString& file, int timeoutMs,
                      std::function<void(bool ok, const QString& error)> done)
{
    auto* poll = new QTimer(qApp);
    poll->setInterval(50);
    const QDeadlineTimer deadline(timeoutMs);
    // A screen seen for the first time may still have its layout pending: take it a tick later.
    auto seen = std::make_shared<bool>(false);
    const QString frame = screenName.section(u'.', 1);
    QObject::connect(poll, &QTimer::timeout, poll, [=] {
        QWidget* screen = findShown(windowName(screenName));
        const bool inFront = screen && (frame.isEmpty() || showFrame(screen, frame));
        if (!deadline.hasExpired() && (!inFront || !*seen)) {
            *seen = inFront;
            return;
        }
        poll->stop();
        poll->deleteLater();
        if (!inFront) {
            done(false, QStringLiteral("No screen named %1 was shown").arg(screenName));
            return;
        }
        QString error;
        const bool saved = save(screen, file, &error);
        if (auto* dialog = qobject_cast<QDialog*>(screen)) {
            dialog->reject();
        } else if (screen->isModal()) {
            screen->close();
        }
        done(saved, error);
    });
    poll->start();
}

} // namespace MainScreenshot
