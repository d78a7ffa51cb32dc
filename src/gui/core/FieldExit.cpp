#include "FieldExit.h"

#include <QApplication>
#include <QFocusEvent>
#include <QWidget>

namespace {

class FieldExitFilter : public QObject
{
public:
    FieldExitFilter(QWidget* field, std::function<void(QWidget*)> handler)
        : QObject(field), m_field(field), m_handler(std::move(handler))
    {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_field && event->type() == QEvent::FocusOut && leavesWithinWindow(event)) {
            m_handler(QApplication::focusWidget());
        }
        return false;
    }

private:
    bool leavesWithinWindow(QEvent* event) const
    {
        switch (static_cast<QFocusEvent*>(event)->reason()) {
        case Qt::ActiveWindowFocusReason:
        case Qt::PopupFocusReason:
        case Qt::MenuBarFocusReason:
            return false;
        default:
            break;
        }
        const QWidget* next = QApplication::focusWidget();
        return next && next->window() == m_field->window() && m_field->window()->isVisible();
    }

    QWidget* m_field;
    std::function<void(QWidget*)> m_handler;
};

} // namespace

void onFieldExit(QWidget* field, std::function<void(QWidget* next)> handler)
{
    field->installEventFilter(new FieldExitFilter(field, std::move(handler)));
}
