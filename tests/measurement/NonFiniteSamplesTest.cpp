// A broken driver or a damaged file: NaN and infinity cost at most the interval they touch.
#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <cmath>
#include <limits>
#include <vector>

#include "measurement/MeasurementPipeline.h"
#include "measurement/SPLProcessor.h"
#include "measurement/SpectrumAnalyzer.h"
#include "support/AllocationCounter.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

constexpr double rate = 48000.0;
constexpr std::size_t intervalLength = 4800;

// One interval of a 1 kHz sine at -20 dBFS with 100 NaN samples and one infinity inside.
std::vector<float> burstInterval()
{
    auto samples = testsignals::sine(1000.0, 0.1, rate, intervalLength);
    for (std::size_t i = 1000; i < 1100; ++i)
        samples[i] = std::numeric_limits<float>::quiet_NaN();
    samples[2000] = std::numeric_limits<float>::infinity();
    samples[2001] = -std::numeric_limits<float>::infinity();
    return samples;
}

std::vector<float> cleanInterval()
{
    return testsignals::sine(1000.0, 0.1, rate, intervalLength);
}

QStringList capturedWarnings;

void captureWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtWarningMsg) capturedWarnings.append(message);
}

} // namespace

TEST(NonFiniteSamples, TheLevelIsBackOneIntervalAfterNaNAndInfinityForEveryWeighting)
{
    for (const auto weighting :
        {FrequencyWeighting::a, FrequencyWeighting::c, FrequencyWeighting::z}) {
        SPLProcessor spl(rate, weighting, TimeWeighting::fast, 0.0);
        SPLProcessor reference(rate, weighting, TimeWeighting::fast, 0.0);
        for (int i = 0; i < 10; ++i) {
            spl.process(cleanInterval());
            reference.process(cleanInterval());
            spl.takeInterval();
            reference.takeInterval();
        }
        spl.process(burstInterval());
        const auto touched = spl.takeInterval();
        EXPECT_TRUE(std::isfinite(touched.level));
        EXPECT_TRUE(std::isfinite(touched.energy));
        EXPECT_TRUE(std::isfinite(touched.rawEnergy));
        EXPECT_FALSE(touched.clipped);

        spl.process(cleanInterval());
        reference.process(cleanInterval());
        reference.takeInterval();
        spl.process(cleanInterval());
        reference.process(cleanInterval());
        const auto after = spl.takeInterval();
        const auto expected = reference.takeInterval();
        EXPECT_NEAR(after.level, expected.level, 0.05);
        EXPECT_NEAR(after.leq(), expected.leq(), 0.05);
        EXPECT_NEAR(after.maxLevel, expected.maxLevel, 0.05);
    }
}

TEST(NonFiniteSamples, TheCorrectionFilterRecoversAfterNaN)
{
    const MicrophoneCorrection correction("tilt", {{20.0, 0.0}, {1000.0, 0.0}, {20000.0, -6.0}});
    SPLProcessor spl(rate, FrequencyWeighting::a, TimeWeighting::fast, 0.0, correction);
    SPLProcessor reference(rate, FrequencyWeighting::a, TimeWeighting::fast, 0.0, correction);
    for (int i = 0; i < 5; ++i) {
        spl.process(cleanInterval());
        reference.process(cleanInterval());
    }
    spl.process(burstInterval());
    reference.process(cleanInterval());
    spl.takeInterval();
    reference.takeInterval();
    for (int i = 0; i < 2; ++i) {
        spl.process(cleanInterval());
        reference.process(cleanInterval());
    }
    const auto after = spl.takeInterval();
    const auto expected = reference.takeInterval();
    EXPECT_NEAR(after.level, expected.level, 0.05);
    EXPECT_NEAR(after.leq(), expected.leq(), 0.05);
}

TEST(NonFiniteSamples, AreCountedPerIntervalAndDoNotClip)
{
    SPLProcessor spl(rate, FrequencyWeighting::a, TimeWeighting::fast, 0.0);
    spl.process(burstInterval());
    EXPECT_EQ(spl.pendingNonFiniteCount(), 102);
    EXPECT_FALSE(spl.takeInterval().clipped);
    EXPECT_EQ(spl.pendingNonFiniteCount(), 0);
}

TEST(NonFiniteSamples, TheSpectrumIsFiniteAndRightOneIntervalAfterABurst)
{
    SpectrumAnalyzer analyzer(rate);
    SpectrumAnalyzer reference(rate);
    for (int i = 0; i < 20; ++i) {
        analyzer.append(cleanInterval());
        reference.append(cleanInterval());
    }
    analyzer.append(burstInterval());
    analyzer.append(cleanInterval());
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum.has_value());
    const auto expected = reference.analyze(0.0);
    for (const double level : spectrum->bandLevels)
        EXPECT_TRUE(std::isfinite(level));
    for (const double level : spectrum->fineBandLevels)
        EXPECT_TRUE(std::isfinite(level));
    // The 1 kHz third-octave band.
    EXPECT_NEAR(spectrum->bandLevels[17], expected->bandLevels[17], 1.0);
}

TEST(NonFiniteSamples, ThePipelineLogsTheCountOncePerIntervalThatHeldAny)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(rate);
    capturedWarnings.clear();
    const auto previous = qInstallMessageHandler(captureWarnings);
    const auto burst = burstInterval();
    // Two blocks with bad samples make one interval, then a clean one.
    pipeline.process(std::span(burst).first(2400));
    const auto touched = pipeline.process(std::span(burst).subspan(2400));
    const auto clean = pipeline.process(cleanInterval());
    qInstallMessageHandler(previous);
    ASSERT_TRUE(touched.has_value());
    ASSERT_TRUE(clean.has_value());
    ASSERT_EQ(capturedWarnings.size(), 1);
    EXPECT_TRUE(capturedWarnings.front().contains(QStringLiteral(": 102 in one interval")))
        << capturedWarnings.front().toStdString();
}

TEST(NonFiniteSamples, ProcessingABurstAllocatesNothing)
{
    SPLProcessor spl(rate, FrequencyWeighting::a, TimeWeighting::fast, 0.0);
    SpectrumAnalyzer analyzer(rate);
    const auto burst = burstInterval();
    spl.process(burst);
    analyzer.append(burst);
    const testsupport::AllocationCounter counter;
    spl.process(burst);
    analyzer.append(burst);
    EXPECT_EQ(counter.count(), 0u);
}
