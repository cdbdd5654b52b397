#pragma once

// Exposure against a venue's limit, interval by interval: an exact rolling LAeq from a ring of
// per-interval energies with running sums (re-summed now and then so that rounding can't build
// up), the C-weighted peak per window and per show, the show's LAeq and staff dose, and the room
// left for the next minutes. The ring holds the longest window of any profile, so a change of
// profile mid-show recomputes rather than resets. Nothing is allocated after construction.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "exposure/ExposureProfile.h"
#include "exposure/ExposureReading.h"
#include "exposure/ExposureSample.h"

namespace ostrel {

class ExposureMeter {
public:
    // An hour of tenth-second intervals, and a little over for shorter ones.
    static constexpr std::size_t defaultCapacity = 40'000;
    // Running sums are re-added from the ring after this many intervals.
    static constexpr std::int64_t resumPeriod = 4096;
    // The room is for the next five minutes, or the whole window if it is shorter.
    static constexpr double roomHorizonSeconds = 300.0;

    explicit ExposureMeter(
        ExposureProfile profile = ExposureProfile::builtIn(ExposureProfileKind::who),
        std::size_t capacity = defaultCapacity);

    // A sample with a non-finite value or no duration is dropped.
    const ExposureReading& ingest(const ExposureSample& sample);
    void setProfile(const ExposureProfile& profile);
    const ExposureProfile& profile() const { return profile_; }
    // The start of a show: the window, the peaks and the summary begin again.
    void reset();

    const ExposureReading& reading() const { return reading_; }

    // The show so far, for its summary and report.
    std::optional<double> laeqWindowMax() const { return laeqWindowMax_; }
    double laeqWindowMaxAt() const { return laeqWindowMaxAt_; } // show seconds at its end
    double secondsOverLimit() const { return secondsOver_; }

private:
    struct Entry {
        double start = 0.0;
        double duration = 0.0;
        double energyTime = 0.0;
        double cPeakPower = 0.0;
    };

    const Entry& at(std::int64_t sequence) const;
    std::int64_t oldest() const;
    void advance(std::int64_t& first, double& sum, double span);
    void resum();
    void rebuildPeaks();
    void pushPeak(std::int64_t sequence);
    void read(std::optional<double> lcpeak);

    ExposureProfile profile_;
    std::vector<Entry> ring_;
    // Indices into the ring of a monotonic queue: the window's highest peak is at its front.
    std::vector<std::int64_t> peakQueue_;
    std::size_t peakFront_ = 0;
    std::size_t peakCount_ = 0;

    std::int64_t count_ = 0; // intervals ever ingested since the reset
    double showSeconds_ = 0.0;
    double showEnergy_ = 0.0;
    double showEnergyCompensation_ = 0.0;
    double lcpeakShowPower_ = 0.0;
    bool hasPeak_ = false;

    std::int64_t windowFirst_ = 0;
    double windowSum_ = 0.0;
    double windowSeconds_ = 0.0;
    std::int64_t roomFirst_ = 0;
    double roomSum_ = 0.0;

    ExposureReading reading_;
    std::optional<double> laeqWindowMax_;
    double laeqWindowMaxAt_ = 0.0;
    double secondsOver_ = 0.0;
};

} // namespace ostrel
