// ostrel-analyze records an audio file into a folder as the station records a show: a session
// file, the sound as AAC and the measurement frames, which replay and export then read.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <variant>

#include <QDir>
#include <QFile>

#include "audio/AudioFileDecoder.h"
#include "measurement/SPLMath.h"
#include "ostrel-analyze/AnalyzeOptions.h"
#include "recording/DiskSessionFiles.h"
#include "recording/RecordingFile.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"
#include "sessions/SessionArchive.h"
#include "tools/AnalyzerProcess.h"
#include "tools/TestAudioFiles.h"

using namespace ostrel;
using namespace ostrel::analyze;
using namespace ostrel::testing;

namespace {

constexpr int rate = 48000;
constexpr double amplitude = 0.1;

std::filesystem::path threeSecondTone()
{
    const auto wav = fixturePath("tone.wav");
    writeWav(wav, sine(1000.0, amplitude, rate, 3 * rate), 1, rate, WavEncoding::float32);
    return wav;
}

// A folder of this test's own, empty: fixtures stay in the build tree between runs.
std::filesystem::path freshFolder(const std::string& name)
{
    const auto folder = fixturePath(name);
    std::filesystem::remove_all(folder);
    return folder;
}

QString path(const std::filesystem::path& value)
{
    return QString::fromStdString(value.string());
}

} // namespace

TEST(AnalyzeRecordOptionsTest, RecordTakesAFolder)
{
    const std::vector<std::string_view> arguments {"show.wav", "--record", "out/show"};
    const auto parsed = parseCommandLine(arguments);
    ASSERT_TRUE(std::holds_alternative<AnalyzeOptions>(parsed));
    EXPECT_EQ(std::get<AnalyzeOptions>(parsed).recordFolder, "out/show");
    const std::vector<std::string_view> empty {"show.wav", "--record="};
    EXPECT_TRUE(std::holds_alternative<OptionError>(parseCommandLine(empty)));
}

TEST(AnalyzeRecordTest, AFileBecomesARecordedShowWithSessionSoundAndFrames)
{
    const auto wav = threeSecondTone();
    const auto folder = freshFolder("recorded") / "Evening";
    const auto run
        = runAnalyzer({wav.string(), "--record", folder.string(), "--weighting", "Z", "--summary"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    // Rows are not printed; the summary is.
    EXPECT_EQ(run.out.rfind("# summary leq=-23.01", 0), 0u) << run.out;

    const auto frames = RecordingFile::open(path(folder / RecordingFormat::framesFileName)).frames;
    ASSERT_TRUE(frames);
    ASSERT_EQ(frames->count(), 30);
    EXPECT_NEAR(*frames->audioTime(0), 0.1, 1e-9);
    EXPECT_NEAR(*frames->audioTime(29), 3.0, 1e-9);
    // Stamped on the file's clock, so wall time and audio time agree.
    EXPECT_NEAR(*frames->wallTime(29), 3.0, 1e-6);
    const auto last = frames->frame(29, true);
    ASSERT_TRUE(last);
    EXPECT_NEAR(last->interval.level, SPLMath::decibelsOfAmplitude(amplitude) - 3.0103, 0.01);
    EXPECT_TRUE(last->interval.spectrum.has_value());

    const auto session = SessionArchive::load(path(folder / "session.json"), DiskSessionFiles());
    ASSERT_TRUE(session);
    // Named after the file.
    EXPECT_EQ(session->name, QString::fromStdString(wav.stem().string()));
    EXPECT_EQ(session->meterSetting, "Z / Fast");
    EXPECT_EQ(session->recordingFolderName, QStringLiteral("Evening"));
    ASSERT_TRUE(session->end);
    EXPECT_NEAR(secondsBetween(session->start, *session->end), 3.0, 1e-6);
    EXPECT_EQ(session->levels.size(), 2u);
    EXPECT_NEAR(session->statistics.leq().value(), -23.01, 0.01);

    AudioFileDecoder::quietLibraryLog();
    auto opened = AudioFileDecoder::open((folder / RecordingFormat::audioFileName).string());
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<AudioFileDecoder>>(opened));
    auto& decoder = *std::get<std::unique_ptr<AudioFileDecoder>>(opened);
    EXPECT_EQ(decoder.sampleRate(), rate);
    std::vector<float> samples;
    std::vector<float> chunk;
    while (decoder.read(chunk, 4800) > 0)
        samples.insert(samples.end(), chunk.begin(), chunk.end());
    // The encoder's priming comes first; the whole tone follows it.
    EXPECT_GE(samples.size(), static_cast<std::size_t>(3 * rate));
    double energy = 0.0;
    for (std::size_t i = rate; i < 2 * static_cast<std::size_t>(rate); ++i)
        energy += static_cast<double>(samples[i]) * samples[i];
    EXPECT_NEAR(
        10.0 * std::log10(energy / rate), SPLMath::decibelsOfAmplitude(amplitude) - 3.0103, 0.2);
}

TEST(AnalyzeRecordTest, AFolderThatAlreadyHoldsARecordingIsLeftAlone)
{
    const auto wav = threeSecondTone();
    const auto folder = freshFolder("taken");
    std::filesystem::create_directories(folder);
    {
        QFile existing(path(folder / "session.json"));
        ASSERT_TRUE(existing.open(QIODevice::WriteOnly));
        existing.write("{}");
    }
    const auto run = runAnalyzer({wav.string(), "--record", folder.string()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("already holds a recording"), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(folder / RecordingFormat::framesFileName));
    QFile kept(path(folder / "session.json"));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), "{}");
}

TEST(AnalyzeRecordTest, AnUnreadableFileMakesNoFolder)
{
    const auto folder = freshFolder("never");
    const auto run
        = runAnalyzer({fixturePath("missing.wav").string(), "--record", folder.string()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST(AnalyzeRecordTest, ARecordedShowExportsItsLevelLog)
{
    const auto wav = threeSecondTone();
    const auto folder = freshFolder("exported");
    ASSERT_EQ(runAnalyzer({wav.string(), "--record", folder.string()}).exitStatus, 0);
    const auto run = runAnalyzer({"--export-levels", "-", folder.string()});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.out.rfind("Time,Leq 1s (dB),Max (dB)\r\n", 0), 0u);
    // Two whole seconds of log in three seconds of file; A-weighted 1 kHz reads as Z.
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 3);
    EXPECT_NE(run.out.find(",-23.0,-23.0\r\n"), std::string::npos) << run.out;
}
