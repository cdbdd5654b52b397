#pragma once

// One release of an appcast: its versions and where a user reads about it and gets it.
#include <QString>
#include <optional>

#include "common/Date.h"

namespace ostrel {

struct AppcastItem {
    QString title;
    QString version; // the build version the order is taken from
    QString displayVersion; // what a user is shown; the build version when the feed has none
    QString downloadPage; // the item's link, else its enclosure's address
    QString releaseNotes; // address of the release notes, when the feed gives one
    std::optional<Date> published;

    bool operator==(const AppcastItem&) const = default;
};

} // namespace ostrel
