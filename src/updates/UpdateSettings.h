#pragma once

// The update check's own preferences, under the keys the appcast updaters use.
#include "common/Date.h"
#include "settings/SettingsGroup.h"

namespace ostrel {

class UpdateSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(bool checksAutomatically READ checksAutomatically WRITE setChecksAutomatically NOTIFY
            checksAutomaticallyChanged)

public:
    // Off until the user turns it on: a show computer doesn't call out on its own.
    static const Setting<bool> checksAutomaticallyKey;
    static const Setting<std::optional<Date>> lastCheckKey;

    explicit UpdateSettings(SettingsStore& store, QObject* parent = nullptr);

    bool checksAutomatically() const { return checksAutomatically_; }
    void setChecksAutomatically(bool value);
    const std::optional<Date>& lastCheck() const { return lastCheck_; }
    void setLastCheck(const std::optional<Date>& value);

signals:
    void checksAutomaticallyChanged();
    void lastCheckChanged();

private:
    bool checksAutomatically_;
    std::optional<Date> lastCheck_;
};

} // namespace ostrel
