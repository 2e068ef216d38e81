#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

/// An object that announces each change of its published properties just before it happens.
class ObservableObject {
public:
    using Observer = std::function<void()>;

    /// Keeps an observer in place for as long as it lives.
    class Subscription {
    public:
        Subscription() = default;

    private:
        friend class ObservableObject;
        explicit Subscription(std::shared_ptr<Observer> observer) : observer_(std::move(observer)) { }
        std::shared_ptr<Observer> observer_;
    };

    ObservableObject() = default;
    ObservableObject(const ObservableObject&) = delete;
    ObservableObject& operator=(const ObservableObject&) = delete;

    /// Calls `observer` before every later change, in the order of subscription.
    [[nodiscard]] Subscription objectWillChange(Observer observer)
    {
        auto shared = std::make_shared<Observer>(std::move(observer));
        observers_.push_back(shared);
        return Subscription(std::move(shared));
    }

protected:
    ~ObservableObject() = default;

private:
    template <typename T>
    friend class Published;

    void announceChange()
    {
        std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
        // A copy: an observer may subscribe or leave while it is being told.
        const auto current = observers_;
        for (const auto& weak : current) {
            if (const auto observer = weak.lock()) {
                (*observer)();
            }
        }
    }

    std::vector<std::weak_ptr<Observer>> observers_;
};

/// A property whose owner announces each assignment before it happens, whether or not the value differs.
template <typename T>
class Published {
public:
    explicit Published(ObservableObject& owner, T value = T()) : owner_(owner), value_(std::move(value)) { }
    Published(const Published&) = delete;

    Published& operator=(T newValue)
    {
        owner_.announceChange();
        value_ = std::move(newValue);
        return *this;
    }
    Published& operator=(const Published&) = delete;

    /// Changes the value in place: one announcement, then `change` runs on the value.
    template <typename Change>
    void modify(Change&& change)
    {
        owner_.announceChange();
        std::forward<Change>(change)(value_);
    }

    const T& operator*() const { return value_; }
    const T* operator->() const { return &value_; }

private:
    ObservableObject& owner_;
    T value_;
};

} // namespace MirrowvaleAuthenticator
