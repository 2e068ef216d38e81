#include "ui/accessibility/AccessibleFactory.h"

#include "ui/accessibility/FieldAccessible.h"
#include "ui/accessibility/ItemAccessible.h"
#include "ui/items/AccessibleList.h"
#include "ui/items/ButtonItem.h"
#include "ui/items/TokenRowItem.h"

#include <QCoreApplication>
#include <QWindow>

#include <algorithm>

namespace MirrowvaleAuthenticator {

namespace {

/// A screen: empty while it is disabled, whatever can be seen of it.
class ScreenAccessible : public ItemAccessible {
public:
    using ItemAccessible::ItemAccessible;

    QAccessible::Role role() const override { return QAccessible::Pane; }
    QString text(QAccessible::Text) const override { return {}; }
    QStringList actionNames() const override { return {}; }

    QAccessible::State state() const override
    {
        QAccessible::State state = ItemAccessible::state();
        state.invisible = state.invisible || state.disabled;
        state.focusable = false;
        return state;
    }

protected:
    QList<QAccessibleInterface*> children() const override
    {
        return item()->isEnabled() ? ItemAccessible::children() : QList<QAccessibleInterface*>();
    }
};

/// The list, which has its window's title: its rows and its scrolling. The toolkit's own (seen in Qt 6.4.2)
/// also has the rows of deleted tokens, which wait for another token.
class ListAccessible : public ItemAccessible {
public:
    explicit ListAccessible(QQuickItem* view)
        : ItemAccessible(view),
          list_(static_cast<AccessibleList*>(qmlAttachedPropertiesObject<AccessibleList>(view)))
    {
    }

    QAccessible::Role role() const override { return QAccessible::List; }
    QStringList actionNames() const override { return {scrollUpAction(), scrollDownAction()}; }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && window() != nullptr ? window()->title() : QString();
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = ItemAccessible::state();
        state.focusable = false; // its rows are
        return state;
    }

    void doAction(const QString& name) override
    {
        if (actionNames().contains(name)) {
            emit list_->scrollRequested(name == scrollDownAction() ? 1 : -1);
        }
    }

protected:
    /// From top to bottom: they are stacked in the order in which the view made them.
    QList<QAccessibleInterface*> children() const override
    {
        auto found = ItemAccessible::children();
        std::ranges::stable_sort(found, {}, [](QAccessibleInterface* child) { return child->rect().top(); });
        return found;
    }

private:
    AccessibleList* list_;
};

/// A button: its title, what it acts on, whether it can be pressed, by which key.
class ButtonAccessible : public ItemAccessible {
public:
    explicit ButtonAccessible(ButtonItem* button) : ItemAccessible(button), button_(*button) { }

    QAccessible::Role role() const override
    {
        return button_.isInMenu() ? QAccessible::MenuItem : QAccessible::Button;
    }

    QString text(QAccessible::Text kind) const override
    {
        switch (kind) {
        case QAccessible::Name:
            return button_.text();
        case QAccessible::Description:
            return button_.subject();
        case QAccessible::Accelerator:
            return button_.key();
        default:
            return {};
        }
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = ItemAccessible::state();
        const bool leavesFocus = button_.isInMenu() && !button_.activeFocusOnTab(); // where it is
        state.focusable = state.focusable && !leavesFocus;
        state.pressed = button_.isDown();
        state.hasPopup = button_.doesOpenMenu();
        state.checkable = button_.isCheckable();
        state.checked = button_.isChecked();
        return state;
    }

    QStringList actionNames() const override
    {
        return button_.isEnabled() ? ItemAccessible::actionNames() << pressAction() : QStringList{};
    }

    void doAction(const QString& name) override
    {
        if (name == pressAction() && button_.isEnabled() && button_.isVisible()) {
            emit button_.clicked();
        } else {
            ItemAccessible::doAction(name);
        }
    }

    QStringList keyBindingsForAction(const QString& name) const override
    {
        return name == pressAction() && !button_.key().isEmpty() ? QStringList{button_.key()} : QStringList{};
    }

private:
    ButtonItem& button_;
};

/// A row of the list: one thing with its actions, which are in the interface's language. Its name is worked
/// out when it is asked for; no tick announces it, but for a new code.
class TokenRowAccessible : public ItemAccessible {
public:
    explicit TokenRowAccessible(TokenRowItem* row) : ItemAccessible(row), row_(*row) { }

    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? row_.spokenText() : QString();
    }

    QStringList actionNames() const override
    {
        if (!state().focusable) {
            return {};
        }
        const QStringList next = row_.doesOfferNext() ? QStringList{nextTitle()} : QStringList{};
        return QStringList{copyTitle()} + next + QStringList{deleteTitle()} + ItemAccessible::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (!actionNames().contains(name)) {
            return;
        }
        if (name == copyTitle()) {
            emit row_.copyRequested();
        } else if (name == nextTitle()) {
            emit row_.nextRequested();
        } else if (name == deleteTitle()) {
            emit row_.deleteRequested();
        } else {
            ItemAccessible::doAction(name);
        }
    }

private:
    // The same keys as the buttons' titles in the row's drawing.
    static QString copyTitle() { return QCoreApplication::translate("TokenRow", "Copy code"); }
    static QString nextTitle() { return QCoreApplication::translate("TokenRow", "Next"); }
    static QString deleteTitle() { return QCoreApplication::translate("DeleteButton", "Delete"); }

    TokenRowItem& row_;
};

/// @param className  that of the object or of one of its bases: the toolkit asks for each in turn
QAccessibleInterface* makeAccessible(const QString& className, QObject* object)
{
    if (className == QLatin1String("MirrowvaleAuthenticator::TokenRowItem")) {
        return new TokenRowAccessible(static_cast<TokenRowItem*>(object));
    }
    if (className == QLatin1String("MirrowvaleAuthenticator::ButtonItem")) {
        return new ButtonAccessible(static_cast<ButtonItem*>(object));
    }
    if (className == QLatin1String("MirrowvaleAuthenticator::ScreenItem")) {
        return new ScreenAccessible(static_cast<QQuickItem*>(object));
    }
    if (className == QLatin1String("QQuickListView")) {
        return new ListAccessible(static_cast<QQuickItem*>(object));
    }
    if (className == QLatin1String("QQuickTextField") || className == QLatin1String("QQuickTextArea")) {
        return new FieldAccessible(static_cast<QQuickItem*>(object));
    }
    return nullptr;
}

} // namespace

void installAccessibleFactory()
{
    QAccessible::installFactory(makeAccessible);
}

} // namespace MirrowvaleAuthenticator
