#include "ui/items/ButtonItem.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr int repeatDelay = 500; // milliseconds; long enough for a slow press to end before it repeats
constexpr int repeatInterval = 100;

} // namespace

ButtonItem::ButtonItem(QQuickItem* parent) : KeyboardFocusItem(parent)
{
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
}

void ButtonItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !data.boolValue) {
        setDown(false);
        setHovered(false);
    }
    QQuickItem::itemChange(change, data);
}

void ButtonItem::setDown(bool presses)
{
    if (std::exchange(down_, presses) == presses) {
        return;
    }
    if (down_ && autoRepeat_) {
        repetition_.start(repeatDelay, this);
    } else {
        repetition_.stop();
    }
    emit downChanged();
}

void ButtonItem::setHovered(bool hovered)
{
    if (std::exchange(hovered_, hovered) != hovered) {
        emit hoveredChanged();
    }
}

void ButtonItem::beginPress()
{
    repeated_ = false;
    setDown(true);
}

void ButtonItem::endPress(bool counts)
{
    const bool clicks = counts && down_ && !repeated_;
    setDown(false);
    if (clicks) {
        emit clicked();
    }
}

void ButtonItem::mousePressEvent(QMouseEvent*)
{
    beginPress();
}

void ButtonItem::mouseDoubleClickEvent(QMouseEvent*)
{
    beginPress(); // the second of two quick presses counts like the first
}

void ButtonItem::mouseMoveEvent(QMouseEvent* event)
{
    setDown(contains(event->position()));
}

void ButtonItem::mouseReleaseEvent(QMouseEvent* event)
{
    endPress(contains(event->position()));
}

void ButtonItem::mouseUngrabEvent()
{
    setDown(false);
}

void ButtonItem::hoverEnterEvent(QHoverEvent* event)
{
    setHovered(true);
    KeyboardFocusItem::hoverEnterEvent(event);
}

void ButtonItem::hoverLeaveEvent(QHoverEvent* event)
{
    setHovered(false);
    KeyboardFocusItem::hoverLeaveEvent(event);
}

void ButtonItem::touchUngrabEvent()
{
    setDown(false);
}

void ButtonItem::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) {
            beginPress();
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        returnIsHeld_ = returnIsHeld_ || !event->isAutoRepeat();
        if (returnIsHeld_ && (autoRepeat_ || !event->isAutoRepeat())) {
            emit clicked();
        }
        break;
    default:
        QQuickItem::keyPressEvent(event);
    }
}

void ButtonItem::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space) {
        QQuickItem::keyReleaseEvent(event);
    } else if (!event->isAutoRepeat()) {
        endPress(true);
    }
}

void ButtonItem::focusOutEvent(QFocusEvent* event)
{
    setDown(false);
    returnIsHeld_ = false;
    KeyboardFocusItem::focusOutEvent(event);
}

void ButtonItem::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != repetition_.timerId()) {
        QQuickItem::timerEvent(event);
        return;
    }
    repetition_.start(repeatInterval, this);
    repeated_ = true;
    emit clicked();
}

} // namespace MirrowvaleAuthenticator
