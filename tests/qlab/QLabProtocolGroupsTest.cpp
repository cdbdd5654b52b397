#include <gtest/gtest.h>

#include "qlab/QLabProtocol.h"

using namespace ostrel;

namespace {

const Date base = addingSeconds(Date {}, 1'700'000'000.0);

Date at(double seconds)
{
    return addingSeconds(base, seconds);
}

QLabCue cue(const QString& id, const QString& type, std::optional<QString> parent = std::nullopt,
    double startedAt = 0)
{
    QLabCue result;
    result.id = id;
    result.type = type;
    result.parentID = std::move(parent);
    result.startedAt = at(startedAt);
    return result;
}

QHash<QString, QLabCue> known(std::initializer_list<QLabCue> cues)
{
    QHash<QString, QLabCue> result;
    for (const auto& entry : cues)
        result.insert(entry.id, entry);
    return result;
}

QStringList ids(const std::vector<QLabCue>& cues)
{
    QStringList result;
    for (const auto& entry : cues)
        result.append(entry.id);
    return result;
}

} // namespace

TEST(QLabProtocolGroups, CueWithoutAParentStandsForItself)
{
    const auto shown = QLabProtocol::collapseGroups({cue("A", "Audio")}, {});
    EXPECT_EQ(shown, std::vector {cue("A", "Audio")});
}

TEST(QLabProtocolGroups, GroupInsideAGroupYieldsTheOuterGroup)
{
    const auto shown = QLabProtocol::collapseGroups({cue("A", "Audio", "G1")},
        known({cue("G1", "Group", "G2"), cue("G2", "Group", "L"), cue("L", "Cue List")}));
    EXPECT_EQ(ids(shown), QStringList {"G2"});
}

TEST(QLabProtocolGroups, ParentCycleEndsAtTheLastGroupBeforeTheRepeat)
{
    const auto shown = QLabProtocol::collapseGroups(
        {cue("A", "Audio", "G1")}, known({cue("G1", "Group", "G2"), cue("G2", "Group", "G1")}));
    EXPECT_EQ(ids(shown), QStringList {"G2"});
}

TEST(QLabProtocolGroups, CueThatIsItsOwnAncestorEndsTheWalk)
{
    const auto shown = QLabProtocol::collapseGroups(
        {cue("A", "Audio", "G1")}, known({cue("G1", "Group", "A"), cue("A", "Group", "G1")}));
    EXPECT_EQ(ids(shown), QStringList {"G1"});
}

TEST(QLabProtocolGroups, CueListParentLeavesTheCueAsItIs)
{
    const QLabCue child = cue("A", "Audio", "L");
    const auto shown = QLabProtocol::collapseGroups({child}, known({cue("L", "Cue List")}));
    EXPECT_EQ(shown, std::vector {child});
}

TEST(QLabProtocolGroups, UnknownParentLeavesTheCueUntilItIsKnown)
{
    const auto shown = QLabProtocol::collapseGroups({cue("A", "Audio", "G?")}, {});
    EXPECT_EQ(ids(shown), QStringList {"A"});
}

TEST(QLabProtocolGroups, TwoChildrenOfAnUnrunningGroupCollapseIntoOneRow)
{
    QLabCue first = cue("A", "Audio", "G", 8);
    first.actionElapsed = 3;
    first.duration = 20;
    first.sampledAt = at(9);
    QLabCue second = cue("B", "Audio", "G", 2);
    second.isPaused = true;
    QLabCue group = cue("G", "Group", "L", -50);
    group.actionElapsed = 40;
    group.duration = 90;
    group.sampledAt = at(-1);
    group.number = "7";

    const auto shown = QLabProtocol::collapseGroups({first, second}, known({group}));
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].id, "G");
    EXPECT_EQ(shown[0].number, "7");
    EXPECT_EQ(shown[0].startedAt, at(2));
    EXPECT_FALSE(shown[0].isPaused); // taken from the first child, which made the row
    EXPECT_FALSE(shown[0].actionElapsed.has_value());
    EXPECT_FALSE(shown[0].duration.has_value());
    EXPECT_FALSE(shown[0].sampledAt.has_value());
}

TEST(QLabProtocolGroups, RunningGroupStandsAsItsOwnEntry)
{
    QLabCue group = cue("G", "Group", std::nullopt, 1);
    group.actionElapsed = 5;
    group.sampledAt = at(6);
    const auto shown = QLabProtocol::collapseGroups(
        {cue("A", "Audio", "G", 4), group, cue("B", "Audio", "G", 0)},
        known({cue("G", "Group", std::nullopt, 99)}));
    EXPECT_EQ(shown, std::vector {group});
}

TEST(QLabProtocolGroups, RowsKeepFirstAppearanceOrder)
{
    const auto shown = QLabProtocol::collapseGroups(
        {cue("X", "Audio"), cue("A", "Audio", "G"), cue("Y", "Video"), cue("B", "Audio", "G"),
            cue("X", "Audio")},
        known({cue("G", "Group")}));
    EXPECT_EQ(ids(shown), (QStringList {"X", "G", "Y"}));
}

TEST(QLabProtocolGroups, FirstOfDuplicateRunningEntriesWins)
{
    QLabCue first = cue("G", "Group", std::nullopt, 3);
    first.name = "first";
    QLabCue second = cue("G", "Group", std::nullopt, 1);
    second.name = "second";
    const auto shown = QLabProtocol::collapseGroups({cue("A", "Audio", "G"), first, second}, {});
    EXPECT_EQ(shown, std::vector {first});
}

TEST(QLabProtocolGroups, RunningParentIsPreferredOverItsKnownCopy)
{
    QLabCue running = cue("G", "Group", std::nullopt, 4);
    running.name = "running";
    QLabCue stale = cue("G", "Group", "G0", 0);
    stale.name = "stale";
    const auto outer = QLabProtocol::outermostGroup(
        cue("A", "Audio", "G"), known({running}), known({stale, cue("G0", "Group")}));
    EXPECT_EQ(outer, running);
}

TEST(QLabProtocolGroups, GroupKnownOnlyByPropertiesCountsFromItsChild)
{
    QLabCue child = cue("A", "Audio", "G", 12);
    child.isPaused = true;
    QLabCue group = cue("G", "Group", std::nullopt, -100);
    group.duration = 3;
    const auto outer = QLabProtocol::outermostGroup(child, {}, known({group}));
    EXPECT_EQ(outer.id, "G");
    EXPECT_EQ(outer.startedAt, at(12));
    EXPECT_TRUE(outer.isPaused);
    EXPECT_FALSE(outer.duration.has_value());
}
