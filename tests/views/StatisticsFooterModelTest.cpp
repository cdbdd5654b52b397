#include <QSignalSpy>

#include "ViewSources.h"
#include "views/level/StatisticsFooterModel.h"

using namespace ostrel;

class StatisticsFooterModelTest : public testsupport::ViewSourcesFixture { };

TEST_F(StatisticsFooterModelTest, StatisticsAreBlankWithoutData)
{
    const auto texts = StatisticsFooterModel::texts(LevelStatistics {});
    EXPECT_TRUE(texts.peak.isEmpty());
    EXPECT_TRUE(texts.leq.isEmpty());
    EXPECT_TRUE(texts.max.isEmpty());

    auto model = make(AppModel::Mode::inert);
    StatisticsFooterModel footer;
    show(footer, *model);
    EXPECT_EQ(footer.peakText(), "");
    EXPECT_EQ(footer.leqText(), "");
    EXPECT_EQ(footer.maxText(), "");
    EXPECT_EQ(footer.peakCaption(), "Peak");
    EXPECT_EQ(footer.leqCaption(), "Leq");
    EXPECT_EQ(footer.maxCaption(), "Max");
}

TEST_F(StatisticsFooterModelTest, ValuesAreDecibelsWithOneDecimal)
{
    auto model = make(AppModel::Mode::inert);
    StatisticsFooterModel footer;
    show(footer, *model);
    QSignalSpy changes(&footer, &StatisticsFooterModel::valuesChanged);
    // Steady 80 dB: Leq 80, Peak 83 and Max 81 by how the intervals are made.
    feed(*model, 80.0, 1.0);
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(footer.leqText(), "80.0 dB");
    EXPECT_EQ(footer.peakText(), "83.0 dB");
    EXPECT_EQ(footer.maxText(), "81.0 dB");
}

TEST_F(StatisticsFooterModelTest, ResettingBlanksTheFooterAgain)
{
    auto model = make(AppModel::Mode::inert);
    StatisticsFooterModel footer;
    show(footer, *model);
    feed(*model, 80.0, 1.0);
    ASSERT_FALSE(footer.leqText().isEmpty());
    model->meter().resetStatistics();
    EXPECT_EQ(footer.leqText(), "");
    EXPECT_EQ(footer.maxText(), "");
}

TEST_F(StatisticsFooterModelTest, SpacingFollowsTheFontSize)
{
    StatisticsFooterModel footer;
    footer.setFontSize(22.4);
    EXPECT_DOUBLE_EQ(footer.captionSpacing(), 11.2);
}
