#pragma once

// Base of the settings groups, one per subsystem. A group reads its keys once at construction,
// writes each assignment to the store, notifies the property that changed, and once per turn of
// the event loop emits `changed`, so that the subsystem applies the group as a whole and sees
// every value assigned in that turn.
#include <QObject>

#include "settings/Setting.h"
#include "settings/SettingsStore.h"

namespace ostrel {

class SettingsGroup : public QObject {
    Q_OBJECT

signals:
    // Once per event-loop turn in which any value of the group changed.
    void changed();

protected:
    explicit SettingsGroup(SettingsStore& store, QObject* parent = nullptr);

    template <typename T> T read(const Setting<T>& setting) const
    {
        const auto raw = store_.text(setting.name());
        if (!raw) return setting.normalised(setting.fallback);
        auto value = setting.parse(*raw);
        return setting.normalised(value ? std::move(*value) : setting.fallback);
    }

    // Stores the value, and tells `notify` and the group when it differs. It is written in every
    // case, changed or not.
    template <typename Group, typename T>
    bool assign(T& field, T value, const Setting<T>& setting, void (Group::*notify)())
    {
        value = setting.normalised(std::move(value));
        const bool differs = !(field == value);
        if (differs) field = value;
        store_.write(setting.name(), setting.format(value));
        if (differs) {
            (static_cast<Group*>(this)->*notify)();
            noteChange();
        }
        return differs;
    }

    void noteChange();

private:
    SettingsStore& store_;
    bool changePending_ = false;
};

} // namespace ostrel
