#pragma once

#include <corvane/sources/IConfigSource.h>

/// Creates the source for a configuration name, for a file its path, whether or not the store is usable: see
/// IsReady. The caller owns it. Null for a null name. The only place that knows the type of the source.
IConfigSource* CreateConfigSource(const corvane::wchar* name);
