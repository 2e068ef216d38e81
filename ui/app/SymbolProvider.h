#pragma once

#include <QQuickImageProvider>

namespace MirrowvaleAuthenticator {

/// Draws the application's symbols: "<name>/<#rrggbb>", as squares of the requested width in device
/// pixels.
class SymbolProvider : public QQuickImageProvider {
public:
    SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) { }

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace MirrowvaleAuthenticator
