#include "platform/credentials/keyring/SecretServiceConnection.h"

#include "platform/credentials/keyring/SecretServicePrompt.h"
#include "platform/credentials/keyring/SecretServiceStatus.h"

namespace MirrowvaleAuthenticator {

namespace {

GVariant* runPrompt(SecretService* service, SecretPrompt* prompt, GCancellable* cancellable,
                    const GVariantType* type, GError** error)
{
    return resultOfPrompt(*service, *prompt, type, cancellable, error);
}

void startPrompt(SecretService* service, SecretPrompt* prompt, const GVariantType* type,
                 GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)
{
    GError* error = nullptr;
    const Owned<GTask> task(g_task_new(service, cancellable, callback, data));
    if (auto* result = resultOfPrompt(*service, *prompt, type, cancellable, &error); result != nullptr) {
        g_task_return_pointer(task.get(), result, reinterpret_cast<GDestroyNotify>(g_variant_unref));
    } else {
        g_task_return_error(task.get(), error);
    }
}

GVariant* finishPrompt(SecretService*, GAsyncResult* result, GError** error)
{
    return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

void initializeClass(gpointer object, gpointer)
{
    auto* service = static_cast<SecretServiceClass*>(object);
    service->prompt_sync = runPrompt;
    service->prompt_async = startPrompt;
    service->prompt_finish = finishPrompt;
}

/// The library's own service, but for the way in which it prompts.
GType serviceType()
{
    static const auto type = g_type_register_static_simple(SECRET_TYPE_SERVICE, "MirrowvaleSecretService",
                                                           sizeof(SecretServiceClass), initializeClass,
                                                           sizeof(SecretService), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

} // namespace

bool ErrorReport::saysLocked() const
{
    return g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) != FALSE;
}

bool ErrorReport::saysMissing() const
{
    return g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT) != FALSE
        || g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) != FALSE
        || g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT) != FALSE;
}

void ErrorReport::require() const
{
    if (error_ != nullptr) {
        throw StatusError{statusForError(error_->domain, error_->code)};
    }
}

Owned<SecretService> connectToSecretService(GCancellable* cancellable)
{
    ErrorReport busReport;
    const Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, busReport));
    if (!bus) {
        throw StatusError{errSecNotAvailable}; // whatever the reason, there is no bus to ask
    }
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    ErrorReport report;
    Owned<SecretService> service(
        secret_service_open_sync(serviceType(), nullptr, SECRET_SERVICE_OPEN_SESSION, cancellable, report));
    report.require();
    return service;
}

} // namespace MirrowvaleAuthenticator
