#include "dante/DanteRoster.h"

#include <QUuid>
#include <algorithm>

#include "common/NaturalOrder.h"

namespace ostrel {

DanteRoster::DanteRoster(const std::vector<DanteDevice>& devices, std::vector<DanteEvent> events)
    : events_(std::move(events))
{
    for (const DanteDevice& device : devices)
        devices_.insert_or_assign(device.id, device);
}

std::vector<DanteDevice> DanteRoster::sortedDevices() const
{
    std::vector<DanteDevice> sorted;
    sorted.reserve(devices_.size());
    for (const auto& entry : devices_)
        sorted.push_back(entry.second);
    std::sort(sorted.begin(), sorted.end(), [](const DanteDevice& a, const DanteDevice& b) {
        if (a.isOnline != b.isOnline) return !a.isOnline;
        return NaturalOrder::compare(a.name(), b.name()) < 0;
    });
    return sorted;
}

std::vector<DanteDevice> DanteRoster::offlineDevices() const
{
    std::vector<DanteDevice> offline = sortedDevices();
    std::erase_if(offline, [](const DanteDevice& device) { return device.isOnline; });
    return offline;
}

void DanteRoster::seen(const QString& name, const DanteAdvertisement::Txt& txt, Date at)
{
    const DanteDetails details = DanteAdvertisement::details(txt);
    auto found = devices_.find(name);
    if (found == devices_.end()) {
        DanteDevice device;
        device.id = name;
        device.model = details.model;
        device.manufacturer = details.manufacturer;
        device.firmware = details.firmware;
        device.isOnline = true;
        device.firstSeen = at;
        device.lastChange = at;
        devices_.emplace(name, std::move(device));
        return;
    }
    DanteDevice& device = found->second;
    if (!device.isOnline) {
        device.isOnline = true;
        device.lastChange = at;
        log(name, DanteEvent::Kind::returned, at);
    }
    // An announcement without a detail keeps what an earlier one said.
    if (details.model) device.model = details.model;
    if (details.manufacturer) device.manufacturer = details.manufacturer;
    if (details.firmware) device.firmware = details.firmware;
}

void DanteRoster::lost(const QString& name, Date at)
{
    auto found = devices_.find(name);
    if (found == devices_.end() || !found->second.isOnline) return;
    found->second.isOnline = false;
    found->second.lastChange = at;
    log(name, DanteEvent::Kind::droppedOut, at);
}

void DanteRoster::setAddress(const QString& address, const QString& name)
{
    auto found = devices_.find(name);
    if (found != devices_.end()) found->second.address = address;
}

void DanteRoster::removeOffline()
{
    std::erase_if(devices_, [](const auto& entry) { return !entry.second.isOnline; });
}

void DanteRoster::remove(const QString& name)
{
    devices_.erase(name);
}

void DanteRoster::clear()
{
    devices_.clear();
    events_.clear();
}

void DanteRoster::log(const QString& name, DanteEvent::Kind kind, Date at)
{
    events_.insert(events_.begin(), DanteEvent {QUuid::createUuid(), name, kind, at});
    const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(eventLimit_, 0));
    if (events_.size() > limit) events_.resize(limit);
}

} // namespace ostrel
