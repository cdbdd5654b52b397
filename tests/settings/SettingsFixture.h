#pragma once

// Preferences in a scratch INI file, never the user's: a store to hand to settings groups, raw
// writes as another program would make them, and a way to relaunch.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <chrono>
#include <memory>

#include "settings/SettingsStore.h"

namespace ostrel::testsupport {

class SettingsFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<SettingsStore> current;

    QString path() const { return folder.filePath("settings.ini"); }

    // A fresh store over the file, as at a launch; the one before flushes as it goes.
    SettingsStore& open(std::chrono::milliseconds syncDelay = SettingsStore::defaultSyncDelay)
    {
        current.reset();
        settings = std::make_unique<QSettings>(path(), QSettings::IniFormat);
        current = std::make_unique<SettingsStore>(*settings, syncDelay);
        return *current;
    }

    void storeRaw(const QString& key, const QVariant& value)
    {
        QSettings other(path(), QSettings::IniFormat);
        other.setValue(key, value);
        other.sync();
    }

    // What another reader of the file finds there now.
    QVariant onDisk(const QString& key) const
    {
        QSettings other(path(), QSettings::IniFormat);
        return other.value(key);
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    // Runs the event loop until `done` or a generous deadline; false on the deadline.
    template <typename Condition> static bool waitFor(Condition done)
    {
        QElapsedTimer clock;
        clock.start();
        while (!done()) {
            if (clock.elapsed() > 5000) return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        return true;
    }
};

} // namespace ostrel::testsupport
