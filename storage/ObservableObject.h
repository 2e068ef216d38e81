#pragma once

#include <functional>
#include <utility>

namespace MirrowvaleAuthenticator {

/// An object that announces each change of its published properties just before it happens.
class ObservableObject {
public:
    ObservableObject() = default;
    ObservableObject(const ObservableObject&) = delete;
    ObservableObject& operator=(const ObservableObject&) = delete;

    /// Called before each change, for the one observer.
    std::function<void()> objectWillChange = [] {};

protected:
    ~ObservableObject() = default;
};

/// A property whose owner announces each assignment before it happens, whether or not the value differs.
template <typename T>
class Published {
public:
    explicit Published(ObservableObject& owner) : owner_(owner) { }
    Published(const Published&) = delete;

    Published& operator=(T newValue)
    {
        owner_.objectWillChange();
        value_ = std::move(newValue);
        return *this;
    }
    Published& operator=(const Published&) = delete;

    /// Changes the value in place: one announcement, then `change` runs on the value.
    template <typename Change>
    void modify(Change&& change)
    {
        owner_.objectWillChange();
        std::forward<Change>(change)(value_);
    }

    const T& operator*() const { return value_; }
    const T* operator->() const { return &value_; }

private:
    ObservableObject& owner_;
    T value_{};
};

} // namespace MirrowvaleAuthenticator
