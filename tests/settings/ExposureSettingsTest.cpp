#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "exposure/ExposureSettings.h"

using namespace ostrel;

namespace {

class ExposureSettingsTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(ExposureSettingsTest, AStoreThatHoldsNothingHoldsTheShowToTheWhoStandard)
{
    const ExposureSettings exposure(open());
    EXPECT_EQ(exposure.profileKind(), ExposureProfileKind::who);
    EXPECT_EQ(exposure.profile(), ExposureProfile::builtIn(ExposureProfileKind::who));
}

TEST_F(ExposureSettingsTest, TheProfileIsStoredByItsRawValueAndUnknownTextReadsAsTheDefault)
{
    {
        SettingsStore& store = open();
        ExposureSettings exposure(store);
        exposure.setProfileKind(ExposureProfileKind::din);
        store.flush();
    }
    EXPECT_EQ(onDisk("exposureProfile").toString(), "din");
    EXPECT_EQ(ExposureSettings(open()).profileKind(), ExposureProfileKind::din);
    storeRaw("exposureProfile", "osha");
    EXPECT_EQ(ExposureSettings(open()).profileKind(), ExposureProfileKind::who);
}

TEST_F(ExposureSettingsTest, ACustomProfileTakesItsWindowLimitMarginAndPeakFromTheSettings)
{
    ExposureSettings exposure(open());
    exposure.setProfileKind(ExposureProfileKind::custom);
    exposure.setCustomMinutes(20.0);
    exposure.setCustomLimit(96.0);
    exposure.setCustomMargin(2.0);
    exposure.setCustomPeakLimit(130.0);
    const ExposureProfile profile = exposure.profile();
    EXPECT_EQ(profile.kind, ExposureProfileKind::custom);
    EXPECT_EQ(profile.windowSeconds, 1200.0);
    EXPECT_EQ(profile.limit, 96.0);
    EXPECT_EQ(profile.margin, 2.0);
    EXPECT_EQ(profile.peakLimit, std::optional<double>(130.0));
}

TEST_F(ExposureSettingsTest, ACustomWindowIsKeptBetweenOneAndSixtyMinutes)
{
    ExposureSettings exposure(open());
    exposure.setCustomMinutes(0.0);
    EXPECT_EQ(exposure.customMinutes(), 1.0);
    exposure.setCustomMinutes(600.0);
    EXPECT_EQ(exposure.customMinutes(), 60.0);
}

TEST_F(ExposureSettingsTest, AStoredCustomWindowOutsideTheRangeReadsClamped)
{
    storeRaw("exposureCustomMinutes", "-5");
    EXPECT_EQ(ExposureSettings(open()).customMinutes(), 1.0);
}
