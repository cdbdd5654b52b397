#include <gtest/gtest.h>

#include <QLocale>

#include "views/components/FrequencyText.h"

using namespace ostrel;

TEST(FrequencyText, ReadoutsRoundToTheirRangesDecimalsInTheUsersFormat)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    EXPECT_EQ(FrequencyText::hertz(99.96, english), "100.0 Hz");
    EXPECT_EQ(FrequencyText::hertz(999.6, english), "1000 Hz");
    EXPECT_EQ(FrequencyText::hertz(31.5, english), "31.5 Hz");
    EXPECT_EQ(FrequencyText::hertz(1250.0, english), "1.25 kHz");
    EXPECT_EQ(FrequencyText::hertz(12500.0, english), "12.5 kHz");
    EXPECT_EQ(FrequencyText::hertz(1250.0, QLocale(QLocale::German, QLocale::Germany)), "1,25 kHz");
}

TEST(FrequencyText, AxisLabelsUseKiloWithAtMostOneDecimal)
{
    EXPECT_EQ(FrequencyText::axisLabel(1000.0), "1k");
    EXPECT_EQ(FrequencyText::axisLabel(2500.0), "2.5k");
    EXPECT_EQ(FrequencyText::axisLabel(500.0), "500");
    EXPECT_EQ(FrequencyText::axisLabel(31.6), "31");
}
