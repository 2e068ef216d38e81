#pragma once

#include "ui/items/KeyboardFocusItem.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// What a row of the list draws, and what can be asked of it by hand, by key or by assistive technology.
class TokenRowItem : public MirrowvaleAuthenticator::KeyboardFocusItem { // qualified for the QML type system
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int index MEMBER index_ NOTIFY indexChanged FINAL)
    Q_PROPERTY(QString issuer MEMBER issuer_ NOTIFY issuerChanged FINAL)
    Q_PROPERTY(QString account MEMBER account_ NOTIFY accountChanged FINAL)
    Q_PROPERTY(QString displayCode MEMBER displayCode_ NOTIFY displayCodeChanged FINAL)
    Q_PROPERTY(bool offersNext MEMBER offersNext_ NOTIFY offersNextChanged FINAL)
    Q_PROPERTY(QString countdown MEMBER countdown_ NOTIFY countdownChanged FINAL)
    Q_PROPERTY(QString longestCountdown MEMBER longestCountdown_ NOTIFY longestCountdownChanged FINAL)
    /// Whether Tab moves focus to this row, or it had focus last.
    Q_PROPERTY(bool current MEMBER current_ NOTIFY currentChanged FINAL)
    /// Whether the row stands so far away from its trailing edge that "Delete" can be seen, is about to, or
    /// is being swiped.
    Q_PROPERTY(bool open MEMBER open_ NOTIFY openChanged FINAL)

public:
    explicit TokenRowItem(QQuickItem* parent = nullptr);

    /// Everything that stands in the row, for a screen reader: the code digit by digit, no digits in groups.
    QString spokenText() const;

    bool doesOfferNext() const { return offersNext_; }

    /// Takes the place among its visible siblings that the row has in the list: a screen reader reads them in
    /// the order in which they are stacked, but a list appends what it makes.
    Q_INVOKABLE void stackInOrder();

signals:
    void indexChanged();
    void issuerChanged();
    void accountChanged();
    void displayCodeChanged();
    void offersNextChanged();
    void countdownChanged();
    void longestCountdownChanged();
    void currentChanged();
    void openChanged();

    void copyRequested();
    void nextRequested();
    void deleteRequested();

protected:
    void componentComplete() override;

private:
    int index_ = 0;
    QString issuer_;
    QString account_;
    QString displayCode_;
    bool offersNext_ = false;
    QString countdown_;
    QString longestCountdown_;
    bool current_ = false;
    bool open_ = false;
};

} // namespace MirrowvaleAuthenticator
