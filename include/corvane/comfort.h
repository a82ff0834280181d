// The comfort interface: the same configuration in UTF-8, with typed values and guarantees of its own. Built
// on the exact interface of config.h.
#pragma once

#include <corvane/comfort/FileWatch.h>
#include <corvane/comfort/Listing.h>
#include <corvane/comfort/Loading.h>
#include <corvane/comfort/SnapshotGuard.h>
#include <corvane/comfort/Values.h>
#include <corvane/comfort/WriteBatch.h>
