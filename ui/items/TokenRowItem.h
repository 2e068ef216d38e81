#pragma once

#include "ui/items/KeyboardFocusItem.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// What a row of the list draws, and what can be asked of it by hand, by key or by assistive technology.
class TokenRowItem : public MirrowvaleAuthenticator::KeyboardFocusItem { // qualified for the QML type system
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString issuer MEMBER issuer_ NOTIFY tokenChanged FINAL)
    Q_PROPERTY(QString account MEMBER account_ NOTIFY tokenChanged FINAL)
    Q_PROPERTY(QString displayCode MEMBER displayCode_ NOTIFY tokenChanged FINAL)
    Q_PROPERTY(bool offersNext MEMBER offersNext_ NOTIFY tokenChanged FINAL)
    Q_PROPERTY(QString countdown MEMBER countdown_ NOTIFY countdownChanged FINAL)
    /// Whether Tab moves focus to this row, or it had focus last.
    Q_PROPERTY(bool current MEMBER current_ NOTIFY currentChanged FINAL)
    /// Whether the row is so far away from its trailing edge that "Delete" can be seen, is about to be, or is
    /// being swiped.
    Q_PROPERTY(bool open MEMBER open_ NOTIFY openChanged FINAL)

public:
    explicit TokenRowItem(QQuickItem* parent = nullptr);

    /// All texts of the row, for a screen reader: the code digit by digit, no digits in groups.
    QString spokenText() const;

    bool doesOfferNext() const { return offersNext_; }

signals:
    void tokenChanged();
    void countdownChanged();
    void currentChanged();
    void openChanged();

    void copyRequested();
    void nextRequested();
    void deleteRequested();

private:
    void announce();

    QString issuer_;
    QString account_;
    QString displayCode_;
    bool offersNext_ = false;
    QString countdown_;
    bool current_ = false;
    bool open_ = false;
};

} // namespace MirrowvaleAuthenticator
