#include "ui/app/SymbolProvider.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace MirrowvaleAuthenticator {

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const qsizetype separator = id.lastIndexOf(u'/');
    QSvgRenderer artwork(QStringLiteral(":/symbols/%1.svg").arg(id.left(separator)));
    if (!artwork.isValid()) {
        return {};
    }
    const int side = requestedSize.width() > 0 ? requestedSize.width() : artwork.defaultSize().width();
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    artwork.render(&painter, image.rect());
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), QColor(id.mid(separator + 1)));
    *size = image.size();
    return image;
}

} // namespace MirrowvaleAuthenticator
