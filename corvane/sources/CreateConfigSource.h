#pragma once

#include <corvane/sources/IConfigSource.h>

/// Makes the source for a configuration's name, for a file its path, whether or not the store can be used:
/// IsReady tells. The caller owns it. Null for a null name. The one place that knows which type of source is
/// made.
IConfigSource* CreateConfigSource(const corvane::wchar* name);
