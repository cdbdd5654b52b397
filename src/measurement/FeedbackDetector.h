#pragma once

// Tells the operator when a single tone starts ringing through the system, so a channel can be
// pulled before the feedback takes the room. Fed the strongest peak of every spectrum.
#include <optional>

#include "common/Date.h"
#include "measurement/Spectrum.h"

namespace ostrel {

struct FeedbackWarning {
    double frequency = 0.0; // Hz
    Date since; // when the tone was first heard, not when it was confirmed
    bool operator==(const FeedbackWarning&) const = default;
};

class FeedbackDetector {
public:
    // A tone that qualifies but has not yet held long enough to be called feedback.
    struct Candidate {
        double frequency = 0.0;
        Date since;
        double startLevel = 0.0;
        bool operator==(const Candidate&) const = default;
    };

    double minimumProminence = 20.0; // dB above the surrounding bins
    double strongProminence = 30.0; // this much stands out enough without growing
    double minimumLevel = 55.0; // calibrated dB
    double maximumHarmonicLevel = -25.0; // dB relative to the peak; music carries harmonics
    double frequencyTolerance = 0.01; // fraction of the frequency still counted as one tone
    double sustainDuration = 1.0; // seconds
    double minimumRise = 3.0; // dB over the sustain
    double releaseTime = 3.0; // seconds without confirmation before the warning drops

    // The warning standing after this spectrum, if any.
    std::optional<FeedbackWarning> update(std::optional<SpectralPeak> peak, Date now);
    void clear() noexcept;

    const std::optional<Candidate>& candidate() const noexcept { return m_candidate; }
    const std::optional<FeedbackWarning>& warning() const noexcept { return m_warning; }
    std::optional<Date> lastConfirmed() const noexcept { return m_lastConfirmed; }

private:
    bool qualifies(const SpectralPeak& peak) const noexcept;
    void track(const SpectralPeak& peak, Date now);
    void confirm(double frequency, Date now);
    void release(Date now) noexcept;

    std::optional<Candidate> m_candidate;
    std::optional<FeedbackWarning> m_warning;
    std::optional<Date> m_lastConfirmed;
};

} // namespace ostrel
