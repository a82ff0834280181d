#pragma once

#include <sys/stat.h>

namespace corvane::posix {

/// Gives the new file `to` the owner, the extended attributes (access lists among them) and the permissions
/// of `from`, whose status is `status`, and takes away what it inherited from its folder. Returns an `errno`
/// value; EPERM when something of it cannot be kept.
int TakeOver(int from, const struct stat& status, int to);

/// The same for a copy, as far as it goes: what cannot be kept is left out, and nobody but the new owner may
/// do more with the copy than with the original. Bits that make a program run as another user are left out
/// too.
int TakeOverWhatIsPossible(int from, const struct stat& status, int to);

/// Gives the open file the modification time in `status`; a file system that refuses is no failure.
void SetModificationTime(int descriptor, const struct stat& status) noexcept;

} // namespace corvane::posix
