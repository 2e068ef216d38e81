#pragma once

#include "ui/screens/ContentView.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

namespace MirrowvaleAuthenticator {

/// Builds the one window on the list screen's state.
///
/// @param contentView  must outlive the window
/// @returns            nothing where it cannot be built; the reasons are then on standard error
std::unique_ptr<QQuickWindow> makeMainWindow(QQmlEngine& engine, ContentView& contentView);

} // namespace MirrowvaleAuthenticator
