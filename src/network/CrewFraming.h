#pragma once

// The crew's frames on the wire: a 4-byte big-endian body length, then the message as UTF-8
// JSON. The limit is checked only on the receiving side.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>

#include <QByteArray>
#include <QByteArrayView>

#include "measurement/MeasurementInterval.h"
#include "network/CrewMessage.h"

namespace ostrel::CrewFraming {

inline constexpr std::size_t headerSize = 4;
inline constexpr std::uint32_t maximumBodyLength = 4'194'304;

// Nothing when the message can't be encoded.
std::optional<QByteArray> frame(const CrewMessage& message);
// Nothing unless exactly four bytes announcing at most `maximumBodyLength`; zero is valid.
std::optional<std::uint32_t> length(QByteArrayView header);
std::variant<CrewMessage, CrewMessageJson::Failure> decode(QByteArrayView body);
// One recording frame with audio and wall time 0.
QByteArray encode(const MeasurementInterval& interval);
// Nothing unless exactly one recording frame long.
std::optional<MeasurementInterval> decodeInterval(QByteArrayView data);

} // namespace ostrel::CrewFraming
