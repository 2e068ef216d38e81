#pragma once

#include "ui/items/KeyboardFocusItem.h"

#include <QBasicTimer>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// What every button is: pressed by touch, pointer or keyboard.
///
/// The toolkit's own button brings the types of all its controls into memory, which the first frame would
/// wait for.
class ButtonItem : public MirrowvaleAuthenticator::KeyboardFocusItem { // qualified for the QML type system
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY changed FINAL)
    /// What the button acts on, where its title alone does not say so.
    Q_PROPERTY(QString subject MEMBER subject_ NOTIFY changed FINAL)
    /// The key that does the same anywhere in the window, as the platform writes it; empty where there is
    /// none.
    Q_PROPERTY(QString key MEMBER key_ NOTIFY changed FINAL)
    Q_PROPERTY(bool opensMenu MEMBER opensMenu_ NOTIFY changed FINAL)
    /// Whether it is an entry of a menu.
    Q_PROPERTY(bool inMenu MEMBER inMenu_ NOTIFY changed FINAL)
    /// Whether it is an option, which can be the chosen one.
    Q_PROPERTY(bool checkable MEMBER checkable_ NOTIFY changed FINAL)
    Q_PROPERTY(bool checked MEMBER checked_ NOTIFY changed FINAL)
    Q_PROPERTY(bool autoRepeat MEMBER autoRepeat_ NOTIFY changed FINAL)
    Q_PROPERTY(bool down READ isDown NOTIFY downChanged FINAL)
    /// Whether a pointer is on it.
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged FINAL)

public:
    explicit ButtonItem(QQuickItem* parent = nullptr);

    QString text() const { return text_; }
    QString subject() const { return subject_; }
    QString key() const { return key_; }
    bool doesOpenMenu() const { return opensMenu_; }
    bool isInMenu() const { return inMenu_; }
    bool isCheckable() const { return checkable_; }
    bool isChecked() const { return checked_; }
    bool isDown() const { return down_; } ///< a press that would count if it ended now
    bool isHovered() const { return hovered_; }

signals:
    void changed();
    void downChanged();
    void hoveredChanged();

    /// A press has ended on the button. Where `autoRepeat` is set, a press that is held clicks again and
    /// again instead, and its end no more.
    void clicked();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void touchUngrabEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void beginPress();
    void endPress(bool counts);
    void setDown(bool presses);
    void setHovered(bool hovered);

    QString text_;
    QString subject_;
    QString key_;
    bool opensMenu_ = false;
    bool inMenu_ = false;
    bool checkable_ = false;
    bool checked_ = false;
    bool down_ = false;
    bool hovered_ = false;
    bool autoRepeat_ = false;
    bool returnIsHeld_ = false; ///< pressed here, not where focus was before
    bool repeated_ = false; ///< the press under way has clicked while it was held
    QBasicTimer repetition_;
};

} // namespace MirrowvaleAuthenticator
