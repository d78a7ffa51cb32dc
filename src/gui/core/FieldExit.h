#pragma once

#include <functional>

class QWidget;

/**
 * Calls handler when the focus leaves field for another control of the same
 * window (Tab, a click, a shortcut), with the control that takes it: the
 * place for checks made on leaving a field.
 *
 * A window that loses the focus as a whole (a message box opens, the window
 * is hidden or destroyed) calls nothing. So a handler never runs on a screen
 * whose destructor has begun, which a connection to the application's
 * focusChanged signal cannot promise: that one still fires while the base
 * class hides the half-destroyed window.
 */
void onFieldExit(QWidget* field, std::function<void(QWidget* next)> handler);
