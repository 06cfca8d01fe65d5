#pragma once

#include "shell/session.h"

#include <benchmark/benchmark.h>

#include <functional>

namespace molven::bench {

/// The dossier of this run: a copy that the benches may write into.
const Session& session();

/// Unit whose history is asked for: delivered, in the midst of the file.
QString tracedUnit();

/// Measures a deed, named "deed/molven" or "deed/bare", in milliseconds: the median of five repetitions.
void add(const char* name, const std::function<void(benchmark::State&)>& function, int iterations);

void registerRules();
void registerGrid();
void registerReference();
void registerEnquiries();

} // namespace molven::bench
