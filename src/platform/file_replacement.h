// Replacing a file whole, so that a reader finds either the old file or the new one, never a
// part of either.
#pragma once

#include <filesystem>

namespace platform {

// Moves `from` over `to`, which may exist. A Windows reader that holds `to` open blocks the move
// for that time, so it is tried again for a short while. False when it cannot be done.
bool MoveFileOver(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace platform
