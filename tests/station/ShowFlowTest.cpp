// A whole show from the station: sessions opened and closed with their recording, names, the
// summary's warning, export, the library, and a quit in the middle of a show.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <csignal>
#include <vector>

#include "FakeCaptureBackend.h"
#include "common/IsoDate.h"
#include "recording/DiskSessionFiles.h"
#include "recording/RecordingFile.h"
#include "sessions/SessionArchive.h"
#include "station/AppModel.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using ostrel::testsupport::FakeCaptureBackend;

class ShowFlowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QSettings> store;

    QString sessionsFolder() const { return folder->filePath("Sessions"); }

    // A station whose shows go to a scratch "Sessions" folder; QLab stays off.
    std::unique_ptr<AppModel> make(AppModel::Mode mode, bool recordsSessions = true,
        std::optional<QString> sessions = std::nullopt)
    {
        store = std::make_unique<QSettings>(folder->filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        store->setValue("qlabEnabled", false);
        store->setValue("recordsSessions", recordsSessions);
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = {testsupport::device("mic", "Measurement Mic", 1)};
        return std::make_unique<AppModel>(mode, std::make_unique<AppSettings>(*store),
            std::move(fake), QLabClient::Timings {}, sessions.value_or(sessionsFolder()));
    }

    static QLabCue cue(const QString& number, const QString& name)
    {
        QLabCue result;
        result.id = QStringLiteral("cue-") + name;
        result.number = number;
        result.name = name;
        result.type = QStringLiteral("Audio");
        return result;
    }

    static std::optional<ShowSession> loadSession(const QString& path)
    {
        return SessionArchive::load(path, DiskSessionFiles());
    }

    // One second of a 1 kHz sine at -20 dBFS peak, in the pipeline's blocks of 20 ms.
    static void playTone(MeasurementPipeline& pipeline)
    {
        std::vector<float> block(960);
        for (int start = 0; start < 48000; start += 960) {
            for (int i = 0; i < 960; ++i)
                block[i] = 0.1f
                    * static_cast<float>(std::sin(2.0 * M_PI * 1000.0 * (start + i) / 48000.0));
            pipeline.process(block);
        }
    }

private slots:
    void init() { folder = std::make_unique<QTemporaryDir>(); }

    void aNameOfWhiteSpaceGivesTheDefaultNameAndANameLosesTheSpacesAroundIt()
    {
        auto model = make(AppModel::Mode::inert);
        model->startSession(" \t\n ");
        QVERIFY(
            model->sessions().activeSession()->name.startsWith(QString::fromUtf8("Show \u2013 ")));
        model->finishSession();
        model->startSession("  Opening Night \n");
        QCOMPARE(model->sessions().activeSession()->name, QString("Opening Night"));
    }

    void theDefaultNameIsTheDateInTheLocalesAbbreviatedStyle()
    {
        const Date noon = IsoDate::parse("2026-03-14T12:00:00.000Z").value();
        QCOMPARE(ShowSessions::defaultSessionName(
                     noon, QLocale(QLocale::English, QLocale::UnitedStates)),
            QString::fromUtf8("Show \u2013 Mar 14, 2026"));
        QCOMPARE(ShowSessions::defaultSessionName(noon, QLocale(QLocale::French, QLocale::France)),
            QString::fromUtf8("Show \u2013 14 mars 2026"));
    }

    void withoutRecordingASessionHasNoFolderNoMessageAndNoEarlySave()
    {
        auto model = make(AppModel::Mode::live, false);
        model->startSession("Matinee");
        QVERIFY(model->hasActiveSession());
        QVERIFY(!model->sessions().activeSession()->recordingFolderName);
        QVERIFY(!model->hasError());
        QVERIFY(!QDir(sessionsFolder()).exists()
            || QDir(sessionsFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).isEmpty());
    }

    void aRecordedSessionIsSavedAtOnceBesideItsRecording()
    {
        auto model = make(AppModel::Mode::live);
        model->startSession("Evening");
        const auto folderName = model->sessions().activeSession()->recordingFolderName;
        QVERIFY(folderName);
        QVERIFY(model->shows().isRecording());
        const QString recording = SessionArchive::recordingFolder(*folderName, sessionsFolder());
        const auto early = loadSession(recording + "/session.json");
        QVERIFY(early);
        QCOMPARE(early->name, QString("Evening"));
        QVERIFY(!early->end);
        QVERIFY(QFile::exists(recording + "/measurements.ostrel"));
        // So a show lost to a crash is still in the library.
        const auto listed = RecordingLibrary::scan(sessionsFolder());
        QCOMPARE(listed.size(), size_t(1));
        QCOMPARE(listed.front().folderName(), *folderName);
    }

    void aRecordingFolderThatCantBeMadeCostsOnlyTheRecording()
    {
        QTemporaryDir scratch;
        QFile occupied(scratch.filePath("occupied"));
        QVERIFY(occupied.open(QIODevice::WriteOnly));
        occupied.close();
        auto model = make(AppModel::Mode::live, true, scratch.filePath("occupied/Sessions"));
        model->startSession("Evening");
        QVERIFY(model->hasActiveSession());
        QVERIFY(!model->sessions().activeSession()->recordingFolderName);
        QCOMPARE(model->errorMessage(),
            QString("The session can't be recorded because its folder couldn't be created. Cues "
                    "and levels are still being logged."));
    }

    void requestingANewSessionDuringOneRaisesNoSheet()
    {
        auto model = make(AppModel::Mode::inert);
        model->startSession("Evening");
        model->requestNewSession();
        QVERIFY(!model->isPresentingNewSession());
        model->finishSession();
        model->requestNewSession();
        QVERIFY(model->isPresentingNewSession());
    }

    void finishingWithoutASessionChangesNothing()
    {
        auto model = make(AppModel::Mode::live);
        QVERIFY(!model->finishSession());
        QVERIFY(!model->recordingWarning());
        QTest::qWait(50);
        QVERIFY(!model->shows().library().hasLoaded());
    }

    void endingWithoutASessionPresentsNoSummary()
    {
        auto model = make(AppModel::Mode::inert);
        model->endSession();
        QVERIFY(!model->presentedSummary());
        model->startSession("Evening");
        model->endSession();
        QVERIFY(model->presentedSummary());
        QCOMPARE(model->presentedSummary()->name, QString("Evening"));
        QVERIFY(model->presentedSummary()->end);
    }

    void theSummarysWarningFollowsEitherStreamOfTheRecording()
    {
        using Outcome = SessionRecorder::Outcome;
        const QString warning("Part of the recording couldn't be saved. The disk may be full.");
        QCOMPARE(ShowSessions::warningFor(std::nullopt), std::optional<QString>());
        QCOMPARE(ShowSessions::warningFor(Outcome {false, false}), std::optional<QString>());
        QCOMPARE(ShowSessions::warningFor(Outcome {true, false}), std::optional(warning));
        QCOMPARE(ShowSessions::warningFor(Outcome {false, true}), std::optional(warning));
    }

    void aSoundFileThatCantBeWrittenEndsWithTheWarningAndKeepsCuesAndLevels()
    {
        auto model = make(AppModel::Mode::live);
        const Date start = std::chrono::system_clock::now();
        const QString name = SessionArchive::baseName(start);
        // The sound goes to a full device from its first byte; the frames still go to disk.
        const QString recording = SessionArchive::recordingFolder(name, sessionsFolder());
        QVERIFY(QDir().mkpath(recording));
        QVERIFY(QFile::link("/dev/full", recording + "/audio.aac"));
        model->shows().startSession("Evening", start);
        QCOMPARE(model->sessions().activeSession()->recordingFolderName, std::optional(name));
        model->qlab().simulate(
            QLabClientState::connected, QStringLiteral("Show"), {cue("1", "Overture")});
        playTone(*model->audio().pipeline());
        for (int i = 1; i <= 20; ++i)
            model->ingest(testsupport::steadyInterval(80.0), addingSeconds(start, 0.1 * i));
        model->endSession();
        QCOMPARE(model->recordingWarning(),
            std::optional<QString>(
                "Part of the recording couldn't be saved. The disk may be full."));
        QCOMPARE(model->presentedSummary()->cues.size(), size_t(1));
        QVERIFY(!model->presentedSummary()->levels.empty());
        // A later show without recording clears the warning.
        model->settings().sessions().setRecordsSessions(false);
        model->startSession("Late");
        model->endSession();
        QVERIFY(!model->recordingWarning());
    }

    void quittingDuringAShowFinishesTheRecordingAndArchivesTheEnd()
    {
        auto model = make(AppModel::Mode::live);
        QTRY_VERIFY(model->hasStarted());
        model->startSession("Evening");
        const auto folderName = *model->sessions().activeSession()->recordingFolderName;
        playTone(*model->audio().pipeline());
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection);
        QVERIFY(!model->hasActiveSession());
        QVERIFY(!model->shows().isRecording());
        QVERIFY(!model->presentedSummary()); // a quit shows no summary
        const QString recording = SessionArchive::recordingFolder(folderName, sessionsFolder());
        const auto archived = loadSession(recording + "/session.json");
        QVERIFY(archived);
        QVERIFY(archived->end);
        QVERIFY(QFileInfo(recording + "/audio.aac").size() > 0);
        QVERIFY(QFileInfo(recording + "/measurements.ostrel").size() > 32);
    }

    void quittingWithoutAShowLeavesTheAlertAlone()
    {
        auto model = make(AppModel::Mode::live);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection);
        QVERIFY(!model->hasError());
        QVERIFY(!model->presentedSummary());
    }

    void exportStaysPossibleAfterTheShowThroughTheLastSession()
    {
        auto model = make(AppModel::Mode::inert);
        QVERIFY(!model->canExport());
        model->startSession("Evening");
        QVERIFY(model->canExport());
        model->finishSession();
        QVERIFY(model->canExport());
    }

    void theProposedExportNameIsTheNameADashAndWhatItHolds()
    {
        ShowSession session;
        session.name = "Opening Night";
        QCOMPARE(ShowSessions::proposedExportName(session, false),
            QString::fromUtf8("Opening Night \u2013 Cues.csv"));
        QCOMPARE(ShowSessions::proposedExportName(session, true),
            QString::fromUtf8("Opening Night \u2013 Levels.csv"));
    }

    void anExportIsWrittenWholeAndAFailedOneRaisesTheAlert()
    {
        auto model = make(AppModel::Mode::inert);
        model->startSession("Evening");
        model->qlab().simulate(
            QLabClientState::connected, QStringLiteral("Show"), {cue("1", "Overture")});
        const auto session = model->finishSession();
        const QString path = folder->filePath("Evening - Cues.csv");
        QVERIFY(model->shows().exportCSV(*session, false, path, std::chrono::system_clock::now()));
        QFile written(path);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QVERIFY(written.readAll().contains("Overture"));
        QVERIFY(!model->hasError());

        QVERIFY(!model->shows().exportCSV(
            *session, false, folder->filePath("gone/x.csv"), std::chrono::system_clock::now()));
        QCOMPARE(model->errorMessage(),
            QString("The file couldn't be saved. Check that you have permission to save in that "
                    "location."));
    }

    void theCurrentCueLabelIsNumberAndNameOrTheNameAlone()
    {
        auto model = make(AppModel::Mode::inert);
        QVERIFY(!model->currentCueLabel());
        model->qlab().simulate(
            QLabClientState::connected, QStringLiteral("Show"), {cue("12", "Preshow")});
        QCOMPARE(model->currentCueLabel(), std::optional<QString>("12 Preshow"));
        model->qlab().simulate(
            QLabClientState::connected, QStringLiteral("Show"), {cue("", "Thunder")});
        QCOMPARE(model->currentCueLabel(), std::optional<QString>("Thunder"));
    }

    void selectingARecordingNamesItsFolder()
    {
        auto model = make(AppModel::Mode::inert);
        ShowSession session;
        session.recordingFolderName = "2026-03-14T19-30-05";
        model->selectRecording(session);
        QCOMPARE(model->selectedRecordingName(), std::optional<QString>("2026-03-14T19-30-05"));
    }

    void anEmptyOrMissingSessionsFolderStillLoadsTheLibrary()
    {
        RecordingLibrary missing(folder->filePath("nowhere"));
        QSignalSpy loaded(&missing, &RecordingLibrary::hasLoadedChanged);
        missing.refresh();
        QTRY_VERIFY(missing.hasLoaded());
        QVERIFY(missing.recordings().empty());
        QVERIFY(QDir().mkpath(folder->filePath("empty")));
        RecordingLibrary empty(folder->filePath("empty"));
        empty.refresh();
        QTRY_VERIFY(empty.hasLoaded());
        QVERIFY(empty.recordings().empty());
    }

    void aRecordingMovedToTheBinLeavesTheListAtOnce()
    {
        // The bin of a scratch home, on the same disk as the recordings. The folder must be
        // there: without it Qt makes the bin in the working directory.
        const QString data = folder->filePath("data");
        QVERIFY(QDir().mkpath(data));
        qputenv("XDG_DATA_HOME", data.toUtf8());
        auto model = make(AppModel::Mode::live);
        model->startSession("Gone Soon");
        model->finishSession();
        RecordingLibrary& library = model->shows().library();
        QTRY_VERIFY(library.hasLoaded());
        QCOMPARE(library.recordings().size(), size_t(1));
        const Recording recording = library.recordings().front();
        QCOMPARE(library.moveToTrash(recording), std::optional<QString>());
        QVERIFY(library.recordings().empty());
        QVERIFY(!QFileInfo::exists(recording.folder));
        const QString binned = data + "/Trash/files/" + QFileInfo(recording.folder).fileName();
        QVERIFY2(QFileInfo(binned + "/session.json").exists(), qPrintable(binned));
        QVERIFY(QFileInfo::exists(
            data + "/Trash/info/" + QFileInfo(recording.folder).fileName() + ".trashinfo"));
        QVERIFY(library.moveToTrash(recording).has_value()); // nothing left to move
        qunsetenv("XDG_DATA_HOME");
    }

    void aStationKilledMidShowLeavesTheShowListedWithItsFrames()
    {
        QProcess station;
        station.start(
            QStringLiteral(OSTREL_SHOW_WRITER), {sessionsFolder(), folder->filePath("writer.ini")});
        QVERIFY(station.waitForStarted());
        QByteArray said;
        QTRY_VERIFY_WITH_TIMEOUT((said += station.readAllStandardOutput()).contains('\n'), 20000);
        QVERIFY2(said.startsWith("ready "), said.constData());
        const int framesBeforeTheKill = said.mid(6).trimmed().toInt();
        QVERIFY(framesBeforeTheKill > 0);
        ::kill(static_cast<pid_t>(station.processId()), SIGKILL);
        QVERIFY(station.waitForFinished());
        QCOMPARE(station.exitStatus(), QProcess::CrashExit);

        const auto listed = RecordingLibrary::scan(sessionsFolder());
        QCOMPARE(listed.size(), size_t(1));
        QCOMPARE(listed.front().session.name, QString("Killed Show"));
        QVERIFY(!listed.front().session.end);
        QVERIFY(listed.front().hasMeasurements);
        const auto frames = RecordingFile::open(listed.front().framesPath()).frames;
        QVERIFY(frames);
        QVERIFY2(frames->count() >= framesBeforeTheKill,
            qPrintable(QStringLiteral("%1 frames on disk, %2 made")
                           .arg(frames->count())
                           .arg(framesBeforeTheKill)));
    }

    void aDiskThatFillsUpDuringAShowEndsWithTheWarningAndKeepsCuesAndLevels()
    {
        // Ten seconds of sound are well past the limit; the frames and the session stay under it.
        const qint64 limit = 80 * 1024;
        QProcess station;
        station.start(QStringLiteral(OSTREL_SHOW_WRITER),
            {sessionsFolder(), folder->filePath("writer.ini"), QString::number(limit)});
        QVERIFY(station.waitForStarted());
        QVERIFY(station.waitForFinished(60000));
        QCOMPARE(station.exitStatus(), QProcess::NormalExit);
        QCOMPARE(station.exitCode(), 0);
        const QStringList said
            = QString::fromUtf8(station.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(said.value(0),
            QString("warning=Part of the recording couldn't be saved. The disk may be full."));
        // One level a second of the ten.
        QVERIFY2(said.value(1).startsWith("cues=1 levels="), qPrintable(said.value(1)));
        const auto levels = static_cast<std::size_t>(said.value(1).section('=', 2).toInt());
        QVERIFY2(levels >= 9, qPrintable(said.value(1)));

        const auto listed = RecordingLibrary::scan(sessionsFolder());
        QCOMPARE(listed.size(), size_t(1));
        const Recording& recording = listed.front();
        QCOMPARE(recording.session.name, QString("Full Disk"));
        QVERIFY(recording.session.end);
        QCOMPARE(recording.session.cues.size(), size_t(1));
        QCOMPARE(recording.session.cues.front().name, QString("Overture"));
        QCOMPARE(recording.session.levels.size(), levels);
        QVERIFY(QFileInfo(recording.folder + "/audio.aac").size() <= limit);
        const auto frames = RecordingFile::open(recording.framesPath()).frames;
        QVERIFY(frames);
        QCOMPARE(frames->count(), 100);
    }

    void theLibraryListsAFinishedShowNewestFirst()
    {
        auto model = make(AppModel::Mode::live);
        model->startSession("First");
        model->finishSession();
        QTRY_VERIFY(model->shows().library().hasLoaded());
        QCOMPARE(model->shows().library().recordings().size(), size_t(1));
        QCOMPARE(model->shows().library().recordings().front().session.name, QString("First"));
        QVERIFY(model->shows().library().recordings().front().hasMeasurements);
    }
};

QTEST_GUILESS_MAIN(ShowFlowTest)
#include "ShowFlowTest.moc"
