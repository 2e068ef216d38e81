#include "ui/desktop/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace MirrowvaleAuthenticator {

void Pasteboard::setString(const QString& text)
{
    auto data = std::make_unique<QMimeData>();
    data->setText(text);
    data->setData(QStringLiteral("x-kde-passwordManagerHint"), QByteArrayLiteral("secret"));
    QGuiApplication::clipboard()->setMimeData(data.release());
}

void Pasteboard::withdrawSelection()
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    // Owned, but empty: to give it up makes the toolkit complain of whoever asks for it in this moment.
    if (clipboard->ownsSelection() && !clipboard->mimeData(QClipboard::Selection)->formats().isEmpty()) {
        clipboard->setMimeData(new QMimeData, QClipboard::Selection);
    }
}

} // namespace MirrowvaleAuthenticator
