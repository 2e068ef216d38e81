#pragma once

#include "core/AuthToken.h"
#include "platform/text/Date.h"

#include <QCoreApplication>
#include <QString>

#include <cstdint>

namespace MirrowvaleAuthenticator {

/// What one row shows of a token at an instant. Nothing is kept: every code is computed when it is asked for.
class TokenRowView {
    Q_DECLARE_TR_FUNCTIONS(TokenRowView)

public:
    /// @param token   must outlive the view
    /// @param copied  whether the copy acknowledgement is shown
    TokenRowView(const AuthToken& token, Date now, bool copied);

    QString issuer() const; ///< the token's own, or "Token"
    QString account() const; ///< the token's own, or "Account"
    QString code() const; ///< the digits, or "------" where there is no code
    QString displayCode() const { return displayCode(code()); }
    /// Otherwise the countdown shows.
    bool offersNext() const { return token_.kind == AuthToken::Kind::hotp; }
    std::int64_t seconds() const; ///< left in the current time step; 0 for a counter-based token
    QString countdown() const; ///< the seconds and their unit
    QString longestCountdown() const; ///< as a time step begins
    bool isUrgent() const; ///< 5 seconds or less are left; of no meaning for a counter-based token
    bool isCopied() const { return copied_; }

    /// Writes the bare code to the pasteboard.
    void copyCode() const;

    /// Six characters in two groups of three; any other text as it is.
    static QString displayCode(const QString& code);

private:
    const AuthToken& token_;
    Date now_;
    bool copied_;
};

} // namespace MirrowvaleAuthenticator
