#pragma once

#include "core/AuthToken.h"
#include "platform/text/Date.h"
#include "storage/TokenStore.h"
#include "ui/screens/TokenRowView.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The rows of the token list, in the store's order.
///
/// Stores nothing of a token but its id: what a row shows is read from the store when it is asked for, so
/// that a tick costs what is visible.
class TokenListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the list screen")

public:
    enum Role {
        Issuer = Qt::UserRole,
        Account,
        DisplayCode,
        OffersNext,
        Countdown,
        LongestCountdown,
        Urgent,
        Copied
    };

    TokenListModel(TokenStore& store, Date now, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const final;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Updates the rows to the store's tokens.
    void render();

    /// The instant that codes and countdowns are computed for.
    Date now() const { return now_; }
    void setNow(Date instant);

    /// The listed token that a row shows; none for a row that does not exist or whose token has just been
    /// removed. Valid until the store's list changes.
    const AuthToken* tokenAt(int row) const;

    /// Copies a row's code and shows the acknowledgement for 1.5 seconds.
    void copyCode(int row);

private:
    /// Whether the acknowledgement of one token shows; goes with its token.
    using CopiedState = std::shared_ptr<bool>;

    void removeRowsThatLeft();
    void appendMissingRows();
    void forgetCopiedStatesOfRemovedTokens();
    void setCopied(const UUID& id, bool& state, bool copied);
    TokenRowView rowView(const AuthToken& token) const;

    TokenStore& store_;
    Date now_;
    std::vector<UUID> ids_;
    std::map<UUID, CopiedState> copiedStates_;
};

} // namespace MirrowvaleAuthenticator
