// What is measured; README.md says what each figure means.
#pragma once

#include "Measurement.h"

namespace peers {

/// Peak memory of a fresh process that loads, and of one that doesn't. To be measured while this process is
/// small: a child's figure starts from its parent's. Who takes too long is noted for the larger works.
void MeasureMemory(Session& session, const Workload& large, const Workload& larger);

/// Loads the file into every peer and compares every value with what was written.
void LoadAndCheck(Session& session, const Workload& workload);

void MeasureLoad(Session& session, const Workload& workload, const std::string& what);

/// The mean over several small files, which are loaded and freed in turns.
void MeasureSmallLoads(Session& session, const std::vector<Workload>& workloads, const std::string& what);

/// Hits, misses and the listing, on what is loaded.
void MeasureLookUps(Session& session, const Workload& workload);

/// The rate of two threads over the rate of one, which runs in a thread of its own as well.
void MeasureThreads(Session& session, const Workload& workload);

/// Sets `count` tags, in as many sections, and saves once.
void MeasureSave(Session& session, const Workload& workload, const std::string& what, int count = 1);

/// --child idle|load NAME FILE, --child get NAME FILE SECTION TAG, --child save NAME FILE SECTION TAG VALUE:
/// a single step of one peer. Does not return.
[[noreturn]] void RunChild(const std::vector<std::string>& arguments);

} // namespace peers
