#pragma once

// What a show keeps: its level history, and whether it is recorded to disk.
#include "settings/SettingsGroup.h"

namespace ostrel {

class SessionSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(bool recordsLevelHistory READ recordsLevelHistory WRITE setRecordsLevelHistory NOTIFY
            recordsLevelHistoryChanged)
    Q_PROPERTY(bool recordsSessions READ recordsSessions WRITE setRecordsSessions NOTIFY
            recordsSessionsChanged)

public:
    static const Setting<bool> recordsLevelHistoryKey;
    static const Setting<bool> recordsSessionsKey;

    explicit SessionSettings(SettingsStore& store, QObject* parent = nullptr);

    bool recordsLevelHistory() const { return recordsLevelHistory_; }
    void setRecordsLevelHistory(bool value);
    bool recordsSessions() const { return recordsSessions_; }
    void setRecordsSessions(bool value);

signals:
    void recordsLevelHistoryChanged();
    void recordsSessionsChanged();

private:
    bool recordsLevelHistory_;
    bool recordsSessions_;
};

} // namespace ostrel
