// Without a system bus the link can't announce or find anyone: it says so in plain words while
// the station is in a crew, and nothing while it stands alone.
#include <QSignalSpy>
#include <QTest>

#include "crew/CrewLink.h"

using namespace ostrel;

class CrewNoDaemonTest : public QObject {
    Q_OBJECT

private slots:
    void aPrimaryWithoutADaemonSaysSecondariesCantFindIt()
    {
        CrewLink link;
        QVERIFY(link.problem().isEmpty());
        QSignalSpy changed(&link, &CrewLink::problemChanged);
        link.configure(CrewRole::primary, QStringLiteral("FOH"), QString());
        QTRY_VERIFY(!link.problem().isEmpty());
        QVERIFY2(link.problem().startsWith("Secondaries can't find this computer: "),
            qPrintable(link.problem()));
        QCOMPARE(link.statusKind(), CrewLink::StatusKind::sharing);
        link.configure(CrewRole::standalone, QStringLiteral("FOH"), QString());
        QVERIFY(link.problem().isEmpty());
        QCOMPARE(changed.count(), 2);
    }

    void aSecondaryWithoutADaemonSaysThePrimaryCantBeFound()
    {
        CrewLink link;
        link.configure(CrewRole::secondary, QStringLiteral("Backstage"), QString());
        QTRY_VERIFY(!link.problem().isEmpty());
        QVERIFY2(
            link.problem().startsWith("The primary can't be found: "), qPrintable(link.problem()));
        QCOMPARE(link.statusKind(), CrewLink::StatusKind::searching);
    }

    void aDaemonThatIsNotRunningIsNamedAsSuch()
    {
        QCOMPARE(CrewLink::problemText(CrewRole::secondary, "Daemon not running"),
            QString("The primary can't be found: the Avahi daemon isn't running."));
        QCOMPARE(CrewLink::problemText(CrewRole::primary, "Access denied"),
            QString("Secondaries can't find this computer: Access denied."));
    }
};

QTEST_GUILESS_MAIN(CrewNoDaemonTest)
#include "CrewNoDaemonTest.moc"
