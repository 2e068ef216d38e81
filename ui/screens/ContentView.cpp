#include "ui/screens/ContentView.h"

#include "ui/desktop/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <chrono>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::chrono::milliseconds tickInterval{1000};

} // namespace

ContentView::ContentView(TokenStore& store, QObject* parent)
    : QObject(parent), store_(store), rows_(store, Date::now())
{
    store_.objectWillChange = [this] { renderSoon(); };
    ticker_.setTimerType(Qt::PreciseTimer);
    ticker_.setInterval(tickInterval);
    connect(&ticker_, &QTimer::timeout, this, &ContentView::tick);
}

ContentView::~ContentView()
{
    store_.objectWillChange = [] {};
}

void ContentView::setVisible(bool visible)
{
    visible_ = visible;
    startOrStopClock();
}

void ContentView::startOrStopClock()
{
    const bool runs = visible_ && !store_.tokens->empty();
    if (runs == ticker_.isActive()) {
        return;
    }
    if (runs) {
        tick();
        ticker_.start();
    } else {
        ticker_.stop();
    }
}

void ContentView::tick()
{
    rows_.setNow(Date::now());
}

void ContentView::renderSoon()
{
    // The announcement comes before the change, so the rendering has to wait for it.
    if (!std::exchange(changed_, true)) {
        QMetaObject::invokeMethod(this, &ContentView::renderIfChanged, Qt::QueuedConnection);
    }
}

void ContentView::renderIfChanged()
{
    if (!std::exchange(changed_, false)) {
        return;
    }
    const bool wasEmpty = isEmpty();
    startOrStopClock(); // first: a first row's code is that of its instant
    rows_.render();
    if (wasEmpty != isEmpty()) {
        emit emptyChanged();
    }
}

void ContentView::setShowingAdd(bool showing)
{
    if (showingAdd_ == showing) {
        return;
    }
    showingAdd_ = showing;
    if (showingAdd_) {
        replaceForm(nullptr);
        replaceForm(new AddTokenView(
            store_, [this] { setShowingAdd(false); }, this));
        // What is selected in the form may be a secret, which is nobody else's to paste.
        connect(QGuiApplication::clipboard(), &QClipboard::selectionChanged, addTokenView_,
                &Pasteboard::withdrawSelection, Qt::QueuedConnection);
    }
    emit showingAddChanged();
}

void ContentView::discardAddTokenView()
{
    if (!showingAdd_) {
        replaceForm(nullptr);
    }
}

void ContentView::replaceForm(AddTokenView* next)
{
    AddTokenView* previous = std::exchange(addTokenView_, next);
    if (previous == next) {
        return;
    }
    emit addTokenViewChanged();
    if (previous != nullptr) {
        Pasteboard::withdrawSelection();
        previous->deleteLater(); // it may be the one that asked for this
    }
}

void ContentView::copyCode(int row)
{
    rows_.copyCode(row);
}

void ContentView::advanceCounter(int row)
{
    if (const AuthToken* token = rows_.tokenAt(row)) {
        store_.advanceCounter(AuthToken(*token));
        renderIfChanged();
    }
}

void ContentView::deleteToken(int row)
{
    const AuthToken* token = rows_.tokenAt(row);
    if (token == nullptr) {
        return;
    }
    store_.tokens.modify([id = token->id](std::vector<AuthToken>& tokens) {
        std::erase_if(tokens, [&id](const AuthToken& listed) { return listed.id == id; });
    });
    store_.persist();
    renderIfChanged();
}

} // namespace MirrowvaleAuthenticator
