#pragma once

#include <QString>
#include <functional>

class QWidget;

/**
 * Pictures of screens for the documentation: a screen is found by its
 * objectName among the windows shown, drawn with QWidget::grab() and saved
 * as PNG. Works without a display (QT_QPA_PLATFORM=offscreen).
 */
namespace MainScreenshot {

/** Saves a picture of widget to file; false with the reason when it cannot be written. */
bool save(QWidget* widget, const QString& file, QString* error);

/** The visible window named screenName: the modal one first, then any top-level one, then
 *  a view shown inside a window. */
QWidget* findShown(const QString& screenName);

/** The window's part of a screen name: "frmEquipment.fraService" is frmEquipment's. */
QString windowName(const QString& screenName);

/**
 * Brings the frame named frame to the front of every stack of window that
 * holds it, as a section button does; false when window has no such frame.
 */
bool showFrame(QWidget* window, const QString& frame);

/**
 * Waits, without blocking the event loop, until a window named screenName
 * is shown (a modal screen too), saves its picture, closes a modal screen
 * again and calls done. After timeoutMs done is called with the reason.
 * A name "window.frame" pictures the window with that frame in front.
 */
void captureWhenShown(const QString& screenName, const QString& file, int timeoutMs,
                      std::function<void(bool ok, const QString& error)> done);

} // namespace MainScreenshot
