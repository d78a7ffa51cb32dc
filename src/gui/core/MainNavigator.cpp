#include "MainNavigator.h"

#include "FormPlacement.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace {

const QColor BarBackground{231, 232, 231};
const QColor CaptionForeground{36, 71, 109};

/** The short mark drawn in each entry's picture. */
QString markFor(int index)
{
    static const char* const marks[MainNavigator::EntryCount] = {"WO", "EQ", "SV", "SU",
                                                                 "EM", "PI", "RP", "?"};
    return QString::fromLatin1(marks[index]);
}

/** A round badge with the entry's mark: in the caption colour, or grey when disabled. */
QPixmap badge(int index, bool enabled, qreal devicePixelRatio)
{
    constexpr int Size = 34;
    QPixmap picture(QSize(Size, Size) * devicePixelRatio);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(enabled ? CaptionForeground : QColor(170, 172, 170));
    painter.drawEllipse(QRectF(1, 1, Size - 2, Size - 2));
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, 0, Size, Size), Qt::AlignCenter, markFor(index));
    return picture;
}

} // namespace

MainNavigator::MainNavigator(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picSideMenuBar"));
    setFixedWidth(qRound(double(FormPlacement::SideBarWidthTwips) / FormPlacement::TwipsPerPixel));
    setAutoFillBackground(true);
    QPalette bar = palette();
    bar.setColor(QPalette::Window, BarBackground);
    setPalette(bar);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 12, 4, 12);
    layout->setSpacing(2);
    const QStringList names = captions();
    for (int i = 0; i < EntryCount; ++i) {
        addEntry(i, names.at(i));
    }
    layout->addStretch();
}

QStringList MainNavigator::captions()
{
    return {QStringLiteral("Work Orders"), QStringLiteral("Equipment"),
            QStringLiteral("Services"),    QStringLiteral("Suppliers"),
            QStringLiteral("Employees"),   QStringLiteral("Part Inventory"),
            QStringLiteral("Reports"),     QStringLiteral("Help & Support")};
}

void MainNavigator::addEntry(int index, const QString& caption)
{
    auto* image = new QLabel(this);
    image->setObjectName(QStringLiteral("imgQuickMenu_%1").arg(index));
    image->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    image->setPixmap(badge(index, true, devicePixelRatioF()));

    // The caption's own colour holds for the active and inactive window; the
    // disabled group keeps the style's grey, so a disabled entry looks it.
    auto* label = new QLabel(caption, this);
    label->setObjectName(QStringLiteral("lblQuickMenu_%1").arg(index));
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setTextFormat(Qt::PlainText);
    QPalette text = label->palette();
    text.setColor(QPalette::Active, QPalette::WindowText, CaptionForeground);
    text.setColor(QPalette::Inactive, QPalette::WindowText, CaptionForeground);
    label->setPalette(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);

    for (QLabel* part : {image, label}) {
        part->setCursor(Qt::PointingHandCursor);
        part->installEventFilter(this);
    }
    layout()->addWidget(image);
    layout()->addWidget(label);
    static_cast<QVBoxLayout*>(layout())->addSpacing(10);
    m_images.append(image);
    m_captions.append(label);
}

void MainNavigator::setEntryEnabled(int index, bool enabled)
{
    m_images.at(index)->setEnabled(enabled);
    m_images.at(index)->setPixmap(badge(index, enabled, devicePixelRatioF()));
    m_captions.at(index)->setEnabled(enabled);
    m_images.at(index)->setCursor(enabled ? Qt::PointingHandCursor : Qt::ArrowCursor);
    m_captions.at(index)->setCursor(enabled ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (!enabled && m_highlighted == index) {
        resetHighlight();
    }
}

bool MainNavigator::isEntryEnabled(int index) const
{
    return m_captions.at(index)->isEnabled();
}

void MainNavigator::resetHighlight()
{
    setHighlighted(-1);
}

void MainNavigator::setHighlighted(int index)
{
    if (index == m_highlighted) {
        return;
    }
    for (int i = 0; i < m_captions.size(); ++i) {
        QFont font = m_captions.at(i)->font();
        font.setUnderline(i == index);
        m_captions.at(i)->setFont(font);
    }
    m_highlighted = index;
}

bool MainNavigator::eventFilter(QObject* watched, QEvent* event)
{
    auto* part = qobject_cast<QLabel*>(watched);
    const int captionIndex = m_captions.indexOf(part);
    const int imageIndex = m_images.indexOf(part);
    const int index = captionIndex >= 0 ? captionIndex : imageIndex;
    if (index < 0 || !isEntryEnabled(index)) {
        return QFrame::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Enter:
        if (captionIndex >= 0) {
            setHighlighted(captionIndex);
        }
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            if (imageIndex >= 0) {
                resetHighlight();
            }
            emit entryClicked(index);
            return true;
        }
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

void MainNavigator::enterEvent(QEnterEvent* event)
{
    resetHighlight(); // back on the bar itself, off every caption
    QFrame::enterEvent(event);
}

void MainNavigator::leaveEvent(QEvent* event)
{
    resetHighlight();
    QFrame::leaveEvent(event);
}
