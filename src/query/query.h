#pragma once

#include "query/options.h"

namespace eventsviewer::query {

// What a run does. Each prints on standard output and returns the status of the run.

/// Shows the events that `options` asks for.
int showEvents(const Options& options);

/// Lists the known events that the filters of `options` choose.
int listCatalog(const Options& options);

} // namespace eventsviewer::query
