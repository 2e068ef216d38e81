#pragma once

#include "tests/ui/ScreenFixture.h"
#include "ui/app/MakeMainWindow.h"
#include "ui/desktop/SystemAppearance.h"

#include <QList>
#include <QQmlExpression>
#include <QQuickItem>

namespace MirrowvaleAuthenticator {

/// The whole window on the screens' state, drawn nowhere.
class SceneTest : public ScreenTest {
protected:
    void build()
    {
        window = makeMainWindow(engine, contentView);
        ASSERT_NE(window, nullptr);
    }

    /// The nearest items below that are shown and wanted.
    template <typename Condition>
    static QList<QQuickItem*> shown(const QQuickItem* item, const Condition& wanted)
    {
        QList<QQuickItem*> found;
        for (QQuickItem* child : item->childItems()) {
            if (child->isVisible() && child->opacity() > 0) {
                found += wanted(*child) ? QList{child} : shown(child, wanted);
            }
        }
        return found;
    }

    /// The same by a type of the toolkit or of ours.
    static QList<QQuickItem*> shown(const QQuickItem* item, const char* type)
    {
        return shown(item, [type](const QQuickItem& candidate) { return candidate.inherits(type); });
    }

    /// @param user  what has the singleton among its imports
    static QObject* singleton(const char* name, QObject* user)
    {
        return QQmlExpression(qmlContext(user), user, QLatin1String(name)).evaluate().value<QObject*>();
    }

    /// One of the desktop's settings, of which the next test knows nothing if this one sets it back.
    void set(const char* group, const char* key, const QVariant& value)
    {
        auto* appearance = singleton("SystemAppearance", singleton("Theme", window.get()));
        qobject_cast<SystemAppearance*>(appearance)->apply(QLatin1String(group), QLatin1String(key), value);
    }

    void setTextScale(double scale) { set("org.gnome.desktop.interface", "text-scaling-factor", scale); }

    ContentView contentView{store};
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
};

} // namespace MirrowvaleAuthenticator
