#include "describe/describe_event.h"
#include "eventlog/event_line.h"
#include "log_generator.h"
#include "render/event_table.h"

#include <benchmark/benchmark.h>

namespace eventsviewer::bench {

namespace {

EventStore makeEvents(std::size_t count)
{
    LogGenerator generator(1, Style::Compact, 0);
    EventStore events;
    while (events.size() < count) {
        events.push_back(parseEventLine(generator.line()));
    }
    return events;
}

void describe(benchmark::State& state)
{
    const EventStore events = makeEvents(1000);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(describeEvent(events[next]->code, events[next]->details));
        next = (next + 1) % events.size();
    }
    state.SetItemsProcessed(state.iterations());
}

void render(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        EventStore events = makeEvents(static_cast<std::size_t>(state.range(0)));
        state.ResumeTiming();
        benchmark::DoNotOptimize(renderEventTable(std::move(events), UINT32_MAX));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(describe);
BENCHMARK(render)->Arg(10)->Arg(20000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace eventsviewer::bench
