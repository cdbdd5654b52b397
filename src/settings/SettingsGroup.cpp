#include "settings/SettingsGroup.h"

namespace ostrel {

SettingsGroup::SettingsGroup(SettingsStore& store, QObject* parent) : QObject(parent), store_(store)
{
}

void SettingsGroup::noteChange()
{
    if (changePending_) return;
    changePending_ = true;
    // Queued: the assignment is complete, and every other one of this turn is in, when it runs.
    QMetaObject::invokeMethod(
        this,
        [this] {
            changePending_ = false;
            emit changed();
        },
        Qt::QueuedConnection);
}

} // namespace ostrel
