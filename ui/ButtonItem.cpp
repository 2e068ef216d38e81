#include "ui/ButtonItem.h"

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
    for (const auto spaceChanged : {&ButtonItem::leftPaddingChanged, &ButtonItem::rightPaddingChanged,
                                    &ButtonItem::topInsetChanged, &ButtonItem::bottomInsetChanged}) {
        connect(this, spaceChanged, this, &ButtonItem::arrange);
    }
}

void ButtonItem::setContentItem(QQuickItem* item)
{
    content = item;
    if (item != nullptr) {
        item->setParentItem(this);
        connect(item, &QQuickItem::implicitWidthChanged, this, &ButtonItem::implicitContentWidthChanged);
        connect(item, &QQuickItem::implicitHeightChanged, this, &ButtonItem::implicitContentHeightChanged);
        connect(item, &QQuickItem::baselineOffsetChanged, this, &ButtonItem::arrange);
    }
    emit contentItemChanged();
    emit implicitContentWidthChanged();
    emit implicitContentHeightChanged();
    arrange();
}

void ButtonItem::setBackground(QQuickItem* item)
{
    ground = item;
    if (item != nullptr) {
        item->setParentItem(this);
        item->setZ(-1);
    }
    emit backgroundChanged();
    arrange();
}

qreal ButtonItem::implicitContentWidth() const
{
    return content ? content->implicitWidth() : 0;
}

qreal ButtonItem::implicitContentHeight() const
{
    return content ? content->implicitHeight() : 0;
}

/// Puts the content between the paddings, and the background between the insets.
void ButtonItem::arrange()
{
    if (!isComponentComplete()) {
        return;
    }
    if (ground) {
        ground->setY(topInset);
        ground->setSize({width(), height() - topInset - bottomInset});
    }
    if (content) {
        content->setX(leftPadding);
        content->setSize({width() - leftPadding - rightPadding, height()});
        setBaselineOffset(content->baselineOffset());
    }
}

void ButtonItem::componentComplete()
{
    QQuickItem::componentComplete();
    arrange();
}

void ButtonItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    arrange();
}

void ButtonItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !data.boolValue) {
        setDown(false);
    }
    QQuickItem::itemChange(change, data);
}

void ButtonItem::setDown(bool presses)
{
    if (std::exchange(down, presses) == presses) {
        return;
    }
    if (down && autoRepeat) {
        repetition.start(repeatDelay, this);
    } else {
        repetition.stop();
    }
    emit downChanged();
}

void ButtonItem::beginPress()
{
    repeated = false;
    setDown(true);
}

void ButtonItem::endPress(bool counts)
{
    const bool clicks = counts && down && !repeated;
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
        if (!event->isAutoRepeat() || autoRepeat) {
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
    KeyboardFocusItem::focusOutEvent(event);
}

void ButtonItem::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != repetition.timerId()) {
        QQuickItem::timerEvent(event);
        return;
    }
    repetition.start(repeatInterval, this);
    repeated = true;
    emit clicked();
}

} // namespace MirrowvaleAuthenticator
