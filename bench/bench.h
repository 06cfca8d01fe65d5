#pragma once

#include "shell/session.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace molven::bench {

/// The dossier of this run: a copy that the benches may write into.
const Session& session();

/// Whether it lies on a server, where only what names a server's own interface has a bare side.
bool isOnServer();

/// Unit whose history is asked for: delivered, in the midst of the file.
QString tracedUnit();

/// Measures a deed, named "deed/molven", "deed/unjournalled" or "deed/bare", in milliseconds: the median of five
/// repetitions.
void add(const std::string& name, const std::function<void(benchmark::State&)>& function, int iterations);
/// The same deed while molven.mdb keeps no journal: what the journal costs.
void addUnjournalled(const std::string& deed, const std::function<void(benchmark::State&)>& function, int iterations);

/// The first units of the article in stock at the main depot.
QStringList unitsInStock(int count);

void registerRules();
void registerTransfers();
void registerGrid();
void registerReference();
void registerEnquiries();
void registerScreens();
void registerHome();
void registerPapers();
void registerAccounting();
/// They change units: to be run last.
void registerDepots();
void registerStock();
/// Works over whole files.
void registerUpkeep();
/// Deeds of a dossier on a server.
void registerServer();

} // namespace molven::bench
