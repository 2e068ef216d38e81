#include "ui/accessibility/AccessibleFactory.h"

#include "ui/accessibility/ButtonAccessible.h"
#include "ui/accessibility/FieldAccessible.h"
#include "ui/accessibility/ListAccessible.h"
#include "ui/accessibility/ScreenAccessible.h"
#include "ui/accessibility/TokenRowAccessible.h"
#include "ui/items/ButtonItem.h"
#include "ui/items/TokenRowItem.h"

#include <QAccessible>

namespace MirrowvaleAuthenticator {

namespace {

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
