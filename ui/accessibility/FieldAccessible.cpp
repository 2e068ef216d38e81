#include "ui/accessibility/FieldAccessible.h"

namespace MirrowvaleAuthenticator {

bool FieldAccessible::isMasked() const
{
    return item()->property("echoMode").toInt() != 0;
}

QString FieldAccessible::shown() const
{
    return item()->property(isMasked() ? "displayText" : "text").toString();
}

QString FieldAccessible::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return item()->property("placeholder").toString();
    case QAccessible::Value:
        return shown();
    default:
        return {};
    }
}

QAccessible::State FieldAccessible::state() const
{
    QAccessible::State state = ItemAccessible::state();
    state.editable = true;
    state.selectableText = true;
    state.passwordEdit = isMasked();
    state.multiLine = item()->inherits("QQuickTextEdit");
    return state;
}

void* FieldAccessible::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface*>(this);
    case QAccessible::EditableTextInterface:
        return static_cast<QAccessibleEditableTextInterface*>(this);
    default:
        return ItemAccessible::interface_cast(type);
    }
}

void FieldAccessible::selection(int, int* start, int* end) const
{
    *start = item()->property("selectionStart").toInt();
    *end = item()->property("selectionEnd").toInt();
}

int FieldAccessible::selectionCount() const
{
    return item()->property("selectedText").toString().isEmpty() ? 0 : 1;
}

void FieldAccessible::addSelection(int start, int end)
{
    QMetaObject::invokeMethod(item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

void FieldAccessible::removeSelection(int)
{
    QMetaObject::invokeMethod(item(), "deselect");
}

void FieldAccessible::setSelection(int, int start, int end)
{
    addSelection(start, end);
}

int FieldAccessible::cursorPosition() const
{
    return item()->property("cursorPosition").toInt();
}

void FieldAccessible::setCursorPosition(int position)
{
    item()->setProperty("cursorPosition", position);
}

QString FieldAccessible::text(int start, int end) const
{
    return shown().mid(start, end - start);
}

int FieldAccessible::characterCount() const
{
    return static_cast<int>(shown().size());
}

QRect FieldAccessible::characterRect(int position) const
{
    QRectF rectangle;
    QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, rectangle),
                              Q_ARG(int, position));
    return onScreen(rectangle);
}

int FieldAccessible::offsetAtPoint(const QPoint& point) const
{
    for (int position = 0; position < characterCount(); ++position) {
        const QRect before = characterRect(position);
        const QRect after = characterRect(position + 1);
        if (point.y() <= before.bottom() && (after.top() > before.top() || point.x() < after.left())) {
            return position;
        }
    }
    return -1;
}

void FieldAccessible::scrollToSubstring(int start, int)
{
    setCursorPosition(start);
}

QString FieldAccessible::attributes(int, int* start, int* end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void FieldAccessible::deleteText(int start, int end)
{
    QMetaObject::invokeMethod(item(), "remove", Q_ARG(int, start), Q_ARG(int, end));
}

void FieldAccessible::insertText(int position, const QString& text)
{
    QMetaObject::invokeMethod(item(), "insert", Q_ARG(int, position), Q_ARG(QString, text));
}

void FieldAccessible::replaceText(int start, int end, const QString& text)
{
    deleteText(start, end);
    insertText(start, text);
}

} // namespace MirrowvaleAuthenticator
