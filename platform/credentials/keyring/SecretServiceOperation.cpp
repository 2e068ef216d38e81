#include "platform/credentials/keyring/SecretServiceOperation.h"

#include "platform/credentials/keyring/ErrorReport.h"
#include "platform/credentials/keyring/SecretServicePrompt.h"

namespace MirrowvaleAuthenticator {

namespace {

constexpr guint timeout = 4000; // milliseconds; of the bus, too

} // namespace

TimerSource::TimerSource(GMainContext* context, guint milliseconds, GSourceFunc function, gpointer data)
    : milliseconds_(milliseconds), source_(g_timeout_source_new(milliseconds))
{
    g_source_set_callback(source_, function, data, nullptr);
    g_source_attach(source_, context);
}

TimerSource::~TimerSource()
{
    g_source_destroy(source_);
    g_source_unref(source_);
}

SecretServiceOperation::SecretServiceOperation()
    : timeout_(context_.get(), timeout, cancel, cancellable_.get())
{
    g_main_context_push_thread_default(context_.get());
    current = this;
}

SecretServiceOperation::~SecretServiceOperation()
{
    service_.reset();
    while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
        // What the objects of this operation still have to be told when they go is freed with it.
    }
    current = nullptr;
    g_main_context_pop_thread_default(context_.get());
}

void SecretServiceOperation::connect()
{
    bus_ = connectToSessionBus(std::chrono::milliseconds(timeout));
    if (!bus_) {
        throw StatusError{errSecNotAvailable};
    }
    ErrorReport report;
    const auto answer = wait([&](auto... rest) {
        secret_service_open(promptingServiceType(), nullptr, SECRET_SERVICE_NONE, rest...);
    });
    service_.reset(secret_service_open_finish(answer.get(), report));
    report.require();
}

void SecretServiceOperation::requireService()
{
    ErrorReport report;
    auto* proxy = G_DBUS_PROXY(service());
    const auto answer = wait([&](auto... rest) {
        g_dbus_proxy_call(proxy, "org.freedesktop.DBus.Peer.Ping", nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                          -1, rest...);
    });
    const Owned<GVariant> reply(g_dbus_proxy_call_finish(proxy, answer.get(), report));
    report.require();
}

void SecretServiceOperation::takeAnswer(GObject*, GAsyncResult* result, gpointer answer)
{
    static_cast<Owned<GAsyncResult>*>(answer)->reset(static_cast<GAsyncResult*>(g_object_ref(result)));
}

gboolean SecretServiceOperation::cancel(gpointer cancellable)
{
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
    return G_SOURCE_REMOVE;
}

} // namespace MirrowvaleAuthenticator
