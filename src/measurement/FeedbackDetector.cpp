#include "measurement/FeedbackDetector.h"

#include <cmath>

namespace ostrel {

std::optional<FeedbackWarning> FeedbackDetector::update(std::optional<SpectralPeak> peak, Date now)
{
    // A spectrum without a qualifying peak still counts towards the release.
    if (peak && qualifies(*peak))
        track(*peak, now);
    else
        m_candidate.reset();
    release(now);
    return m_warning;
}

void FeedbackDetector::clear() noexcept
{
    m_candidate.reset();
    m_warning.reset();
    m_lastConfirmed.reset();
}

bool FeedbackDetector::qualifies(const SpectralPeak& peak) const noexcept
{
    return peak.prominence >= minimumProminence && peak.level >= minimumLevel
        && peak.harmonicLevel <= maximumHarmonicLevel;
}

void FeedbackDetector::track(const SpectralPeak& peak, Date now)
{
    if (!m_candidate
        || std::abs(peak.frequency - m_candidate->frequency)
            > m_candidate->frequency * frequencyTolerance) {
        m_candidate = Candidate {peak.frequency, now, peak.level};
        return;
    }
    // Averaging lets a tone that drifts slowly stay one candidate.
    m_candidate->frequency = (peak.frequency + m_candidate->frequency) / 2.0;

    if (secondsBetween(m_candidate->since, now) < sustainDuration) return;
    // A steady loud tone is usually an instrument; feedback grows or towers over the rest.
    const bool grew = peak.level - m_candidate->startLevel >= minimumRise;
    if (grew || peak.prominence >= strongProminence) confirm(m_candidate->frequency, now);
}

void FeedbackDetector::confirm(double frequency, Date now)
{
    // A warning at the same pitch keeps its start, so the operator sees how long it has rung.
    if (!m_warning || std::abs(m_warning->frequency - frequency) > frequency * frequencyTolerance)
        m_warning = FeedbackWarning {frequency, m_candidate->since};
    m_lastConfirmed = now;
}

void FeedbackDetector::release(Date now) noexcept
{
    if (m_warning && m_lastConfirmed && secondsBetween(*m_lastConfirmed, now) > releaseTime)
        m_warning.reset();
}

} // namespace ostrel
