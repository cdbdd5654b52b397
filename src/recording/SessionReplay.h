#pragma once

// Opens a recording for replay: its frames mapped, its sound on the default output, and a player
// over whatever of the two could be opened.
#include <memory>

#include "recording/Recording.h"
#include "replay/SessionPlayer.h"

namespace ostrel::SessionReplay {

// Never fails: what can't be opened is left out, and the player says so in its problem text.
std::unique_ptr<SessionPlayer> open(
    const Recording& recording, SessionPlayer::Options options = {}, QObject* parent = nullptr);

} // namespace ostrel::SessionReplay
