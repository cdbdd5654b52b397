#include <gtest/gtest.h>

#include "updates/Appcast.h"

using namespace ostrel;

namespace {

QByteArray feed(const QByteArray& items)
{
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
  <channel>
    <title>Ostrel Live</title>
)" + items
        + R"(
  </channel>
</rss>)";
}

std::vector<AppcastItem> items(const QByteArray& body)
{
    auto parsed = Appcast::parse(body);
    if (auto* message = std::get_if<QString>(&parsed)) {
        ADD_FAILURE() << message->toStdString();
        return {};
    }
    return std::get<std::vector<AppcastItem>>(parsed);
}

QString problem(const QByteArray& body)
{
    auto parsed = Appcast::parse(body);
    auto* message = std::get_if<QString>(&parsed);
    return message ? *message : QString();
}

} // namespace

TEST(Appcast, AnItemGivesItsVersionsLinksAndDate)
{
    const auto read = items(feed(R"(
    <item>
      <title>Version 1.2</title>
      <link>https://ostrel.app/download</link>
      <sparkle:version>120</sparkle:version>
      <sparkle:shortVersionString>1.2</sparkle:shortVersionString>
      <sparkle:releaseNotesLink>https://ostrel.app/notes/1.2</sparkle:releaseNotesLink>
      <pubDate>Tue, 24 Nov 2026 10:00:00 +0000</pubDate>
      <enclosure url="https://ostrel.app/ostrel-live_1.2_amd64.deb" length="100" type="application/octet-stream"/>
    </item>)"));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].title, "Version 1.2");
    EXPECT_EQ(read[0].version, "120");
    EXPECT_EQ(read[0].displayVersion, "1.2");
    EXPECT_EQ(read[0].downloadPage, "https://ostrel.app/download");
    EXPECT_EQ(read[0].releaseNotes, "https://ostrel.app/notes/1.2");
    ASSERT_TRUE(read[0].published.has_value());
    EXPECT_EQ(
        std::chrono::duration_cast<std::chrono::seconds>(read[0].published->time_since_epoch())
            .count(),
        1795514400);
}

TEST(Appcast, VersionsOnTheEnclosureAndItsAddressServeWhenTheItemHasNone)
{
    const auto read = items(feed(R"(
    <item>
      <enclosure url="https://ostrel.app/ostrel-live_2.0_amd64.deb" sparkle:version="2.0.1"
                 sparkle:shortVersionString="2.0"/>
    </item>)"));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].version, "2.0.1");
    EXPECT_EQ(read[0].displayVersion, "2.0");
    EXPECT_EQ(read[0].downloadPage, "https://ostrel.app/ostrel-live_2.0_amd64.deb");
    EXPECT_TRUE(read[0].releaseNotes.isEmpty());
}

TEST(Appcast, WithoutADisplayVersionTheBuildVersionIsShown)
{
    const auto read = items(feed(R"(
    <item><link>https://ostrel.app/</link><sparkle:version>3.1</sparkle:version></item>)"));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].displayVersion, "3.1");
}

TEST(Appcast, ItemsWithoutAVersionOrAWebAddressAreLeftOut)
{
    const auto read = items(feed(R"(
    <item><link>https://ostrel.app/</link></item>
    <item><sparkle:version>2.0</sparkle:version></item>
    <item><link>javascript:alert(1)</link><sparkle:version>2.0</sparkle:version></item>
    <item><link>https://ostrel.app/</link><sparkle:version>2.1</sparkle:version></item>)"));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].version, "2.1");
}

TEST(Appcast, ItemsForAnotherSystemOrOnAChannelOfTheirOwnAreLeftOut)
{
    const auto read = items(feed(R"(
    <item><sparkle:version>9.0</sparkle:version>
      <enclosure url="https://ostrel.app/x.dmg" sparkle:os="macos"/></item>
    <item><sparkle:version>8.0</sparkle:version><sparkle:channel>beta</sparkle:channel>
      <link>https://ostrel.app/beta</link></item>
    <item><sparkle:version>2.0</sparkle:version>
      <enclosure url="https://ostrel.app/x.deb" sparkle:os="linux"/></item>)"));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].version, "2.0");
}

TEST(Appcast, ARelativeReleaseNotesAddressIsDropped)
{
    const auto read = items(feed(R"(
    <item><link>https://ostrel.app/</link><sparkle:version>2</sparkle:version>
      <sparkle:releaseNotesLink>notes.html</sparkle:releaseNotesLink></item>)"));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_TRUE(read[0].releaseNotes.isEmpty());
}

TEST(Appcast, AFeedThatIsNotRssSaysSo)
{
    EXPECT_EQ(problem("<html><body>Not here</body></html>"),
        QString("The update feed isn't an appcast."));
    EXPECT_EQ(problem("<rss version=\"2.0\"></rss>"), QString("The update feed isn't an appcast."));
    EXPECT_EQ(problem(""), QString("The update feed isn't an appcast."));
}

TEST(Appcast, BrokenXmlSaysItCantBeRead)
{
    const QString message = problem(feed("<item><sparkle:version>2</item>"));
    EXPECT_TRUE(message.startsWith("The update feed can't be read")) << message.toStdString();
}

TEST(Appcast, AnOversizedFeedIsRefusedUnread)
{
    QByteArray huge = feed("");
    huge.append(QByteArray(Appcast::maximumBytes, ' '));
    EXPECT_EQ(problem(huge), QString("The update feed is too large."));
}

TEST(Appcast, AnEmptyChannelHasNoReleases)
{
    EXPECT_TRUE(items(feed("")).empty());
}

TEST(Appcast, TheNewestIsTheHighestVersionAboveTheCurrentOneWhateverTheFeedOrder)
{
    std::vector<AppcastItem> releases(3);
    releases[0].version = "1.2";
    releases[1].version = "1.10";
    releases[2].version = "1.9";
    const auto newest = Appcast::newest(releases, "1.2");
    ASSERT_TRUE(newest.has_value());
    EXPECT_EQ(newest->version, "1.10");
    EXPECT_FALSE(Appcast::newest(releases, "1.10").has_value());
    EXPECT_FALSE(Appcast::newest(releases, "2.0").has_value());
    EXPECT_FALSE(Appcast::newest({}, "1.0").has_value());
}
