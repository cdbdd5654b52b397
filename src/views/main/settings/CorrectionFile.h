#pragma once

// A microphone calibration file as the user picked it: read as text, parsed, and named after the
// file. What goes wrong comes back as the sentence the settings page shows.
#include <QByteArray>
#include <QString>
#include <optional>
#include <variant>

#include "measurement/MicrophoneCorrection.h"

namespace ostrel::CorrectionFile {

std::variant<MicrophoneCorrection, QString> load(const QString& path);

// The file's bytes as text: a byte-order mark picks the encoding, UTF-8 is tried next, and
// Latin-1 takes the rest (old Windows tools write degree signs in it). Absent for bytes that
// hold a zero, which no text file does.
std::optional<QString> decode(const QByteArray& bytes);

} // namespace ostrel::CorrectionFile
