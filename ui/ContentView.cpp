#include "ui/ContentView.h"

#include "ui/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <chrono>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::chrono::milliseconds tickInterval{1000};

} // namespace

ContentView::ContentView(TokenStore& shownStore, QObject* parent)
    : QObject(parent),
      store(shownStore),
      model(shownStore, instant),
      empty(shownStore.tokens->empty()),
      subscription(shownStore.objectWillChange([this] { renderSoon(); }))
{
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.setInterval(tickInterval);
    connect(&ticker, &QTimer::timeout, this, &ContentView::tick);
}

void ContentView::setSeen(bool seen)
{
    if (seen == ticker.isActive()) {
        return;
    }
    if (seen) {
        tick();
        ticker.start();
    } else {
        ticker.stop();
    }
}

void ContentView::tick()
{
    instant = Date::now();
    model.setNow(instant);
}

void ContentView::renderSoon()
{
    // The announcement comes before the change, so the rendering has to wait for it.
    if (!std::exchange(changed, true)) {
        QMetaObject::invokeMethod(this, &ContentView::renderIfChanged, Qt::QueuedConnection);
    }
}

void ContentView::renderIfChanged()
{
    if (!std::exchange(changed, false)) {
        return;
    }
    model.render();
    if (std::exchange(empty, store.tokens->empty()) != empty) {
        emit emptyChanged();
    }
}

void ContentView::setShowingAdd(bool showing)
{
    if (presenting == showing) {
        return;
    }
    presenting = showing;
    if (presenting) {
        replaceForm(nullptr);
        replaceForm(new AddTokenView(
            store, [this] { setShowingAdd(false); }, this));
        // What is selected in the form may be a secret, which is nobody else's to paste.
        connect(QGuiApplication::clipboard(), &QClipboard::selectionChanged, form,
                &Pasteboard::withdrawSelection, Qt::QueuedConnection);
    }
    emit showingAddChanged();
}

void ContentView::discardAddTokenView()
{
    if (!presenting) {
        replaceForm(nullptr);
    }
}

void ContentView::replaceForm(AddTokenView* next)
{
    AddTokenView* previous = std::exchange(form, next);
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
    model.copyCode(row);
}

void ContentView::advanceCounter(int row)
{
    if (const AuthToken* token = model.tokenAt(row)) {
        store.advanceCounter(AuthToken(*token));
        renderIfChanged();
    }
}

void ContentView::deleteToken(int row)
{
    const AuthToken* token = model.tokenAt(row);
    if (token == nullptr) {
        return;
    }
    store.tokens.modify([id = token->id](std::vector<AuthToken>& tokens) {
        std::erase_if(tokens, [&id](const AuthToken& listed) { return listed.id == id; });
    });
    store.persist();
    renderIfChanged();
}

} // namespace MirrowvaleAuthenticator
