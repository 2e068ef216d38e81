#pragma once

#include <chrono>

namespace MirrowvaleAuthenticator {

/// A point in time, held as double-precision seconds since 2001-01-01T00:00:00Z: the form in which
/// tokens are stored, so that a stored instant comes back bit for bit.
class Date {
public:
    /// The epoch that seconds are counted from in the stored form, in seconds since 1970-01-01T00:00:00Z.
    static constexpr double referenceDateSince1970 = 978307200.0;

    constexpr Date() = default;

    /// The instant shown by the system's clock.
    static Date now()
    {
        const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
        return fromSecondsSince1970(std::chrono::duration<double>(since1970).count());
    }

    static constexpr Date fromSecondsSince1970(double seconds)
    {
        return Date(seconds - referenceDateSince1970);
    }
    static constexpr Date fromSecondsSinceReferenceDate(double seconds) { return Date(seconds); }

    constexpr double secondsSince1970() const { return seconds_ + referenceDateSince1970; }
    constexpr double secondsSinceReferenceDate() const { return seconds_; }

    friend constexpr bool operator==(Date, Date) = default;

private:
    explicit constexpr Date(double secondsSinceReferenceDate) : seconds_(secondsSinceReferenceDate) { }

    double seconds_ = 0;
};

} // namespace MirrowvaleAuthenticator
