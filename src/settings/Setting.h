#pragma once

// One preference: its key, its default and how its value is kept as text. Each key and default
// is written once, where its settings group declares it.
#include <optional>

#include <QString>
#include <QVariant>

#include "settings/SettingText.h"

namespace ostrel {

template <typename T> struct Setting {
    // Reads stored text; nothing when the text is not of this type, so the default applies.
    using Parse = std::optional<T> (*)(const QString& raw);
    // The stored form; an invalid variant removes the key.
    using Format = QVariant (*)(const T& value);
    using Normalise = T (*)(T value);

    const char* key;
    T fallback;
    Parse parse = &SettingText<T>::parse;
    Format format = &SettingText<T>::format;
    // Applied to every value read or assigned, such as a clamp.
    Normalise normalise = nullptr;

    QString name() const { return QString::fromLatin1(key); }
    T normalised(T value) const { return normalise ? normalise(std::move(value)) : value; }
};

} // namespace ostrel
