#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "measurement/SpectrumBand.h"
#include "measurement/SpectrumResolution.h"

using namespace ostrel;

TEST(SpectrumBand, FineGridHas240BandsSharingEdgesExactly)
{
    const auto& fine = SpectrumBand::fine();
    ASSERT_EQ(fine.size(), 240u);
    for (std::size_t i = 0; i + 1 < fine.size(); ++i)
        EXPECT_EQ(fine[i].upper, fine[i + 1].lower);
    EXPECT_NEAR(fine.front().lower, 19.68627, 1e-5);
    EXPECT_NEAR(fine.back().upper, 20158.737, 1e-3);
    EXPECT_NEAR(fine.back().upper / fine.front().lower, 1024.0, 1e-9);
}

TEST(SpectrumBand, LowerEdgeOfFineBand136IsExactlyOneKilohertz)
{
    EXPECT_EQ(SpectrumBand::fine()[136].lower, 1000.0);
    EXPECT_NEAR(SpectrumBand::fine()[136].center, 1000.0 * std::pow(2.0, 0.5 / 24.0), 1e-9);
}

TEST(SpectrumBand, GroupingByFourTwoAndOneGivesSixtyHundredTwentyAndTheSameList)
{
    std::vector<double> levels(240);
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = -50.0 + 0.1 * static_cast<double>(i);
    EXPECT_EQ(SpectrumBand::group(levels, 4).size(), 60u);
    EXPECT_EQ(SpectrumBand::group(levels, 2).size(), 120u);
    EXPECT_EQ(SpectrumBand::group(levels, 1), levels);
    EXPECT_EQ(SpectrumBand::group(levels, 0), levels);
}

TEST(SpectrumBand, GroupingSumsPowersSoAGroupReadsAboveItsMembers)
{
    const std::vector<double> floor(4, -200.0);
    EXPECT_NEAR(SpectrumBand::group(floor, 4)[0], 10.0 * std::log10(4e-20), 1e-9);
    EXPECT_NEAR(SpectrumBand::group(floor, 4)[0], -193.98, 0.01);
    const std::vector<double> equal(4, 60.0);
    EXPECT_NEAR(SpectrumBand::group(equal, 4)[0], 60.0 + 10.0 * std::log10(4.0), 1e-9);
}

TEST(SpectrumBand, GroupingDropsATrailingPartialGroup)
{
    const std::vector<double> seven(7, 0.0);
    EXPECT_EQ(SpectrumBand::group(seven, 4).size(), 1u);
}

TEST(SpectrumBand, ThirdOctaveBand17IsCentredOnOneKilohertz)
{
    const auto& thirds = SpectrumBand::thirdOctave();
    ASSERT_EQ(thirds.size(), 31u);
    EXPECT_EQ(thirds[17].center, 1000.0);
    EXPECT_NEAR(thirds.front().center, 19.9526, 1e-4);
    EXPECT_NEAR(thirds.back().center, 19952.6, 0.05);
    EXPECT_NEAR(thirds[17].upper, 1122.0184543019633, 1e-9);
}

TEST(SpectrumBand, ContainsIncludesTheLowerEdgeAndExcludesTheUpper)
{
    const auto& band = SpectrumBand::fine()[136];
    EXPECT_TRUE(band.contains(band.lower));
    EXPECT_FALSE(band.contains(band.upper));
    EXPECT_EQ(SpectrumBand::index(1000.0, SpectrumBand::fine()), 136u);
    EXPECT_EQ(SpectrumBand::index(10.0, SpectrumBand::fine()), std::nullopt);
    EXPECT_EQ(SpectrumBand::index(30000.0, SpectrumBand::thirdOctave()), std::nullopt);
}

TEST(SpectrumBand, GroupedBandsSpanTheirMembersWithAGeometricCentre)
{
    const auto& sixths = SpectrumBand::sixthOctave();
    ASSERT_EQ(sixths.size(), 60u);
    EXPECT_EQ(sixths[0].lower, SpectrumBand::fine()[0].lower);
    EXPECT_EQ(sixths[0].upper, SpectrumBand::fine()[3].upper);
    EXPECT_NEAR(sixths[0].center, std::sqrt(sixths[0].lower * sixths[0].upper), 1e-12);
    EXPECT_EQ(SpectrumBand::twelfthOctave().size(), 120u);
}

TEST(SpectrumResolution, RawValuesTitlesAndBands)
{
    using namespace SpectrumResolutions;
    EXPECT_EQ(fromRawValue(6), SpectrumResolution::sixth);
    EXPECT_EQ(fromRawValue(5), std::nullopt);
    EXPECT_EQ(title(SpectrumResolution::third), "1/3 Octave");
    EXPECT_EQ(shortTitle(SpectrumResolution::twelfth), "1/12 Oct");
    EXPECT_EQ(fineBandsPerBand(SpectrumResolution::third), std::nullopt);
    EXPECT_EQ(fineBandsPerBand(SpectrumResolution::sixth), 4u);
    EXPECT_EQ(bands(SpectrumResolution::third).size(), 31u);
    EXPECT_EQ(bands(SpectrumResolution::sixth).size(), 60u);
    EXPECT_EQ(bands(SpectrumResolution::twentyFourth).size(), 240u);
}

TEST(SpectrumResolution, LevelsComeFromThirdsOrFromGroupedFineBands)
{
    using namespace SpectrumResolutions;
    const std::vector<double> third(31, 1.0);
    const std::vector<double> fine(240, 0.0);
    EXPECT_EQ(levels(SpectrumResolution::third, third, fine), third);
    EXPECT_EQ(levels(SpectrumResolution::twentyFourth, third, fine), fine);
    const auto sixth = levels(SpectrumResolution::sixth, third, fine);
    ASSERT_EQ(sixth.size(), 60u);
    EXPECT_NEAR(sixth[0], 10.0 * std::log10(4.0), 1e-9);
}

TEST(SpectrumBand, BandListsAreTheSameAtEverySampleRate)
{
    // The grids are built without a rate; spectra mark bands above Nyquist with -200 instead.
    const auto first = SpectrumBand::fine();
    EXPECT_EQ(&SpectrumBand::fine(), &SpectrumBand::fine());
    EXPECT_EQ(first, SpectrumBand::fine());
}
