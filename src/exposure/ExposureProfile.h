#pragma once

// What a venue or a crew is held to: the length of the averaging window, the limit of the
// A-weighted level over it, how far below the limit the warning begins, and the limit of the
// C-weighted peak. The UK's crew rule is a daily exposure instead of a rolling window.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

enum class ExposureProfileKind { who, swiss, din, uk, custom };

struct ExposureProfile {
    ExposureProfileKind kind = ExposureProfileKind::who;
    // The rolling window; for a daily exposure the reference day of 8 hours.
    double windowSeconds = 900.0;
    double limit = 100.0; // dB(A)
    double margin = 3.0; // dB below the limit at which the warning begins
    std::optional<double> peakLimit; // dB(C)
    // Levels at which a rule changes what the venue must do, below the limit.
    std::vector<double> bands;
    // The window's level is the exposure the show so far amounts to over the reference day.
    bool isDailyExposure = false;

    static constexpr double longestWindowSeconds = 3600.0;
    static constexpr double dailyReferenceSeconds = 8.0 * 3600.0;

    static ExposureProfile builtIn(ExposureProfileKind kind);
    // Window of 1 to 60 minutes, clamped.
    static ExposureProfile custom(double minutes, double limit, double margin = 3.0,
        std::optional<double> peakLimit = std::nullopt);
    // "who", "swiss", "din", "uk", or "custom:MINUTES:LIMIT" with minutes from 1 to 60.
    static std::optional<ExposureProfile> parse(std::string_view text);

    bool operator==(const ExposureProfile&) const = default;
};

namespace ExposureProfileKinds {

inline constexpr std::array<ExposureProfileKind, 5> all {ExposureProfileKind::who,
    ExposureProfileKind::swiss, ExposureProfileKind::din, ExposureProfileKind::uk,
    ExposureProfileKind::custom};

std::string_view rawValue(ExposureProfileKind kind) noexcept;
std::optional<ExposureProfileKind> fromRawValue(std::string_view raw) noexcept;

} // namespace ExposureProfileKinds
} // namespace ostrel
