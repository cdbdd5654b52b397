#pragma once

// One argument of an OSC message to or from QLab: the six kinds the link writes, which are also
// what every kind it reads is turned into.
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ostrel {

class OSCArgument {
public:
    using Blob = std::vector<std::uint8_t>;
    struct Null {
        bool operator==(const Null&) const = default;
    };
    // In the order of the cases: int, float, string, blob, bool, null.
    using Value = std::variant<std::int32_t, float, std::string, Blob, bool, Null>;
    enum class Kind { int32, float32, string, blob, boolean, null };

    // Named makers rather than converting constructors, so that a bool never turns into an int.
    static OSCArgument int32(std::int32_t value)
    {
        return OSCArgument(std::in_place_type<std::int32_t>, value);
    }
    static OSCArgument float32(float value)
    {
        return OSCArgument(std::in_place_type<float>, value);
    }
    static OSCArgument string(std::string value)
    {
        return OSCArgument(std::in_place_type<std::string>, std::move(value));
    }
    static OSCArgument blob(Blob value)
    {
        return OSCArgument(std::in_place_type<Blob>, std::move(value));
    }
    static OSCArgument boolean(bool value) { return OSCArgument(std::in_place_type<bool>, value); }
    static OSCArgument null() { return OSCArgument(std::in_place_type<Null>); }

    Kind kind() const noexcept { return static_cast<Kind>(value_.index()); }
    const Value& value() const noexcept { return value_; }

    // The type tag this argument writes: "i", "f", "s", "b", "T", "F" or "N".
    char typeTag() const noexcept;
    // Decimal text of an int, shortest round-trip text of a float, a string as it stands;
    // nothing for a blob, a bool or null.
    std::optional<std::string> stringValue() const;

    // Floats compare by value, so a NaN equals nothing, as an OSC float in the show would.
    bool operator==(const OSCArgument&) const = default;

private:
    // Built in place: moving a whole variant in trips a false uninitialised-use warning of GCC 12.
    template <typename T, typename... Arguments>
    explicit OSCArgument(std::in_place_type_t<T> type, Arguments&&... arguments)
        : value_(type, std::forward<Arguments>(arguments)...)
    {
    }

    Value value_;
};

} // namespace ostrel
