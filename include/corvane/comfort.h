// The comfort headers: the same configuration in UTF-8 and typed values, with promises of their own. They
// stand on the exact interface of config.h and are not needed for it.
#pragma once

#include <corvane/comfort/FileWatch.h>
#include <corvane/comfort/Listing.h>
#include <corvane/comfort/Loading.h>
#include <corvane/comfort/SnapshotGuard.h>
#include <corvane/comfort/Values.h>
#include <corvane/comfort/WriteBatch.h>
