#include <gtest/gtest.h>

#include "updates/UpdateFeed.h"

using ostrel::UpdateFeed::isConfigured;

TEST(UpdateFeed, AnEmptyFeedIsNoFeed)
{
    EXPECT_FALSE(isConfigured(""));
    EXPECT_FALSE(isConfigured("   "));
}

TEST(UpdateFeed, ThePlaceholderIsNoFeedOnAnyReservedExampleHost)
{
    EXPECT_FALSE(isConfigured(ostrel::UpdateFeed::placeholder));
    EXPECT_FALSE(isConfigured("https://example.com/ostrel/appcast.xml"));
    EXPECT_FALSE(isConfigured("http://downloads.example.org/ostrel/appcast.xml"));
}

TEST(UpdateFeed, AnAddressThatIsNotAWebAddressIsNoFeed)
{
    EXPECT_FALSE(isConfigured("appcast.xml"));
    EXPECT_FALSE(isConfigured("ftp://updates.ostrel.app/appcast.xml"));
    EXPECT_FALSE(isConfigured("file:///tmp/appcast.xml"));
}

TEST(UpdateFeed, ARealAddressIsAFeedEvenOnAnExampleHostWithAnotherPath)
{
    EXPECT_TRUE(isConfigured("https://updates.ostrel.app/ostrel/appcast.xml"));
    EXPECT_TRUE(isConfigured("http://127.0.0.1:8080/ostrel/appcast.xml"));
    EXPECT_TRUE(isConfigured("https://example.com/releases/feed.xml"));
}
