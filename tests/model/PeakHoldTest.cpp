#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "model/PeakHold.h"
#include "support/IntervalTicks.h"

using namespace ostrel;

namespace {

const Date base = testsupport::tickBase;
using testsupport::tick;

} // namespace

TEST(PeakHold, FirstUpdateCopiesTheLevels)
{
    PeakHold hold;
    hold.update({50.0, 60.0, 70.0}, base, 0.1);
    EXPECT_EQ(hold.peaks, (std::vector<double> {50.0, 60.0, 70.0}));
    EXPECT_EQ(hold.times, (std::vector<Date> {base, base, base}));
}

TEST(PeakHold, PeakHoldsThenFallsAtTenDecibelsPerSecondDownToTheLevel)
{
    PeakHold hold;
    hold.update({80.0, 60.0}, tick(0), 0.1);
    for (int index = 1; index <= 15; ++index) {
        hold.update({50.0, 60.0}, tick(index), 0.1);
        EXPECT_EQ(hold.peaks[0], 80.0) << "at tick " << index;
    }

    hold.update({50.0, 60.0}, tick(16), 0.1);
    EXPECT_DOUBLE_EQ(hold.peaks[0], 79.0);
    hold.update({50.0, 60.0}, tick(21), 0.5);
    EXPECT_DOUBLE_EQ(hold.peaks[0], 74.0);
    hold.update({50.0, 60.0}, tick(61), 4.0);
    EXPECT_EQ(hold.peaks[0], 50.0);
    EXPECT_EQ(hold.peaks[1], 60.0);
    EXPECT_EQ(hold.times[0], tick(0));
}

TEST(PeakHold, HigherLevelRaisesThePeakAndRestartsTheHold)
{
    PeakHold hold;
    hold.update({70.0}, tick(0), 0.1);
    hold.update({75.0}, tick(10), 0.1);
    EXPECT_EQ(hold.peaks[0], 75.0);
    EXPECT_EQ(hold.times[0], tick(10));

    // 2 s after the first peak, but only 1 s after the new one.
    hold.update({50.0}, tick(20), 0.1);
    EXPECT_EQ(hold.peaks[0], 75.0);
    hold.update({50.0}, tick(26), 0.1);
    EXPECT_DOUBLE_EQ(hold.peaks[0], 74.0);
}

TEST(PeakHold, EqualLevelRestartsTheHold)
{
    PeakHold hold;
    hold.update({70.0}, tick(0), 0.1);
    hold.update({70.0}, tick(10), 0.1);
    EXPECT_EQ(hold.times[0], tick(10));
}

TEST(PeakHold, NewBandCountStartsOverFromTheLevels)
{
    PeakHold hold;
    hold.update(std::vector<double>(120, 90.0), tick(0), 0.1);
    const std::vector<double> levels(60, 40.0);
    hold.update(levels, tick(1), 0.1);
    EXPECT_EQ(hold.peaks, levels);
    EXPECT_EQ(hold.times, std::vector<Date>(60, tick(1)));
}
