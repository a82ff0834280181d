#pragma once

#include <sys/stat.h>

namespace corvane::posix {

/// Gives the new file `to` the extended attributes of `from`, access lists among them, and takes away what it
/// inherited from its folder. Returns an `errno` value; EPERM when an attribute cannot be kept.
int CopyAttributes(int from, int to);

/// Gives the new file `to` the owner, the attributes and the permissions of `from`, whose status is `status`.
/// Returns an `errno` value; EPERM when one of them cannot be kept.
int TakeOver(int from, const struct stat& status, int to);

} // namespace corvane::posix
