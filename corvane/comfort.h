// The comfort headers: the same configuration in UTF-8 and typed values. They stand on the exact interface of
// config.h, are not needed for it, and hold no code of the library's own.
#pragma once

#include <corvane/comfort/Listing.h>
#include <corvane/comfort/SnapshotGuard.h>
#include <corvane/comfort/Values.h>
