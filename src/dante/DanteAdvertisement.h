#pragma once

// What a Dante device's announcement (its TXT record) says about it, read by the keys Dante
// firmware uses, each detail from the first of its keys that holds text.
#include <array>
#include <map>
#include <optional>

#include <QString>

namespace ostrel {

struct DanteDetails {
    std::optional<QString> model;
    std::optional<QString> manufacturer;
    std::optional<QString> firmware;

    bool operator==(const DanteDetails&) const = default;
};

namespace DanteAdvertisement {

using Txt = std::map<QString, QString>;

inline constexpr std::array<const char*, 2> modelKeys {"model", "model_id"};
inline constexpr std::array<const char*, 2> manufacturerKeys {"mf", "manufacturer"};
inline constexpr std::array<const char*, 3> firmwareKeys {
    "router_vers", "server_vers", "arcp_vers"};

// Values are trimmed; one that is empty after trimming counts as absent.
DanteDetails details(const Txt& txt);

} // namespace DanteAdvertisement
} // namespace ostrel
