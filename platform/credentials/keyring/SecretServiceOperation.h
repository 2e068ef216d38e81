#pragma once

#include "platform/credentials/Status.h"
#include "platform/system/SessionBus.h"

#define SECRET_API_SUBJECT_TO_CHANGE // for the only call that makes an item and replaces none
#define SECRET_WITH_UNSTABLE
#include <libsecret/secret.h>
#include <memory>

namespace MirrowvaleAuthenticator {

/// Gives an object of the Secret Service's library back.
struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(gchar* text) const { g_free(text); }
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Release>;

/// A timer in a main context, which ends with its owner.
class TimerSource {
public:
    TimerSource(GMainContext* context, guint milliseconds, GSourceFunc function, gpointer data);
    ~TimerSource();
    TimerSource(const TimerSource&) = delete;
    TimerSource& operator=(const TimerSource&) = delete;

    void pause() { g_source_set_ready_time(source_, -1); }
    void restart()
    {
        g_source_set_ready_time(source_, g_get_monotonic_time() + gint64(1000) * milliseconds_);
    }

private:
    guint milliseconds_;
    GSource* source_;
};

/// One operation on the Secret Service of the user's session: its calls, one after another, each waited for.
///
/// They are cancelled once they have taken 4 seconds, or 4 since the last prompt was answered: the service
/// may be stopped, or never answer, and its library would wait for 25 seconds at each call.
class SecretServiceOperation {
public:
    /// Runs an operation that takes a `SecretServiceOperation&` and returns a status.
    /// @returns its status; `errSecNotAvailable` where the bus or the service cannot be reached in time
    template <typename Action>
    static OSStatus run(Action action)
    {
        return statusOf([&] {
            SecretServiceOperation operation;
            const auto status = statusOf([&] {
                operation.connect();
                return action(operation);
            });
            return status != errSecSuccess && operation.isCancelled() ? errSecNotAvailable : status;
        });
    }

    ~SecretServiceOperation();
    SecretServiceOperation(const SecretServiceOperation&) = delete;
    SecretServiceOperation& operator=(const SecretServiceOperation&) = delete;

    SecretService* service() const { return service_.get(); }

    /// Waits for the answer to an asynchronous call of the library.
    /// @param start  makes the call with the arguments that end each of them: cancellable, callback and data
    template <typename Start>
    Owned<GAsyncResult> wait(const Start& start)
    {
        Owned<GAsyncResult> answer;
        start(cancellable_.get(), takeAnswer, &answer);
        while (!answer) {
            g_main_context_iteration(context_.get(), TRUE);
        }
        return answer;
    }

    /// For a call that has failed: an item that goes away with its service is not found either.
    /// @throws StatusError  `errSecNotAvailable` where the service does not run any more
    void requireService();

private:
    friend class SecretServicePrompt; // during which the time does not count

    SecretServiceOperation();
    void connect();
    bool isCancelled() const { return g_cancellable_is_cancelled(cancellable_.get()) != FALSE; }
    static void takeAnswer(GObject*, GAsyncResult* result, gpointer answer);
    static gboolean cancel(gpointer cancellable);

    static inline SecretServiceOperation* current = nullptr; ///< all run on one thread, one at a time
    Owned<GMainContext> context_{g_main_context_new()}; ///< its own: nothing else runs meanwhile
    Owned<GCancellable> cancellable_{g_cancellable_new()};
    TimerSource timeout_;
    BusConnection bus_;
    Owned<SecretService> service_;
};

} // namespace MirrowvaleAuthenticator
