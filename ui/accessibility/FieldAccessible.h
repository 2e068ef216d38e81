#pragma once

#include "ui/accessibility/ItemAccessible.h"

namespace MirrowvaleAuthenticator {

/// The accessible interface of a field, which can be written into. A masked one gives its bullets. Positions
/// and lengths are in UTF-16 code units. The toolkit has no public types for fields, so that theirs are
/// reached by name.
class FieldAccessible : public ItemAccessible,
                        public QAccessibleTextInterface,
                        public QAccessibleEditableTextInterface {
public:
    using ItemAccessible::ItemAccessible;

    QAccessible::Role role() const override { return QAccessible::EditableText; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    int characterCount() const override;
    QRect characterRect(int position) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int position, int* start, int* end) const override;

    void deleteText(int start, int end) override;
    void insertText(int position, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

private:
    QString shown() const;
    bool isMasked() const;
};

} // namespace MirrowvaleAuthenticator
