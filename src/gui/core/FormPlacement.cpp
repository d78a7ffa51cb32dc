#include "FormPlacement.h"

#include "ColourScheme.h"
#include "Options.h"
#include "Session.h"

#include <QFileInfo>
#include <QIcon>
#include <QWidget>
#include <optional>

namespace FormPlacement {

namespace {

const QString Left = QStringLiteral("LEFT");
const QString Top = QStringLiteral("TOP");
const QString Height = QStringLiteral("HEIGHT");
const QString Width = QStringLiteral("WIDTH");

/** A stored value in pixels; none when the option is empty or no number. */
std::optional<int> storedPixels(Session& session, const QString& key)
{
    bool ok = false;
    const double twips = Options::option(session, key, true).trimmed().toDouble(&ok);
    if (!ok) {
        return std::nullopt;
    }
    return qRound(twips / TwipsPerPixel);
}

int twipsToPixels(int twips)
{
    return qRound(double(twips) / TwipsPerPixel);
}

void storePixels(Session& session, const QString& key, int pixels)
{
    Options::setOption(session, key, QString::number(pixels * TwipsPerPixel), true);
}

void setIcon(Session& session, QWidget* form)
{
    const QString iconFile = session.installation().path(QStringLiteral("Lib/Icon.ico"));
    if (QFileInfo::exists(iconFile)) {
        form->setWindowIcon(QIcon(iconFile));
    }
}

} // namespace

void restore(Session& session, QWidget* form)
{
    if (!form) {
        return;
    }
    setIcon(session, form);
    const QString name = form->objectName();
    const int left = storedPixels(session, name + Left).value_or(twipsToPixels(SideBarWidthTwips));
    const int top =
        storedPixels(session, name + Top).value_or(twipsToPixels(2 * OverdueHeaderHeightTwips));
    form->move(left, top);
    const int height = storedPixels(session, name + Height).value_or(0);
    const int width = storedPixels(session, name + Width).value_or(0);
    form->resize(width > 0 ? width : form->width(), height > 0 ? height : form->height());
    ColourScheme::apply(form);
}

void store(Session& session, const QWidget* form)
{
    if (!form || form->objectName().isEmpty()) {
        return;
    }
    const QString name = form->objectName();
    storePixels(session, name + Left, form->x());
    storePixels(session, name + Top, form->y());
    storePixels(session, name + Height, form->height());
    storePixels(session, name + Width, form->width());
}

} // namespace FormPlacement
