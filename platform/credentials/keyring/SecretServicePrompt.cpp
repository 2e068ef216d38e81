#include "platform/credentials/keyring/SecretServicePrompt.h"

#include "platform/credentials/keyring/SecretServiceOperation.h"

#include <optional>
#include <utility>

namespace MirrowvaleAuthenticator {

/// One prompt, from the call that shows it to its answer. It is the data of the task that the answer ends;
/// whoever may still call it holds the task.
class SecretServicePrompt {
public:
    static void start(SecretService* service, SecretPrompt* prompt, const GVariantType* expected,
                      GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)
    {
        auto* task = g_task_new(service, cancellable, callback, data);
        const Owned<gchar> owner(g_dbus_proxy_get_name_owner(G_DBUS_PROXY(service)));
        if (!owner) {
            g_task_return_new_error(task, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER, "The service ended.");
        } else {
            auto* made = new SecretServicePrompt(task, G_DBUS_PROXY(prompt), owner.get(), expected);
            g_task_set_task_data(task, made, [](gpointer object) { delete of(object); });
            g_dbus_proxy_call(G_DBUS_PROXY(prompt), "Prompt", g_variant_new("(s)", ""),
                              G_DBUS_CALL_FLAGS_NONE, G_MAXINT, cancellable, shown, g_object_ref(task));
        }
        g_object_unref(task);
    }

private:
    SecretServicePrompt(GTask* task, GDBusProxy* prompt, const char* owner, const GVariantType* expected)
        : task_(task),
          bus_(g_dbus_proxy_get_connection(prompt)),
          owner_(g_strdup(owner)),
          expected_(expected),
          signal_(g_dbus_connection_signal_subscribe(
              bus_, owner, "org.freedesktop.Secret.Prompt", "Completed", g_dbus_proxy_get_object_path(prompt),
              nullptr, G_DBUS_SIGNAL_FLAGS_NONE, completed, g_object_ref(task), g_object_unref)),
          watch_(g_bus_watch_name_on_connection(bus_, owner, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, vanished,
                                                g_object_ref(task), g_object_unref))
    {
    }

    static SecretServicePrompt* of(gpointer object) { return static_cast<SecretServicePrompt*>(object); }
    static SecretServicePrompt& in(gpointer task)
    {
        return *of(g_task_get_task_data(static_cast<GTask*>(task)));
    }

    /// The service has answered the call that shows the prompt: the user may take as long as it takes.
    static void shown(GObject* proxy, GAsyncResult* result, gpointer task)
    {
        const Owned<GTask> held(static_cast<GTask*>(task));
        auto& prompt = in(task);
        GError* error = nullptr;
        const Owned<GVariant> reply(g_dbus_proxy_call_finish(G_DBUS_PROXY(proxy), result, &error));
        if (!reply) {
            prompt.finish(nullptr, error);
        } else if (!prompt.isFinished_) {
            SecretServiceOperation::current->timeout_.pause();
            constexpr guint interval = 2000; // milliseconds
            prompt.check_.emplace(g_main_context_get_thread_default(), interval, ping, task);
        }
    }

    /// Asks whether the service is still there: one that was stopped leaves its prompt unanswered for ever.
    static gboolean ping(gpointer task)
    {
        constexpr int timeout = 4000; // milliseconds
        auto& prompt = in(task);
        g_dbus_connection_call(prompt.bus_, prompt.owner_.get(), "/", "org.freedesktop.DBus.Peer", "Ping",
                               nullptr, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, timeout, nullptr, pinged,
                               g_object_ref(task));
        return G_SOURCE_CONTINUE;
    }

    static void pinged(GObject* bus, GAsyncResult* result, gpointer task)
    {
        const Owned<GTask> held(static_cast<GTask*>(task));
        GError* error = nullptr;
        const Owned<GVariant> reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error));
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE) {
            in(task).finish(nullptr, error);
        } else {
            g_clear_error(&error); // it has answered, if only that it knows no such method
        }
    }

    static void completed(GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* parameters, gpointer task)
    {
        if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(bv)")) == FALSE) {
            return;
        }
        gboolean dismissed = FALSE;
        GVariant* value = nullptr;
        g_variant_get(parameters, "(bv)", &dismissed, &value);
        Owned<GVariant> result(value);
        auto& prompt = in(task);
        if (dismissed != FALSE) {
            prompt.finish(nullptr,
                          g_error_new_literal(G_IO_ERROR, G_IO_ERROR_CANCELLED, "It was dismissed."));
        } else if (prompt.expected_ != nullptr && g_variant_is_of_type(value, prompt.expected_) == FALSE) {
            prompt.finish(nullptr,
                          g_error_new_literal(SECRET_ERROR, SECRET_ERROR_PROTOCOL, "No proper result."));
        } else {
            prompt.finish(std::move(result), nullptr);
        }
    }

    static void vanished(GDBusConnection*, const char*, gpointer task)
    {
        in(task).finish(nullptr,
                        g_error_new_literal(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY, "The service ended."));
    }

    /// Ends the task with a result or an error, of which it becomes the owner; what comes later is dropped.
    void finish(Owned<GVariant> result, GError* error)
    {
        if (std::exchange(isFinished_, true)) {
            g_clear_error(&error);
            return;
        }
        check_.reset();
        g_dbus_connection_signal_unsubscribe(bus_, signal_);
        g_bus_unwatch_name(watch_);
        SecretServiceOperation::current->timeout_.restart();
        if (error != nullptr) {
            g_task_return_error(task_, error);
        } else {
            g_task_return_pointer(task_, result.release(), reinterpret_cast<GDestroyNotify>(g_variant_unref));
        }
    }

    GTask* task_;
    GDBusConnection* bus_;
    Owned<gchar> owner_;
    const GVariantType* expected_;
    guint signal_;
    guint watch_;
    std::optional<TimerSource> check_;
    bool isFinished_ = false;
};

GType promptingServiceType()
{
    static const auto initializeClass = [](gpointer object, gpointer) {
        auto* service = static_cast<SecretServiceClass*>(object);
        service->prompt_async = SecretServicePrompt::start;
        service->prompt_finish = [](SecretService*, GAsyncResult* result, GError** error) {
            return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
        };
    };
    static const auto type = g_type_register_static_simple(SECRET_TYPE_SERVICE, "MirrowvaleSecretService",
                                                           sizeof(SecretServiceClass), initializeClass,
                                                           sizeof(SecretService), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

} // namespace MirrowvaleAuthenticator
