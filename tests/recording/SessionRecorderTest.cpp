#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "exposure/ExposureFormat.h"
#include "measurement/MeasurementPipeline.h"
#include "recording/RecordingFile.h"
#include "recording/RecordingSignals.h"
#include "recording/SessionRecorder.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"
#include "support/AllocationCounter.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

class SessionRecorderTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(temporary_.isValid()); }

    QString folder(const QString& name = "2026-03-14T19-30-05") const
    {
        return temporary_.filePath(name);
    }

    static std::shared_ptr<SessionRecorder> make(const QString& path, bool recordsAudio = true)
    {
        auto created = SessionRecorder::create(path, sessionStart(), recordsAudio);
        if (const QString* failure = std::get_if<QString>(&created)) {
            ADD_FAILURE() << "can't record: " << failure->toStdString();
            return nullptr;
        }
        return std::get<std::shared_ptr<SessionRecorder>>(created);
    }

    static RecordingFrames framesIn(const QString& path)
    {
        auto frames
            = RecordingFile::open(QDir(path).filePath(RecordingFormat::framesFileName)).frames;
        EXPECT_TRUE(frames.has_value());
        return frames ? std::move(*frames) : *RecordingFrames::fromBytes(RecordingFormat::header());
    }

    static QString audioPath(const QString& path)
    {
        return QDir(path).filePath(RecordingFormat::audioFileName);
    }

    QTemporaryDir temporary_;
};

struct LogCapture {
    LogCapture() { previous = qInstallMessageHandler(&LogCapture::handle); }
    ~LogCapture() { qInstallMessageHandler(previous); }
    static void handle(QtMsgType, const QMessageLogContext& context, const QString& message)
    {
        lines().append(QString::fromUtf8(context.category) + ": " + message);
    }
    static QStringList& lines()
    {
        static QStringList captured;
        return captured;
    }
    QtMessageHandler previous;
};

} // namespace

TEST_F(SessionRecorderTest, CreationMakesTheFolderWithItsParentsAndWritesTheHeader)
{
    const QString nested = folder("Sessions/deeper/2026-03-14T19-30-05");
    auto recorder = make(nested);
    ASSERT_TRUE(recorder);
    EXPECT_EQ(recorder->folder(), nested);
    EXPECT_EQ(recorder->sessionStart(), sessionStart());
    EXPECT_TRUE(recorder->recordsAudio());

    QFile file(QDir(nested).filePath(RecordingFormat::framesFileName));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), RecordingFormat::header());
    EXPECT_FALSE(QFileInfo::exists(audioPath(nested)))
        << "the audio file waits for the first block";
}

TEST_F(SessionRecorderTest, CreationFailsWhenTheFolderCannotBeMade)
{
    QFile blocker(folder("plain-file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    auto created = SessionRecorder::create(folder("plain-file/session"), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<QString>(created));
    EXPECT_FALSE(std::get<QString>(created).isEmpty());
}

TEST_F(SessionRecorderTest, CreationFailsWhenTheHeaderCannotBeWritten)
{
    ASSERT_TRUE(QDir().mkpath(QDir(folder()).filePath(RecordingFormat::framesFileName)));
    auto created = SessionRecorder::create(folder(), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<QString>(created));
    EXPECT_FALSE(std::get<QString>(created).isEmpty());
}

TEST_F(SessionRecorderTest, FramesHoldTheAudioTimeAtTheEndOfTheirBlockAndTheWallTimeSinceTheStart)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = sine(2400, 48000.0, 1000.0, 0.1f);
    std::vector<MeasurementInterval> sent;
    for (int i = 0; i < 8; ++i) {
        std::optional<MeasurementInterval> closed;
        if (i % 2 == 1) closed = sent.emplace_back(interval(4800, 48000.0, 70.0 + i));
        // Wall time deliberately runs ahead of the audio, as it does when the device starts late.
        recorder->append(
            block, 48000.0, closed, addingSeconds(sessionStart(), 0.5 + 0.05 * (i + 1)));
    }
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});

    const RecordingFrames frames = framesIn(folder());
    ASSERT_EQ(frames.count(), 4);
    for (qsizetype i = 0; i < frames.count(); ++i) {
        const auto frame = frames.frame(i, true);
        ASSERT_TRUE(frame.has_value());
        const double blockEnd = 0.1 * static_cast<double>(i + 1);
        EXPECT_NEAR(frame->audioTime, blockEnd, 1e-12);
        EXPECT_NEAR(frame->wallTime, 0.5 + blockEnd, 1e-6);
        EXPECT_EQ(frame->interval.sampleCount, 4800);
        EXPECT_EQ(frame->interval.level, sent[static_cast<std::size_t>(i)].level);
        ASSERT_TRUE(frame->interval.spectrum.has_value());
        EXPECT_EQ(frame->interval.spectrum->bandLevels,
            sent[static_cast<std::size_t>(i)].spectrum->bandLevels);
    }
    EXPECT_NEAR(frames.duration(), 0.4, 1e-12);
}

TEST_F(SessionRecorderTest, BlocksWithoutAnIntervalAdvanceTheAudioTimeButWriteNoFrame)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = silence(960);
    for (int i = 0; i < 5; ++i)
        recorder->append(block, 48000.0, std::nullopt, sessionStart());
    recorder->append(block, 48000.0, interval(5760, 48000.0, 60.0), sessionStart());
    recorder->waitUntilWritten();
    EXPECT_NEAR(recorder->state().audioSeconds, 0.12, 1e-12);
    recorder->finish();
    const RecordingFrames frames = framesIn(folder());
    ASSERT_EQ(frames.count(), 1);
    EXPECT_NEAR(*frames.audioTime(0), 0.12, 1e-12);
}

TEST_F(SessionRecorderTest, ABlockWhoseSampleRateIsNotAboveZeroIsIgnored)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = silence(960);
    recorder->append(block, 0.0, interval(960, 48000.0, 60.0), sessionStart());
    recorder->append(block, -48000.0, interval(960, 48000.0, 60.0), sessionStart());
    recorder->waitUntilWritten();
    const SessionRecorder::StateSnapshot state = recorder->state();
    EXPECT_EQ(state.audioSeconds, 0.0);
    EXPECT_FALSE(state.fileSampleRate.has_value());
    EXPECT_FALSE(state.hasAudioFile);
    recorder->finish();
    EXPECT_EQ(framesIn(folder()).count(), 0);
    EXPECT_FALSE(QFileInfo::exists(audioPath(folder())));
}

TEST_F(SessionRecorderTest,
    ABlockWithAnIntervalWhileAudioHasFailedStillAdvancesTheAudioTimeAndGetsAFrame)
{
    // A folder where the audio file should be: opening it fails at the first block.
    ASSERT_TRUE(QDir().mkpath(audioPath(folder())));
    LogCapture log;
    LogCapture::lines().clear();
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = sine(4800, 48000.0, 440.0, 0.2f);
    for (int i = 0; i < 3; ++i) {
        recorder->append(block, 48000.0, interval(4800, 48000.0, 65.0), sessionStart());
    }
    recorder->waitUntilWritten();
    const SessionRecorder::StateSnapshot state = recorder->state();
    EXPECT_TRUE(state.outcome.audioFailed);
    EXPECT_FALSE(state.outcome.measurementsFailed);
    EXPECT_NEAR(state.audioSeconds, 0.3, 1e-12);

    const SessionRecorder::Outcome outcome = recorder->finish();
    EXPECT_TRUE(outcome.audioFailed);
    EXPECT_FALSE(outcome.measurementsFailed);
    const RecordingFrames frames = framesIn(folder());
    ASSERT_EQ(frames.count(), 3);
    EXPECT_NEAR(*frames.audioTime(2), 0.3, 1e-12);

    ASSERT_EQ(LogCapture::lines().size(), 1) << "the failure is logged once, not per block";
    EXPECT_TRUE(
        LogCapture::lines().front().startsWith("ostrel.recording: Audio recording stopped: "))
        << LogCapture::lines().front().toStdString();
}

TEST_F(SessionRecorderTest, AFailedAudioFileIsNotTriedAgainForLaterBlocks)
{
    ASSERT_TRUE(QDir().mkpath(audioPath(folder())));
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = silence(4800);
    recorder->append(block, 48000.0, std::nullopt, sessionStart());
    recorder->waitUntilWritten();
    ASSERT_TRUE(QDir(audioPath(folder())).removeRecursively());
    for (int i = 0; i < 4; ++i)
        recorder->append(block, 48000.0, std::nullopt, sessionStart());
    EXPECT_TRUE(recorder->finish().audioFailed);
    EXPECT_FALSE(QFileInfo::exists(audioPath(folder())));
}

TEST_F(SessionRecorderTest, WithoutAudioOnlyTheMeasurementsAreWritten)
{
    auto recorder = make(folder(), false);
    ASSERT_TRUE(recorder);
    const std::vector<float> block = sine(4800, 48000.0, 440.0, 0.2f);
    for (int i = 0; i < 5; ++i) {
        recorder->append(block, 48000.0, interval(4800, 48000.0, 65.0), sessionStart());
    }
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});
    EXPECT_FALSE(QFileInfo::exists(audioPath(folder())));
    const RecordingFrames frames = framesIn(folder());
    EXPECT_EQ(frames.count(), 5);
    EXPECT_NEAR(frames.duration(), 0.5, 1e-12);
}

TEST_F(SessionRecorderTest, FinishWaitsForEveryBlockAppendedBeforeIt)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> signal = busySignal(48000 * 10, 48000.0);
    const int intervals = feed(*recorder, signal, Feed {48000.0, 1, 0, 960});
    ASSERT_EQ(intervals, 100);
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});
    const SessionRecorder::StateSnapshot state = recorder->state();
    EXPECT_TRUE(state.isFinished);
    EXPECT_FALSE(state.hasFrames);
    EXPECT_FALSE(state.hasAudioFile);
    EXPECT_NEAR(state.audioSeconds, 10.0, 1e-9);
    const RecordingFrames frames = framesIn(folder());
    EXPECT_EQ(frames.count(), 100);
    EXPECT_NEAR(frames.duration(), 10.0, 1e-9);
    const Decoded audio = decode(audioPath(folder()));
    EXPECT_TRUE(audio.error.isEmpty()) << audio.error.toStdString();
    EXPECT_GE(audio.samples.size(), 480000u) << "the end of the show is not cut off";
}

TEST_F(SessionRecorderTest, AppendsAfterFinishAreIgnored)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = silence(4800);
    recorder->append(block, 48000.0, interval(4800, 48000.0, 60.0), sessionStart());
    const SessionRecorder::Outcome first = recorder->finish();
    const qint64 framesSize
        = QFileInfo(QDir(folder()).filePath(RecordingFormat::framesFileName)).size();
    const qint64 audioSize = QFileInfo(audioPath(folder())).size();

    recorder->append(block, 48000.0, interval(4800, 48000.0, 60.0), sessionStart());
    recorder->waitUntilWritten();
    EXPECT_EQ(recorder->finish(), first) << "a second finish gives the same outcome";
    EXPECT_NEAR(recorder->state().audioSeconds, 0.1, 1e-12);
    EXPECT_EQ(
        QFileInfo(QDir(folder()).filePath(RecordingFormat::framesFileName)).size(), framesSize);
    EXPECT_EQ(QFileInfo(audioPath(folder())).size(), audioSize);
}

TEST_F(SessionRecorderTest, BlocksReachTheFilesInTheOrderOfAppendEvenWhenTheQueueSpillsOver)
{
    auto created = SessionRecorder::create(folder(), sessionStart(), true, {2000, 2});
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<SessionRecorder>>(created));
    auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);
    const std::vector<float> block = silence(960);
    for (int i = 0; i < 300; ++i) {
        recorder->append(block, 48000.0, interval(960, 48000.0, 50.0 + i % 50),
            addingSeconds(sessionStart(), 0.02 * (i + 1)));
    }
    recorder->finish();
    const RecordingFrames frames = framesIn(folder());
    ASSERT_EQ(frames.count(), 300);
    for (qsizetype i = 0; i < frames.count(); ++i) {
        const auto frame = frames.frame(i, false);
        ASSERT_TRUE(frame.has_value());
        EXPECT_NEAR(frame->audioTime, 0.02 * static_cast<double>(i + 1), 1e-9);
        EXPECT_NEAR(frame->wallTime, 0.02 * static_cast<double>(i + 1), 1e-6);
        EXPECT_EQ(frame->interval.level, 50.0 + static_cast<double>(i % 50));
    }
}

TEST_F(SessionRecorderTest, AppendOnTheAudioThreadOnlyCopiesAndDoesNotAllocate)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    const std::vector<float> block = sine(960, 48000.0, 440.0, 0.2f);
    const std::optional<MeasurementInterval> closed = interval(4800, 48000.0, 60.0);
    std::size_t allocations = 0;
    {
        const testsupport::AllocationCounter counter;
        for (int i = 0; i < 50; ++i) {
            recorder->append(block, 48000.0, i % 5 == 4 ? closed : std::nullopt, sessionStart());
        }
        allocations = counter.count();
    }
    EXPECT_EQ(allocations, 0u);
    recorder->finish();
    EXPECT_EQ(framesIn(folder()).count(), 10);
}

TEST_F(SessionRecorderTest, ThePipelineHandsItsBlocksAndIntervalsToTheRecorder)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    Date now = sessionStart();
    auto pipeline = std::make_shared<MeasurementPipeline>([&now] { return now; });
    pipeline->prepare(48000.0);
    pipeline->setRecorder(recorder);
    const std::vector<float> signal = sine(48000, 48000.0, 1000.0, 0.3f);
    for (std::size_t position = 0; position < signal.size(); position += 960) {
        now = addingSeconds(sessionStart(), static_cast<double>(position + 960) / 48000.0 + 0.25);
        pipeline->process(std::span<const float>(signal).subspan(position, 960));
    }
    pipeline->setRecorder(nullptr);
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});
    const RecordingFrames frames = framesIn(folder());
    ASSERT_EQ(frames.count(), 10);
    for (qsizetype i = 0; i < frames.count(); ++i) {
        EXPECT_NEAR(*frames.audioTime(i), 0.1 * static_cast<double>(i + 1), 1e-9);
        EXPECT_NEAR(*frames.wallTime(i), 0.1 * static_cast<double>(i + 1) + 0.25, 1e-6);
    }
    const auto last = frames.frame(9, true);
    ASSERT_TRUE(last.has_value());
    EXPECT_EQ(last->interval.sampleCount, 4800);
    EXPECT_TRUE(last->interval.spectrum.has_value());
}

TEST_F(SessionRecorderTest, WritingRunsOnAWorkerThreadNamedAfterTheQueue)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    recorder->append(silence(960), 48000.0, std::nullopt, sessionStart());
    recorder->waitUntilWritten();
    const QString shortName = QString::fromLatin1(SessionRecorder::queueLabel).left(15);
    bool found = false;
    for (const QString& task :
        QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(QStringLiteral("/proc/self/task/%1/comm").arg(task));
        if (comm.open(QIODevice::ReadOnly) && comm.readAll().trimmed() == shortName.toLatin1()) {
            found = true;
        }
    }
    EXPECT_TRUE(found) << shortName.toStdString();
}

TEST_F(SessionRecorderTest, ThePipelineWithARecorderAttachedDoesNotAllocatePerBlock)
{
    auto recorder = make(folder());
    ASSERT_TRUE(recorder);
    MeasurementPipeline pipeline([this] { return sessionStart(); });
    pipeline.prepare(48000.0);
    pipeline.setRecorder(recorder);
    const std::vector<float> signal = sine(48000, 48000.0, 1000.0, 0.3f);
    // A first second fills the analyser, so that every later interval carries a spectrum.
    for (std::size_t position = 0; position < signal.size(); position += 960)
        pipeline.process(std::span<const float>(signal).subspan(position, 960));
    std::size_t allocations = 0;
    {
        const testsupport::AllocationCounter counter;
        for (std::size_t position = 0; position < signal.size(); position += 960)
            pipeline.process(std::span<const float>(signal).subspan(position, 960));
        allocations = counter.count();
    }
    EXPECT_EQ(allocations, 0u);
    pipeline.setRecorder(nullptr);
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});
    EXPECT_EQ(framesIn(folder()).count(), 20);
}

TEST_F(SessionRecorderTest, EachIntervalLeavesAnExposureFrameWithTheProfileInForce)
{
    auto recorder = make(folder(), false);
    ASSERT_TRUE(recorder);
    const std::vector<float> block = sine(4800, 48000.0, 1000.0, 0.1f);
    MeasurementInterval closed = interval(4800, 48000.0, 80.0);
    closed.exposureEnergy = 3.0e9 * 4800;
    closed.exposurePeakPower = 2.0e11;
    recorder->append(block, 48000.0, closed, sessionStart());
    recorder->waitUntilWritten();
    recorder->setExposureProfile(ExposureProfile::builtIn(ExposureProfileKind::din));
    recorder->append(block, 48000.0, closed, sessionStart());
    recorder->append(block, 48000.0, std::nullopt, sessionStart());
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});

    QFile file(QDir(folder()).filePath(ExposureFormat::fileName));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    ASSERT_EQ(ExposureFormat::frameCount(bytes), 2u);
    const auto first = ExposureFormat::decode(bytes, 0);
    const auto second = ExposureFormat::decode(bytes, 1);
    ASSERT_TRUE(first && second);
    EXPECT_NEAR(first->audioTime, 0.1, 1e-12);
    EXPECT_NEAR(second->audioTime, 0.2, 1e-12);
    // Mean square times seconds: the energy over the sample rate.
    EXPECT_NEAR(first->sample.energyTime, 3.0e9 * 0.1, 1e-3);
    EXPECT_NEAR(first->sample.duration, 0.1, 1e-12);
    EXPECT_EQ(first->sample.cPeakPower, 2.0e11);
    EXPECT_EQ(first->profile.kind, ExposureProfileKind::who);
    EXPECT_EQ(second->profile, ExposureProfile::builtIn(ExposureProfileKind::din));
}

TEST_F(SessionRecorderTest, AnExposureFileThatCannotBeMadeFailsTheCreation)
{
    ASSERT_TRUE(QDir().mkpath(QDir(folder()).filePath(ExposureFormat::fileName)));
    auto created = SessionRecorder::create(folder(), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<QString>(created));
    EXPECT_FALSE(std::get<QString>(created).isEmpty());
}
