#pragma once

#include "platform/Date.h"
#include "platform/ObservableObject.h"
#include "storage/TokenStore.h"
#include "ui/AddTokenView.h"
#include "ui/TokenListModel.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// The list screen: its state, its clock and its actions.
class ContentView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the application")
    Q_PROPERTY(MirrowvaleAuthenticator::TokenListModel* rows READ rows CONSTANT FINAL)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY emptyChanged FINAL)
    Q_PROPERTY(bool showingAdd READ showingAdd WRITE setShowingAdd NOTIFY showingAddChanged FINAL)
    Q_PROPERTY(MirrowvaleAuthenticator::AddTokenView* addTokenView READ addTokenView NOTIFY
                   addTokenViewChanged FINAL)

public:
    /// @param store  the application's; must outlive the screen
    explicit ContentView(TokenStore& store, QObject* parent = nullptr);

    TokenListModel* rows() { return &model; }
    Date now() const { return instant; }

    /// Says whether the screen can be seen. Its clock runs only while it can, and is right from the first
    /// instant on.
    void setSeen(bool seen);

    /// Whether the empty state stands in place of the list, as of the last rendering.
    bool isEmpty() const { return empty; }

    bool showingAdd() const { return presenting; }
    void setShowingAdd(bool showing);

    /// The form of the current presentation; it stays until its sheet has gone, then there is none.
    AddTokenView* addTokenView() const { return form; }

    /// Drops the form, and with it what was typed, once its sheet is out of sight.
    Q_INVOKABLE void discardAddTokenView();

    Q_INVOKABLE void copyCode(int row);
    Q_INVOKABLE void advanceCounter(int row);
    Q_INVOKABLE void deleteToken(int row);

signals:
    void emptyChanged();
    void showingAddChanged();
    void addTokenViewChanged();

private:
    void tick();
    void renderSoon();
    void renderIfChanged();
    void replaceForm(AddTokenView* next);

    TokenStore& store;
    bool presenting = false;
    Date instant = Date::now();
    QTimer ticker;

    TokenListModel model;
    bool empty;
    bool changed = false;
    AddTokenView* form = nullptr;
    ObservableObject::Subscription subscription;
};

} // namespace MirrowvaleAuthenticator
