// The audio input's device choice, fall-backs, restarts and states, over a scripted backend.
#include <QSignalSpy>
#include <QTest>
#include <cstddef>

#include "FakeCaptureBackend.h"
#include "audio/AudioInput.h"
#include "support/AllocationCounter.h"

using namespace ostrel;
using ostrel::testsupport::device;
using ostrel::testsupport::FakeCaptureBackend;

class AudioInputTest : public QObject {
    Q_OBJECT

private:
    static constexpr int delay = 20;
    FakeCaptureBackend* backend = nullptr;
    std::unique_ptr<AudioInput> input;

    void make(std::vector<AudioInputDevice> devices)
    {
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = std::move(devices);
        backend = fake.get();
        input = std::make_unique<AudioInput>(std::move(fake));
        input->setRestartDelay(delay);
    }

private slots:
    void cleanup() { input.reset(); }

    void unpluggedStoredDeviceIsUnavailableAndComesBackWithTheSameChannel()
    {
        make({device("usb", "USB Interface", 4), device("builtin", "Built-in", 2)});
        input->start("usb", 3);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->measuredChannel(), 3);

        backend->devices.erase(backend->devices.begin());
        backend->announceDeviceChange();
        QTRY_COMPARE(input->status(), AudioInput::Status::deviceUnavailable);
        QVERIFY(!input->activeDevice());
        QVERIFY(!backend->running);

        backend->devices.push_back(device("usb", "USB Interface", 4));
        backend->announceDeviceChange();
        QCOMPARE(input->status(), AudioInput::Status::deviceUnavailable); // not before the delay
        QTRY_COMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->activeDevice()->uid, QString("usb"));
        QCOMPARE(input->measuredChannel(), 3);
    }

    void aChannelBeyondTheNewDeviceFallsBackToItsLastChannel()
    {
        make({device("eight", "Eight", 8), device("two", "Two", 2)});
        input->start("eight", 7);
        QCOMPARE(input->measuredChannel(), 7);
        input->select("two", 7);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->measuredChannel(), 1);
        QCOMPARE(input->channelCount(), 2);
    }

    void twoQuickDeviceEventsGiveOneRestart()
    {
        make({device("builtin", "Built-in", 2)});
        input->start("usb", 0);
        QCOMPARE(input->status(), AudioInput::Status::deviceUnavailable);
        const int before = input->restartCount();
        backend->devices.push_back(device("usb", "USB", 2));
        backend->announceDeviceChange();
        QTest::qWait(delay / 4);
        backend->announceDeviceChange();
        QTRY_COMPARE(input->status(), AudioInput::Status::running);
        QTest::qWait(delay * 3);
        QCOMPARE(input->restartCount(), before + 1);
        QCOMPARE(backend->starts, 1);
    }

    void refusedPermissionIgnoresDeviceEvents()
    {
        make({device("builtin", "Built-in", 2)});
        backend->permission = false;
        input->start("", 0);
        QCOMPARE(input->status(), AudioInput::Status::permissionDenied);
        backend->devices.push_back(device("usb", "USB", 2));
        backend->announceDeviceChange();
        QTest::qWait(delay * 3);
        QCOMPARE(input->status(), AudioInput::Status::permissionDenied);
        QCOMPARE(input->restartCount(), 0);
        QCOMPARE(backend->starts, 0);
        input->select("usb", 1);
        QCOMPARE(backend->starts, 0);
    }

    void selectingTheSameDeviceAndChannelDoesNotRestart()
    {
        make({device("builtin", "Built-in", 2)});
        input->start("builtin", 1);
        input->select("builtin", 1);
        QCOMPARE(backend->starts, 1);
        QCOMPARE(input->restartCount(), 1);
        input->select("builtin", 0);
        QCOMPARE(backend->starts, 2);
    }

    void settingThePresentSampleRateDoesNothing()
    {
        make({device("builtin", "Built-in", 2, 48000.0)});
        input->start("", 0);
        input->setSampleRate(48000.0);
        QCOMPARE(backend->starts, 1);
        input->setSampleRate(12345.0); // not offered
        QCOMPARE(backend->starts, 1);
        input->setSampleRate(96000.0);
        QCOMPARE(backend->starts, 2);
        QCOMPARE(input->sampleRate(), 96000.0);
        QCOMPARE(input->activeDevice()->nominalSampleRate, 96000.0);
        QCOMPARE(input->pipeline()->snapshot().intervalLength, 9600);
    }

    void aChosenRateStaysWithItsDeviceAndDoesNotFollowToTheNext()
    {
        make({device("usb", "USB Interface", 2, 48000.0), device("builtin", "Built-in", 2)});
        input->start("usb", 0);
        input->setSampleRate(96000.0);
        QCOMPARE(input->sampleRate(), 96000.0);

        input->select("builtin", 0);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(backend->lastFormat.sampleRate, 48000.0);
        QCOMPARE(input->sampleRate(), 48000.0);

        input->select("usb", 0);
        QCOMPARE(backend->lastFormat.sampleRate, 96000.0);
        QCOMPARE(input->sampleRate(), 96000.0);
    }

    void aRefusedRateLeavesTheRunningInputAsItWas()
    {
        make({device("usb", "USB Interface", 2, 48000.0)});
        input->start("usb", 1);
        backend->refuseRates = true;
        QSignalSpy statusChanges(input.get(), &AudioInput::statusChanged);
        QSignalSpy deviceChanges(input.get(), &AudioInput::activeDeviceChanged);
        input->setSampleRate(96000.0);
        QCOMPARE(backend->starts, 1);
        QCOMPARE(backend->stops, 0);
        QVERIFY(backend->running);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->sampleRate(), 48000.0);
        QCOMPARE(input->activeDevice()->nominalSampleRate, 48000.0);
        QCOMPARE(statusChanges.count(), 0);
        QCOMPARE(deviceChanges.count(), 0);
    }

    void withoutAnActiveDeviceARateChangesNothing()
    {
        make({device("builtin", "Built-in", 2, 48000.0)});
        input->start("usb", 0);
        input->setSampleRate(96000.0);
        QCOMPARE(backend->devices[0].nominalSampleRate, 48000.0);
        QCOMPARE(backend->starts, 0);
    }

    void aDeviceThatFailsToStartStaysTheChosenOneOnlyAMissingOneIsCleared()
    {
        make({device("usb", "USB Interface", 4), device("builtin", "Built-in", 2)});
        input->start("usb", 0);
        QCOMPARE(input->status(), AudioInput::Status::running);

        backend->startError = QString("busy");
        input->select("usb", 1);
        QCOMPARE(input->status(), AudioInput::Status::failed);
        QVERIFY(input->activeDevice());
        QCOMPARE(input->activeDevice()->uid, QString("usb"));

        backend->startError.reset();
        backend->refuseFormat = true;
        input->select("usb", 2);
        QCOMPARE(input->status(), AudioInput::Status::deviceUnavailable);
        QVERIFY(input->activeDevice());
        QCOMPARE(input->activeDevice()->uid, QString("usb"));

        backend->refuseFormat = false;
        backend->devices.erase(backend->devices.begin());
        input->select("usb", 3);
        QCOMPARE(input->status(), AudioInput::Status::deviceUnavailable);
        QVERIFY(!input->activeDevice());
    }

    void aRestartAtOnceLeavesAPendingDebouncedRestartInPlace()
    {
        make({device("builtin", "Built-in", 2)});
        input->start("builtin", 0);
        backend->reportedFormat = AudioCaptureBackend::Format {1, 48000.0, true};
        backend->announceConfigurationChange(); // schedules a restart
        input->select("builtin", 1); // restarts at once
        QCOMPARE(backend->starts, 2);
        QTRY_COMPARE(backend->starts, 3);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->measuredChannel(), 1);
    }

    void theRestartDelayIsFourTenthsOfASecondByDefault()
    {
        AudioInput fresh(std::make_unique<FakeCaptureBackend>());
        QCOMPARE(fresh.restartDelay(), 400);
        QCOMPARE(AudioInput::defaultRestartDelayMs, 400);
    }

    void theStartLogLineWritesTheInterleavedFlagAsABoolean()
    {
        make({device("builtin", "Built-in", 2), device("other", "Other", 1)});
        QTest::ignoreMessage(
            QtInfoMsg, "Starting Built-in: 2 ch @ 48000.000000 Hz, interleaved: true");
        input->start("builtin", 0);
        backend->interleaved = false;
        QTest::ignoreMessage(
            QtInfoMsg, "Starting Other: 1 ch @ 48000.000000 Hz, interleaved: false");
        input->select("other", 0);
    }

    void theTapIsSizedForTheLargestBlockBeforeTheStreamStarts()
    {
        make({device("builtin", "Built-in", 2, 48000.0)});
        input->start("", 1);
        QCOMPARE(backend->lastFormat.largestBlock, 4800);
        std::vector<float> small(2 * 256, 0.25f);
        std::vector<float> large(2 * 4096, 0.25f);
        const AudioBufferView first {reinterpret_cast<const std::byte*>(small.data()), 256, 2,
            AudioBufferView::SampleFormat::float32};
        const AudioBufferView second {reinterpret_cast<const std::byte*>(large.data()), 4096, 2,
            AudioBufferView::SampleFormat::float32};
        std::size_t allocations = 0;
        {
            const testsupport::AllocationCounter counter;
            backend->tap(first);
            backend->tap(second);
            allocations = counter.count();
        }
        QCOMPARE(allocations, std::size_t {0});
        QCOMPARE(input->pipeline()->snapshot().processor.pendingSampleCount(), 256 + 4096);
    }

    void aConfigurationNoticeWithTheSameFormatWhileRunningDoesNothing()
    {
        make({device("builtin", "Built-in", 2)});
        input->start("", 0);
        backend->announceConfigurationChange();
        QTest::qWait(delay * 3);
        QCOMPARE(backend->starts, 1);
        // A changed format restarts once the delay has passed.
        backend->reportedFormat = AudioCaptureBackend::Format {1, 48000.0, true};
        backend->announceConfigurationChange();
        QTRY_COMPARE(backend->starts, 2);
    }

    void anEmptyUidFollowsTheSystemDefaultOrTheFirstDevice()
    {
        make({device("b", "Zoom", 2), device("a", "Alpha", 2)});
        input->start("", 0);
        QCOMPARE(input->activeDevice()->uid, QString("a")); // first by name
        backend->defaultUID = "b";
        backend->announceDeviceChange();
        QTRY_COMPARE(input->activeDevice()->uid, QString("b"));
    }

    void aNamedDeviceHasNoStandIn()
    {
        make({device("builtin", "Built-in", 2)});
        input->start("usb", 0);
        QCOMPARE(input->status(), AudioInput::Status::deviceUnavailable);
        QVERIFY(!input->activeDevice());
    }

    void devicesAreSortedByNameInNaturalOrder()
    {
        make({device("c", "Input 10", 2), device("a", "input 2", 2), device("b", "Input 1", 2)});
        input->refreshDevices();
        QCOMPARE(input->devices().size(), std::size_t {3});
        QCOMPARE(input->devices()[0].name, QString("Input 1"));
        QCOMPARE(input->devices()[1].name, QString("input 2"));
        QCOMPARE(input->devices()[2].name, QString("Input 10"));
    }

    void aFailedStartIsFailedAndRecoversOnADeviceEvent()
    {
        make({device("builtin", "Built-in", 2)});
        backend->startError = QString("busy");
        input->start("", 0);
        QCOMPARE(input->status(), AudioInput::Status::failed);
        backend->startError.reset();
        backend->devices.push_back(device("usb", "USB", 2));
        backend->announceDeviceChange();
        QTRY_COMPARE(input->status(), AudioInput::Status::running);
    }

    void stopStopsAndAPendingRestartDoesNothing()
    {
        make({device("builtin", "Built-in", 2)});
        input->start("", 0);
        backend->devices.push_back(device("usb", "USB", 2));
        backend->defaultUID = "usb";
        backend->announceDeviceChange();
        input->stop();
        QCOMPARE(input->status(), AudioInput::Status::stopped);
        QTest::qWait(delay * 3);
        QCOMPARE(backend->starts, 1);
        QVERIFY(!backend->running);
    }

    void intervalsFromTheTapArriveOnTheMainThread()
    {
        make({device("builtin", "Built-in", 2)});
        int received = 0;
        input->onInterval = [&](const MeasurementInterval& interval) {
            QCOMPARE(interval.sampleCount, 4800);
            ++received;
        };
        input->start("", 1);
        std::vector<float> frames(2 * 4800, 0.25f);
        AudioBufferView view {reinterpret_cast<const std::byte*>(frames.data()), 4800, 2,
            AudioBufferView::SampleFormat::float32};
        backend->tap(view);
        backend->tap(view);
        QCOMPARE(received, 0);
        QTRY_COMPARE(received, 2);
    }
};

QTEST_GUILESS_MAIN(AudioInputTest)
#include "AudioInputTest.moc"
