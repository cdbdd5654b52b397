#pragma once

// Who has been seen on the Dante network, who is gone now, what their announcements said, and a
// short log of dropouts and returns. A value: the monitor drives it from the network, and a
// secondary receives the primary's.
#include <cstdint>
#include <map>
#include <vector>

#include <QString>

#include "common/Date.h"
#include "dante/DanteAdvertisement.h"
#include "dante/DanteDevice.h"
#include "dante/DanteEvent.h"

namespace ostrel {

class DanteRoster {
public:
    static constexpr std::int64_t defaultEventLimit = 200;

    DanteRoster() = default;
    // As a secondary receives it: a later device with the same id replaces the earlier one.
    DanteRoster(const std::vector<DanteDevice>& devices, std::vector<DanteEvent> events);

    const std::map<QString, DanteDevice>& devices() const { return devices_; }
    // Newest first.
    const std::vector<DanteEvent>& events() const { return events_; }
    std::int64_t eventLimit() const { return eventLimit_; }
    void setEventLimit(std::int64_t limit) { eventLimit_ = limit; }

    // Offline devices first, so that what is wrong stands at the top; each group in natural,
    // case-insensitive order of names.
    std::vector<DanteDevice> sortedDevices() const;
    std::vector<DanteDevice> offlineDevices() const;

    // An announcement: a first sighting is not news; a return is logged.
    void seen(const QString& name, const DanteAdvertisement::Txt& txt, Date at);
    // The announcement withdrawn: logged once, for a known device that was online.
    void lost(const QString& name, Date at);
    void setAddress(const QString& address, const QString& name);
    // Forgets offline devices; the log keeps them.
    void removeOffline();
    void remove(const QString& name);
    void clear();

    bool operator==(const DanteRoster&) const = default;

private:
    void log(const QString& name, DanteEvent::Kind kind, Date at);

    std::map<QString, DanteDevice> devices_;
    std::vector<DanteEvent> events_;
    std::int64_t eventLimit_ = defaultEventLimit;
};

} // namespace ostrel
