#include "platform/credentials/keyring/SecretServicePrompt.h"

#include "platform/credentials/keyring/SecretServiceDeadline.h"

#include <memory>
#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// A context of its own for the signals of one prompt, so that nothing else runs meanwhile.
class PromptContext {
public:
    PromptContext() { g_main_context_push_thread_default(context_); }
    ~PromptContext()
    {
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }
    PromptContext(const PromptContext&) = delete;
    PromptContext& operator=(const PromptContext&) = delete;

    void wait() { g_main_context_iteration(context_, TRUE); }
    GMainContext* get() const { return context_; }

private:
    GMainContext* context_ = g_main_context_new();
};

/// Calls a function every two seconds, in a context.
class PeriodicTimer {
public:
    PeriodicTimer(GMainContext* context, GSourceFunc function, gpointer data)
    {
        g_source_set_callback(source_, function, data, nullptr);
        g_source_attach(source_, context);
    }
    ~PeriodicTimer()
    {
        g_source_destroy(source_);
        g_source_unref(source_);
    }
    PeriodicTimer(const PeriodicTimer&) = delete;
    PeriodicTimer& operator=(const PeriodicTimer&) = delete;

private:
    GSource* source_ = g_timeout_source_new_seconds(2);
};

/// What has become of the prompt; listens as long as it lives.
class PromptAnswer {
public:
    PromptAnswer(GDBusConnection* bus, const char* owner, const char* path)
        : bus_(bus),
          owner_(owner),
          signal_(g_dbus_connection_signal_subscribe(bus_, owner_, "org.freedesktop.Secret.Prompt",
                                                     "Completed", path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                     completed, this, nullptr)),
          watch_(g_bus_watch_name_on_connection(bus_, owner_, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
                                                vanished, this, nullptr))
    {
    }
    ~PromptAnswer()
    {
        g_bus_unwatch_name(watch_);
        g_dbus_connection_signal_unsubscribe(bus_, signal_);
        g_clear_pointer(&result_, g_variant_unref);
    }
    PromptAnswer(const PromptAnswer&) = delete;
    PromptAnswer& operator=(const PromptAnswer&) = delete;

    /// Asks whether the service is still there: one that was stopped leaves its prompt unanswered for ever.
    static gboolean pingService(gpointer object)
    {
        constexpr int timeout = 4000; // milliseconds
        auto& answer = *static_cast<PromptAnswer*>(object);
        GError* error = nullptr;
        auto* reply = g_dbus_connection_call_sync(answer.bus_, answer.owner_, "/",
                                                  "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr,
                                                  G_DBUS_CALL_FLAGS_NO_AUTO_START, timeout, nullptr, &error);
        answer.isServiceGone_ |= g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE;
        g_clear_pointer(&reply, g_variant_unref);
        g_clear_error(&error);
        return G_SOURCE_CONTINUE;
    }

    bool hasCome() const { return result_ != nullptr || isDismissed_ || isServiceGone_; }

    GVariant* take(const GVariantType* expected, GError** error)
    {
        if (isDismissed_) {
            g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_CANCELLED, "The prompt was dismissed.");
        } else if (result_ == nullptr) {
            g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY, "The service ended.");
        } else if (expected != nullptr && g_variant_is_of_type(result_, expected) == FALSE) {
            g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_PROTOCOL,
                                "The prompt has no proper result.");
        } else {
            return std::exchange(result_, nullptr);
        }
        return nullptr;
    }

private:
    static void completed(GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* parameters, gpointer object)
    {
        auto& answer = *static_cast<PromptAnswer*>(object);
        if (!answer.hasCome() && g_variant_is_of_type(parameters, G_VARIANT_TYPE("(bv)")) != FALSE) {
            gboolean dismissed = FALSE;
            g_variant_get(parameters, "(bv)", &dismissed, &answer.result_);
            answer.isDismissed_ = dismissed != FALSE;
        }
    }

    static void vanished(GDBusConnection*, const char*, gpointer object)
    {
        static_cast<PromptAnswer*>(object)->isServiceGone_ = true;
    }

    GVariant* result_ = nullptr;
    bool isDismissed_ = false;
    bool isServiceGone_ = false;
    GDBusConnection* bus_;
    const char* owner_;
    guint signal_;
    guint watch_;
};

} // namespace

GVariant* resultOfPrompt(SecretService& service, SecretPrompt& prompt, const GVariantType* expected,
                         GCancellable* cancellable, GError** error)
{
    auto* proxy = G_DBUS_PROXY(&prompt);
    const std::unique_ptr<char, decltype(&g_free)> owner(g_dbus_proxy_get_name_owner(G_DBUS_PROXY(&service)),
                                                         &g_free);
    if (!owner) {
        g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER, "The service ended.");
        return nullptr;
    }
    PromptContext context;
    PromptAnswer answer(g_dbus_proxy_get_connection(proxy), owner.get(), g_dbus_proxy_get_object_path(proxy));
    auto* reply = g_dbus_proxy_call_sync(proxy, "Prompt", g_variant_new("(s)", ""), G_DBUS_CALL_FLAGS_NONE,
                                         G_MAXINT, cancellable, error);
    if (reply == nullptr) {
        return nullptr;
    }
    g_variant_unref(reply);
    const SecretServiceDeadline::Pause pause; // the user may take as long as it takes
    const PeriodicTimer check(context.get(), PromptAnswer::pingService, &answer);
    while (!answer.hasCome()) {
        context.wait();
    }
    return answer.take(expected, error);
}

} // namespace MirrowvaleAuthenticator
