#pragma once

#include "core/AuthToken.h"
#include "storage/TokenStore.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <utility>

namespace MirrowvaleAuthenticator {

/// The values that a stepper runs through.
struct StepperRange {
    Q_GADGET
    QML_VALUE_TYPE(stepperRange)
    Q_PROPERTY(int from MEMBER from CONSTANT FINAL)
    Q_PROPERTY(int to MEMBER to CONSTANT FINAL)
    Q_PROPERTY(int step MEMBER step CONSTANT FINAL)

public:
    int from = 0;
    int to = 0;
    int step = 1;

    int clamped(int value) const { return qBound(from, value, to); }
};

/// The add form: one presentation's entries and its two ways to make a token of them.
class AddTokenView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("presented by the list screen")
    Q_PROPERTY(QString importURI READ importURI WRITE setImportURI NOTIFY changed FINAL)
    Q_PROPERTY(QString issuer READ issuer WRITE setIssuer NOTIFY changed FINAL)
    Q_PROPERTY(QString account READ account WRITE setAccount NOTIFY changed FINAL)
    Q_PROPERTY(QString secret READ secret WRITE setSecret NOTIFY changed FINAL)
    Q_PROPERTY(QString algorithm READ algorithm WRITE setAlgorithm NOTIFY changed FINAL)
    Q_PROPERTY(QStringList algorithms READ algorithms CONSTANT FINAL)
    Q_PROPERTY(int digits READ digits WRITE setDigits NOTIFY changed FINAL)
    Q_PROPERTY(MirrowvaleAuthenticator::StepperRange digitsRange READ digitsRange CONSTANT FINAL)
    Q_PROPERTY(int period READ period WRITE setPeriod NOTIFY changed FINAL)
    Q_PROPERTY(MirrowvaleAuthenticator::StepperRange periodRange READ periodRange CONSTANT FINAL)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged FINAL)
    Q_PROPERTY(bool canImport READ canImport NOTIFY changed FINAL)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed FINAL)

public:
    /// @param store    receives new tokens; must outlive the form
    /// @param dismiss  ends the presentation; called once at most
    AddTokenView(TokenStore& store, std::function<void()> dismiss, QObject* parent = nullptr);

    QString importURI() const { return importURI_; }
    void setImportURI(const QString& text) { set(importURI_, text); }
    QString issuer() const { return issuer_; }
    void setIssuer(const QString& text) { set(issuer_, text); }
    QString account() const { return account_; }
    void setAccount(const QString& text) { set(account_, text); }
    QString secret() const { return secret_; }
    void setSecret(const QString& text) { set(secret_, text); }

    /// The chosen algorithm by its raw value; an unknown one leaves the choice as it is.
    QString algorithm() const;
    void setAlgorithm(const QString& rawValue);
    QStringList algorithms() const;

    int digits() const { return digits_; }
    void setDigits(int value) { set(digits_, digitsRange().clamped(value)); }
    StepperRange digitsRange() const { return {6, 8, 1}; }
    int period() const { return period_; }
    void setPeriod(int value) { set(period_, periodRange().clamped(value)); }
    StepperRange periodRange() const { return {15, 90, 5}; }

    QString error() const { return error_; } ///< why the last attempt failed; empty before the first

    bool canImport() const;
    bool canSave() const;

    Q_INVOKABLE void importFromURI();
    Q_INVOKABLE void saveManualToken();
    Q_INVOKABLE void cancel();

signals:
    void changed();
    void errorChanged();

private:
    template <typename Value>
    void set(Value& entry, const Value& value)
    {
        if (std::exchange(entry, value) != value) {
            emit changed();
        }
    }

    AuthToken manualToken() const;
    void add(const std::function<AuthToken()>& makeToken);
    void setError(const QString& message);

    TokenStore& store_;
    std::function<void()> dismiss_;
    QString importURI_;
    QString issuer_;
    QString account_;
    QString secret_;
    AuthToken::Algorithm algorithm_ = AuthToken::Algorithm::sha1;
    int digits_ = 6;
    int period_ = 30;
    QString error_;
};

} // namespace MirrowvaleAuthenticator
