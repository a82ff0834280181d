// The figures as tables to read and as JSON for scripts.
#pragma once

#include "Measurement.h"

namespace peers {

/// Processor, system, compiler and the disk under `folder`.
std::string DescribeMachine(const std::string& folder);

void PrintTables(const Session& session);

bool WriteJson(const Session& session, const std::string& file, const std::string& machine);

} // namespace peers
