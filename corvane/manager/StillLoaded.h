#pragma once

#include <corvane/sources/IConfigSource.h>

namespace corvane {

/// Whether a manager whose source is now `present`, which may be null, still holds the configuration of
/// `source`. A log sink may load another one or clear the manager while `source` works.
inline bool StillLoaded(IConfigSource* present, IConfigSource& source) {
    return present &&
           (present == &source || wstring_view(present->GetConfigName()) == source.GetConfigName());
}

} // namespace corvane
