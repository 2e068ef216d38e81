#include "ui/screens/TokenListModel.h"

#include <QTimer>

#include <algorithm>
#include <chrono>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::chrono::milliseconds acknowledgementTime{1500};

} // namespace

TokenListModel::TokenListModel(TokenStore& store, Date now, QObject* parent)
    : QAbstractListModel(parent), store_(store), now_(now)
{
    render();
}

int TokenListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ids_.size());
}

QHash<int, QByteArray> TokenListModel::roleNames() const
{
    return {
        {Issuer, "issuer"},         {Account, "account"},     {DisplayCode, "displayCode"},
        {OffersNext, "offersNext"}, {Countdown, "countdown"}, {LongestCountdown, "longestCountdown"},
        {Urgent, "urgent"},         {Copied, "copied"},
    };
}

QVariant TokenListModel::data(const QModelIndex& index, int role) const
{
    const AuthToken* token = tokenAt(index.row());
    if (token == nullptr) {
        return {};
    }
    const TokenRowView view = rowView(*token);
    switch (role) {
    case Issuer:
        return view.issuer();
    case Account:
        return view.account();
    case DisplayCode:
        return view.displayCode();
    case OffersNext:
        return view.offersNext();
    case Countdown:
        return view.countdown();
    case LongestCountdown:
        return view.longestCountdown();
    case Urgent:
        return view.isUrgent();
    case Copied:
        return view.isCopied();
    default:
        return {};
    }
}

void TokenListModel::render()
{
    removeRowsThatLeft();
    const int stayed = rowCount();
    appendMissingRows();
    if (stayed > 0) {
        emit dataChanged(index(0), index(stayed - 1));
    }
    forgetCopiedStatesOfRemovedTokens();
}

void TokenListModel::removeRowsThatLeft()
{
    // The rows that stay spell out the beginning of the store's list; whatever the change was, removing the
    // others and appending the rest of the list gives the list.
    const auto& tokens = *store_.tokens;
    for (std::size_t row = 0; row < ids_.size(); ++row) {
        const auto first = ids_.begin() + static_cast<std::ptrdiff_t>(row);
        const auto stays = row < tokens.size() ? std::find(first, ids_.end(), tokens[row].id) : ids_.end();
        if (first != stays) {
            beginRemoveRows({}, static_cast<int>(row), static_cast<int>(stays - ids_.begin()) - 1);
            ids_.erase(first, stays);
            endRemoveRows();
        }
    }
}

void TokenListModel::appendMissingRows()
{
    const auto& tokens = *store_.tokens;
    if (ids_.size() == tokens.size()) {
        return;
    }
    beginInsertRows({}, rowCount(), static_cast<int>(tokens.size()) - 1);
    for (std::size_t row = ids_.size(); row < tokens.size(); ++row) {
        ids_.push_back(tokens[row].id);
    }
    endInsertRows();
}

void TokenListModel::forgetCopiedStatesOfRemovedTokens()
{
    std::erase_if(copiedStates_,
                  [this](const auto& entry) { return std::ranges::find(ids_, entry.first) == ids_.end(); });
}

void TokenListModel::setNow(Date instant)
{
    now_ = instant;
    if (!ids_.empty()) {
        emit dataChanged(index(0), index(rowCount() - 1), {DisplayCode, Countdown, Urgent});
    }
}

const AuthToken* TokenListModel::tokenAt(int row) const
{
    if (row < 0 || row >= rowCount()) {
        return nullptr;
    }
    const auto position = static_cast<std::size_t>(row);
    const auto& tokens = *store_.tokens;
    if (position < tokens.size() && tokens[position].id == ids_[position]) {
        return &tokens[position];
    }
    // The store has changed and the rows have not followed yet.
    const auto found = std::ranges::find(tokens, ids_[position], &AuthToken::id);
    return found == tokens.end() ? nullptr : &*found;
}

void TokenListModel::copyCode(int row)
{
    const AuthToken* token = tokenAt(row);
    if (token == nullptr) {
        return;
    }
    const UUID id = token->id;
    rowView(*token).copyCode();
    auto& state = copiedStates_[id];
    if (!state) {
        state = std::make_shared<bool>(false);
    }
    setCopied(id, *state, true);
    QTimer::singleShot(acknowledgementTime, Qt::PreciseTimer, this, [this, id, weak = std::weak_ptr(state)] {
        if (const auto pressed = weak.lock()) {
            setCopied(id, *pressed, false);
        }
    });
}

void TokenListModel::setCopied(const UUID& id, bool& state, bool copied)
{
    if (state == copied) {
        return;
    }
    state = copied;
    for (int row = 0; row < rowCount(); ++row) {
        if (ids_[static_cast<std::size_t>(row)] == id) {
            emit dataChanged(index(row), index(row), {Copied});
        }
    }
}

TokenRowView TokenListModel::rowView(const AuthToken& token) const
{
    const auto state = copiedStates_.find(token.id);
    return {token, now_, state != copiedStates_.end() && *state->second};
}

} // namespace MirrowvaleAuthenticator
