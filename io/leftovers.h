#pragma once

#include <optional>
#include <string>
#include <vector>

namespace MCBin {

// How a run knows what killed runs left behind: the owner of a file holds its lock (flock) as long
// as it lives, whatever becomes of process numbers.

// Locks a new file of this run. False when another run took it for a leftover before it was
// locked, and removes it: then make another. Where the file system knows no locks, nobody will get
// this one, so there it counts as locked.
bool LockAsOwner(int file);

// Whether whoever made the open file lives no more; then it is locked for its removal.
bool IsOwnerGone(int file);

// The names in an open directory but "." and ".."; nothing when it cannot be read to its end.
// Needs no other descriptor, so that a run that has none left can still remove its files.
std::optional<std::vector<std::string>> NamesIn(int directory);

}  // namespace MCBin
