#include <gtest/gtest.h>

#include "network/QuickAlert.h"

using namespace ostrel;

TEST(QuickAlertTest, FeedbackWithAMicNameIsFeedbackAlone)
{
    EXPECT_EQ(QuickAlerts::text(QuickAlert::feedback, QString("Lead Vocal")), QString("Feedback"));
}

TEST(QuickAlertTest, SwappingPackWithAnEmptyMicIsTheTitleAlone)
{
    EXPECT_EQ(QuickAlerts::text(QuickAlert::swappingPack, QString("")), QString("Swapping pack"));
}

TEST(QuickAlertTest, MicDeadWithoutAMicIsTheTitleAlone)
{
    EXPECT_EQ(QuickAlerts::text(QuickAlert::micDead, std::nullopt), QString("Mic dead"));
}

TEST(QuickAlertTest, AnAlertThatTakesAMicNamesIt)
{
    EXPECT_EQ(QuickAlerts::text(QuickAlert::micDead, QString("Lead Vocal")),
        QString("Mic dead: Lead Vocal"));
    EXPECT_EQ(QuickAlerts::text(QuickAlert::swappingPack, QString("Ensemble 2")),
        QString("Swapping pack: Ensemble 2"));
    EXPECT_EQ(QuickAlerts::text(QuickAlert::standBy, QString("Ensemble 2")), QString("Stand by"));
}

TEST(QuickAlertTest, EveryAlertHasItsRawValueTitleSymbolAndFlags)
{
    struct Row {
        QuickAlert alert;
        const char* raw;
        const char* title;
        const char* symbol;
        bool urgent;
        bool mic;
    };
    const Row rows[] = {
        {QuickAlert::micDead, "micDead", "Mic dead", "mic.slash.fill", true, true},
        {QuickAlert::swappingPack, "swappingPack", "Swapping pack", "arrow.triangle.2.circlepath",
            false, true},
        {QuickAlert::feedback, "feedback", "Feedback", "waveform.badge.exclamationmark", true,
            false},
        {QuickAlert::standBy, "standBy", "Stand by", "hand.raised.fill", false, false},
        {QuickAlert::done, "done", "Done", "checkmark.circle.fill", false, false},
    };
    ASSERT_EQ(std::size(rows), QuickAlerts::all.size());
    for (std::size_t index = 0; index < std::size(rows); ++index) {
        const Row& row = rows[index];
        EXPECT_EQ(QuickAlerts::all[index], row.alert);
        EXPECT_EQ(QuickAlerts::rawValue(row.alert), row.raw);
        EXPECT_EQ(QuickAlerts::fromRawValue(row.raw), row.alert);
        EXPECT_EQ(QuickAlerts::title(row.alert), QString(row.title));
        EXPECT_EQ(QuickAlerts::systemImage(row.alert), QString(row.symbol));
        EXPECT_EQ(QuickAlerts::isUrgent(row.alert), row.urgent);
        EXPECT_EQ(QuickAlerts::takesMic(row.alert), row.mic);
    }
    EXPECT_FALSE(QuickAlerts::fromRawValue("MicDead"));
}
