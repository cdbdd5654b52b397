#include "sessions/SessionSettings.h"

namespace ostrel {

const Setting<bool> SessionSettings::recordsLevelHistoryKey {"recordsLevelHistory", true};
const Setting<bool> SessionSettings::recordsSessionsKey {"recordsSessions", true};

SessionSettings::SessionSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      recordsLevelHistory_(read(recordsLevelHistoryKey)),
      recordsSessions_(read(recordsSessionsKey))
{
}

void SessionSettings::setRecordsLevelHistory(bool value)
{
    assign(recordsLevelHistory_, value, recordsLevelHistoryKey,
        &SessionSettings::recordsLevelHistoryChanged);
}

void SessionSettings::setRecordsSessions(bool value)
{
    assign(recordsSessions_, value, recordsSessionsKey, &SessionSettings::recordsSessionsChanged);
}

} // namespace ostrel
