#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "measurement/LevelStatistics.h"
#include "measurement/SPLMath.h"

using namespace ostrel;

namespace {

MeasurementInterval interval(double leq, double peak, double max, std::int64_t count = 4800)
{
    MeasurementInterval value;
    value.sampleCount = count;
    value.sampleRate = 48000.0;
    value.energy = SPLMath::power(leq) * static_cast<double>(count);
    value.peakPower = SPLMath::power(peak);
    value.maxLevel = max;
    value.level = max;
    return value;
}

} // namespace

TEST(LevelStatistics, StartsEmptyWithoutLeqPeakOrMax)
{
    LevelStatistics statistics;
    EXPECT_TRUE(statistics.isEmpty());
    EXPECT_FALSE(statistics.leq());
    EXPECT_FALSE(statistics.peak());
    EXPECT_FALSE(statistics.maxLevel);
}

TEST(LevelStatistics, AddingAnEmptyIntervalLeavesMaxAbsent)
{
    LevelStatistics statistics;
    statistics.add(interval(90.0, 100.0, 95.0, 0));
    EXPECT_TRUE(statistics.isEmpty());
    EXPECT_FALSE(statistics.maxLevel);
    EXPECT_EQ(statistics.duration, 0.0);
}

TEST(LevelStatistics, AddsEnergyCountsDurationAndKeepsTheHighestPeakAndMax)
{
    LevelStatistics statistics;
    statistics.add(interval(90.0, 100.0, 95.0));
    statistics.add(interval(80.0, 104.0, 85.0));
    EXPECT_EQ(statistics.sampleCount, 9600);
    EXPECT_NEAR(statistics.duration, 0.2, 1e-12);
    EXPECT_NEAR(*statistics.leq(), 10.0 * std::log10((1e9 + 1e8) / 2.0), 1e-9);
    EXPECT_NEAR(*statistics.peak(), 104.0, 1e-9);
    EXPECT_EQ(*statistics.maxLevel, 95.0);
}

TEST(LevelStatistics, JsonWithoutMaxLevelDecodesWithMaxAbsent)
{
    const auto object = QJsonDocument::fromJson(
        R"({"energy":1.5,"sampleCount":4800,"duration":0.1,"peakPower":0.5})")
                            .object();
    const auto statistics = LevelStatistics::fromJson(object);
    ASSERT_TRUE(statistics);
    EXPECT_FALSE(statistics->maxLevel);
    EXPECT_EQ(statistics->sampleCount, 4800);
    EXPECT_EQ(statistics->energy, 1.5);
}

TEST(LevelStatistics, JsonWithoutEnergyFailsToDecode)
{
    const auto object
        = QJsonDocument::fromJson(R"({"sampleCount":4800,"duration":0.1,"peakPower":0.5})")
              .object();
    EXPECT_FALSE(LevelStatistics::fromJson(object));
}

TEST(LevelStatistics, JsonWithAnyRequiredKeyMissingOrMistypedFailsToDecode)
{
    for (const char* text : {R"({"energy":1,"duration":0.1,"peakPower":0.5})",
             R"({"energy":1,"sampleCount":4800,"peakPower":0.5})",
             R"({"energy":1,"sampleCount":4800,"duration":0.1})",
             R"({"energy":"1","sampleCount":4800,"duration":0.1,"peakPower":0.5})",
             R"({"energy":1,"sampleCount":4800.5,"duration":0.1,"peakPower":0.5})",
             R"({"energy":1,"sampleCount":4800,"duration":0.1,"peakPower":0.5,"maxLevel":"x"})"}) {
        EXPECT_FALSE(LevelStatistics::fromJson(QJsonDocument::fromJson(text).object())) << text;
    }
}

TEST(LevelStatistics, JsonRoundTripKeepsEveryField)
{
    LevelStatistics statistics;
    statistics.add(interval(90.0, 100.0, 95.25));
    const auto object = statistics.toJson();
    EXPECT_EQ(object.keys(),
        (QStringList {"duration", "energy", "maxLevel", "peakPower", "sampleCount"}));
    EXPECT_EQ(LevelStatistics::fromJson(object), statistics);

    LevelStatistics empty;
    EXPECT_FALSE(empty.toJson().contains("maxLevel"));
    EXPECT_EQ(LevelStatistics::fromJson(empty.toJson()), empty);
}
