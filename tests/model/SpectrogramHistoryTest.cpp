#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "model/SpectrogramHistory.h"
#include "support/IntervalTicks.h"

using namespace ostrel;

namespace {

const Date base = testsupport::tickBase;
using testsupport::tick;

// Column `index` of a small ring: every row is index * 10 + row, so each value says where it
// came from.
std::vector<double> column(int index, std::int64_t rows = 4)
{
    std::vector<double> levels;
    for (std::int64_t row = 0; row < rows; ++row)
        levels.push_back(index * 10.0 + static_cast<double>(row));
    return levels;
}

SpectrogramHistory filled(std::int64_t capacity, int appended)
{
    SpectrogramHistory history(4, capacity);
    for (int index = 0; index < appended; ++index)
        history.append(column(index), tick(index));
    return history;
}

// Logical columns in order, each as the index its values were built from.
std::vector<int> heldColumns(const SpectrogramHistory& history)
{
    std::vector<int> held;
    for (std::int64_t logical = 0; logical < history.count(); ++logical) {
        const int index = static_cast<int>(history.level(logical, 0)) / 10;
        for (std::int64_t row = 0; row < history.rows(); ++row)
            EXPECT_EQ(history.level(logical, row), static_cast<float>(column(index)[row]));
        EXPECT_EQ(history.date(logical), tick(index));
        held.push_back(index);
    }
    return held;
}

} // namespace

TEST(SpectrogramHistory, StartsEmptyWithZeroLevelsAndDatesInTheDistantPast)
{
    const SpectrogramHistory history(4, 3);
    EXPECT_EQ(history.count(), 0);
    EXPECT_EQ(history.head(), 0);
    EXPECT_EQ(history.values(), std::vector<float>(12, 0.0f));
    EXPECT_EQ(history.dates(), std::vector<Date>(3, SpectrogramHistory::distantPast));
    EXPECT_FALSE(history.newestDate());
    EXPECT_FALSE(history.maximum());
}

TEST(SpectrogramHistory, CapacityBelowOneBecomesOne)
{
    EXPECT_EQ(SpectrogramHistory(4, 0).capacity(), 1);
    EXPECT_EQ(SpectrogramHistory(4, -5).capacity(), 1);
}

TEST(SpectrogramHistory, AppendOnAnEmptyRingMakesColumnZeroTheNewColumn)
{
    SpectrogramHistory history(4, 3);
    history.append(std::vector<double> {1.0, 2.0, 3.0, 4.25}, tick(7));
    EXPECT_EQ(history.count(), 1);
    EXPECT_EQ(history.head(), 1);
    EXPECT_EQ(history.level(0, 0), 1.0f);
    EXPECT_EQ(history.level(0, 3), 4.25f);
    EXPECT_EQ(history.date(0), tick(7));
    EXPECT_EQ(history.newestDate(), tick(7));
}

TEST(SpectrogramHistory, LevelsAreNarrowedToFloat)
{
    SpectrogramHistory history(2, 2);
    history.append(std::vector<double> {0.1, -73.123456789}, base);
    EXPECT_EQ(history.level(0, 0), 0.1f);
    EXPECT_EQ(history.level(0, 1), static_cast<float>(-73.123456789));
}

TEST(SpectrogramHistory, OneAppendPastCapacityDropsTheOldestColumn)
{
    const auto history = filled(3, 4);
    EXPECT_EQ(history.count(), 3);
    EXPECT_EQ(history.head(), 1);
    EXPECT_EQ(heldColumns(history), (std::vector<int> {1, 2, 3}));
    EXPECT_EQ(history.newestDate(), tick(3));
}

TEST(SpectrogramHistory, ColumnOfTheWrongLengthChangesNothing)
{
    SpectrogramHistory history;
    history.append(std::vector<double>(240, -50.0), tick(0));
    const auto before = history.values();

    history.append(std::vector<double>(239, 20.0), tick(1));
    history.append(std::vector<double>(241, 20.0), tick(2));
    EXPECT_EQ(history.count(), 1);
    EXPECT_EQ(history.head(), 1);
    EXPECT_EQ(history.values(), before);
    EXPECT_EQ(history.newestDate(), tick(0));
}

TEST(SpectrogramHistory, ResizeToTheCurrentCapacityKeepsEverything)
{
    auto history = filled(3, 5);
    const float* storage = history.values().data();
    const auto values = history.values();
    const auto dates = history.dates();

    history.resize(3);
    EXPECT_EQ(history.values().data(), storage);
    EXPECT_EQ(history.values(), values);
    EXPECT_EQ(history.dates(), dates);
    EXPECT_EQ(history.head(), 2);
    EXPECT_EQ(history.count(), 3);
}

TEST(SpectrogramHistory, ResizeToZeroKeepsOnlyTheNewestColumn)
{
    auto history = filled(3, 5);
    history.resize(0);
    EXPECT_EQ(history.capacity(), 1);
    EXPECT_EQ(history.count(), 1);
    EXPECT_EQ(history.head(), 0);
    EXPECT_EQ(heldColumns(history), (std::vector<int> {4}));
}

TEST(SpectrogramHistory, ResizeLargerKeepsEveryColumnInOrderWithItsDate)
{
    auto history = filled(3, 5);
    history.resize(6);
    EXPECT_EQ(history.capacity(), 6);
    EXPECT_EQ(history.count(), 3);
    EXPECT_EQ(history.head(), 3);
    EXPECT_EQ(heldColumns(history), (std::vector<int> {2, 3, 4}));
    EXPECT_EQ(history.dates()[3], SpectrogramHistory::distantPast);

    history.append(column(5), tick(5));
    EXPECT_EQ(heldColumns(history), (std::vector<int> {2, 3, 4, 5}));
}

TEST(SpectrogramHistory, ResizeSmallerKeepsTheNewestColumns)
{
    auto history = filled(5, 5);
    history.resize(2);
    EXPECT_EQ(history.capacity(), 2);
    EXPECT_EQ(history.count(), 2);
    EXPECT_EQ(history.head(), 0);
    EXPECT_EQ(history.values().size(), 8u);
    EXPECT_EQ(heldColumns(history), (std::vector<int> {3, 4}));
}

TEST(SpectrogramHistory, MaximumOfARingOfSilenceIsMinusTwoHundred)
{
    SpectrogramHistory history(4, 3);
    for (int index = 0; index < 5; ++index)
        history.append(std::vector<double>(4, -200.0), tick(index));
    EXPECT_EQ(history.maximum(), -200.0f);
}

TEST(SpectrogramHistory, MaximumIsTheLargestHeldLevel)
{
    SpectrogramHistory history(3, 4);
    history.append(std::vector<double> {-60.0, -20.5, -80.0}, tick(0));
    history.append(std::vector<double> {-70.0, -90.0, -30.0}, tick(1));
    EXPECT_EQ(history.maximum(), -20.5f);
}

TEST(SpectrogramHistory, RemoveAllEmptiesTheRingAndHidesOldLevelsFromTheMaximum)
{
    auto history = filled(3, 3);
    history.removeAll();
    EXPECT_EQ(history.count(), 0);
    EXPECT_EQ(history.head(), 0);
    EXPECT_FALSE(history.newestDate());
    EXPECT_FALSE(history.maximum());

    history.append(std::vector<double>(4, -10.0), tick(9));
    EXPECT_EQ(history.maximum(), -10.0f);
    EXPECT_EQ(history.count(), 1);
}

TEST(SpectrogramHistory, DefaultRingStaysUnderSixHundredKilobytes)
{
    const SpectrogramHistory history;
    EXPECT_EQ(history.rows(), 240);
    EXPECT_EQ(history.capacity(), 610);
    EXPECT_EQ(history.values().size(), 240u * 610u);
    EXPECT_LT(history.memoryBytes(), 600u * 1000u);
}

TEST(SpectrogramHistory, AppendDoesNotReallocate)
{
    SpectrogramHistory history;
    const float* storage = history.values().data();
    const Date* dateStorage = history.dates().data();
    const std::vector<double> levels(240, -40.0);
    for (int index = 0; index < 2000; ++index)
        history.append(levels, tick(index));
    EXPECT_EQ(history.values().data(), storage);
    EXPECT_EQ(history.dates().data(), dateStorage);
    EXPECT_EQ(history.count(), 610);
}
