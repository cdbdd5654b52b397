// The unhinged wording's table, and its one rule: a ringing tone keeps its line.
#include <gtest/gtest.h>

#include <limits>

#include "views/components/Unhinged.h"

using namespace ostrel;

TEST(Unhinged, EachLevelRangeHasItsLine)
{
    EXPECT_EQ(Unhinged::title(LevelRange::normal), QString("Chill as fuck"));
    EXPECT_EQ(Unhinged::title(LevelRange::elevated), QString("Getting fucking loud"));
    EXPECT_EQ(Unhinged::title(LevelRange::high), QString("WHAT THE FUCK, TURN IT DOWN"));
}

TEST(Unhinged, FeedbackRoundsTheFrequencyBeforePickingItsLine)
{
    EXPECT_EQ(Unhinged::feedback(1000.4), QString("FEEDBACK, PULL THE FUCKING FADER"));
    EXPECT_EQ(Unhinged::feedback(1001.6), QString("Oh shit, it's ringing"));
    EXPECT_EQ(Unhinged::feedback(1001.0), QString("Something's screaming like a goddamn kettle"));
    EXPECT_EQ(Unhinged::feedback(1003.0), QString("Feedback. Who the fuck EQ'd this?"));
}

TEST(Unhinged, OneRingingToneKeepsItsLineWhileItWavers)
{
    const QString line = Unhinged::feedback(2500.0);
    for (double f = 2499.6; f < 2500.5; f += 0.1)
        EXPECT_EQ(Unhinged::feedback(f), line) << f;
}

TEST(Unhinged, ANegativeFrequencyTakesItsMagnitude)
{
    EXPECT_EQ(Unhinged::feedback(-1001.6), Unhinged::feedback(1001.6));
}

TEST(UnhingedDeathTest, AFrequencyThatIsNoFiniteNumberStopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(Unhinged::feedback(std::numeric_limits<double>::quiet_NaN()), "finite");
    EXPECT_DEATH(Unhinged::feedback(std::numeric_limits<double>::infinity()), "finite");
}
