#pragma once

#include "platform/text/Date.h"
#include "storage/TokenStore.h"
#include "ui/screens/AddTokenView.h"
#include "ui/screens/TokenListModel.h"

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
    /// @param store  the application's, of which this is the observer; must outlive the screen
    explicit ContentView(TokenStore& store, QObject* parent = nullptr);
    ~ContentView() override;

    TokenListModel* rows() { return &rows_; }
    Date now() const { return rows_.now(); }

    /// Says whether the screen can be seen. Its clock runs only while it can and there is a row to see, and
    /// is right from the first instant on.
    void setVisible(bool visible);

    /// Whether the empty state is shown instead of the list, as of the last rendering.
    bool isEmpty() const { return rows_.rowCount() == 0; }

    bool showingAdd() const { return showingAdd_; }
    void setShowingAdd(bool showing);

    /// The form of the current presentation; it stays until its sheet has gone, then there is none.
    AddTokenView* addTokenView() const { return addTokenView_; }

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
    void startOrStopClock();
    void tick();
    void renderSoon();
    void renderIfChanged();
    void replaceForm(AddTokenView* next);

    TokenStore& store_;
    bool showingAdd_ = false;
    QTimer ticker_;
    bool visible_ = false;

    TokenListModel rows_;
    bool changed_ = false;
    AddTokenView* addTokenView_ = nullptr;
};

} // namespace MirrowvaleAuthenticator
