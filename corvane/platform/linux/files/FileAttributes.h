#pragma once

#include <sys/stat.h>

namespace corvane::os {

/// Copies the owner, the extended attributes (access lists among them) and the permissions of `from`, whose
/// status is `status`, to the new file `to`, and removes attributes inherited from its folder. Returns an
/// `errno` value; EPERM if something cannot be copied.
int CopyMetadata(int from, const struct stat& status, int to);

/// The same for a copy, best effort: what cannot be copied is left out, and no user but the new owner gets
/// more rights to the copy than to the original. The set-user-ID, set-group-ID and sticky bits are not
/// copied.
int CopyMetadataWherePossible(int from, const struct stat& status, int to);

/// Sets the open file's modification time from `status`. Errors are ignored.
void SetModificationTime(int descriptor, const struct stat& status) noexcept;

} // namespace corvane::os
