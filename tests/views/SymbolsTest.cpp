#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetricsF>
#include <QSignalSpy>

#include "views/components/Symbols.h"
#include "views/components/Theme.h"

using namespace ostrel;

TEST(Symbols, EveryNameTheViewsUseHasAnIcon)
{
    for (const char* name : {"sun.min", "sun.max", "mic.slash"}) {
        EXPECT_FALSE(Symbols::text(QString::fromLatin1(name), true).isEmpty()) << name;
    }
    EXPECT_EQ(Symbols::text("sun.min", true), "brightness_low");
    EXPECT_EQ(Symbols::text("no.such.symbol", true), "");
}

TEST(Symbols, WithoutTheFontControlsStillShowPlainText)
{
    EXPECT_EQ(Symbols::text("sun.min", false), QString::fromUtf8("\u2212"));
    EXPECT_EQ(Symbols::text("sun.max", false), "+");
    // The microphone symbol only decorates its sentence.
    EXPECT_EQ(Symbols::text("mic.slash", false), "");
}

TEST(Symbols, TheFontDrawsEachIconAsOneGlyph)
{
    // The font comes from the package fonts-material-design-icons-iconfont.
    ASSERT_TRUE(Symbols::isFontInstalled());
    QFont font(QString::fromLatin1(Symbols::family));
    font.setPixelSize(24);
    const QFontMetricsF metrics(font);
    for (const auto& entry : Symbols::table()) {
        const QString icon = QString::fromLatin1(entry.icon);
        // Unshaped, a name of many letters would run many times wider than one icon.
        EXPECT_LE(metrics.horizontalAdvance(icon), 24.0 * 1.1) << entry.name;
        EXPECT_GT(metrics.horizontalAdvance(icon), 0.0) << entry.name;
    }
}

TEST(Theme, RolesHaveDistinctColoursInBothAppearances)
{
    for (bool dark : {false, true}) {
        const auto primary = Theme::color(Theme::Role::primary, dark);
        EXPECT_NE(Theme::color(Theme::Role::red, dark), Theme::color(Theme::Role::orange, dark));
        EXPECT_NE(Theme::color(Theme::Role::green, dark), primary);
        EXPECT_LT(Theme::color(Theme::Role::secondary, dark).alphaF(), primary.alphaF());
    }
    EXPECT_GT(Theme::color(Theme::Role::primary, true).lightness(), 200);
    EXPECT_LT(Theme::color(Theme::Role::primary, false).lightness(), 50);
}

TEST(Theme, AnUnknownRoleFallsBackToPrimary)
{
    Theme theme;
    EXPECT_EQ(theme.color(99), theme.primary());
    EXPECT_EQ(
        theme.color(static_cast<int>(Theme::Role::red)), Theme::color(Theme::Role::red, false));
}

TEST(Theme, ColoursByRoleFollowTheAppearance)
{
    Theme theme;
    QSignalSpy changes(&theme, &Theme::darkChanged);
    const auto light = theme.colors();
    ASSERT_EQ(light.size(), static_cast<int>(Theme::Role::yellow) + 1);
    EXPECT_EQ(
        light[static_cast<int>(Theme::Role::orange)], Theme::color(Theme::Role::orange, false));
    theme.setDark(true);
    theme.setDark(true);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(theme.colors()[static_cast<int>(Theme::Role::primary)],
        Theme::color(Theme::Role::primary, true));
    EXPECT_NE(theme.colors(), light);
    EXPECT_EQ(theme.background(), QColor(0, 0, 0));
}
