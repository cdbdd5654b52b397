// The roster's side of 500 Dante devices announced at once: each seen with its TXT record read
// from raw strings, then the list sorted as the views show it.
#include <benchmark/benchmark.h>

#include <QByteArray>

#include "dante/DanteRoster.h"
#include "network/DnsSdTxt.h"

using namespace ostrel;

namespace {

void fiveHundredDevicesSeenAndSorted(benchmark::State& state)
{
    const auto count = static_cast<int>(state.range(0));
    std::vector<std::vector<QByteArray>> records;
    for (int n = 1; n <= count; ++n)
        records.push_back(
            {"model=DX168", "mf=Allen & Heath", "router_vers=4.2." + QByteArray::number(n)});
    const Date at = std::chrono::system_clock::now();
    for (auto _ : state) {
        DanteRoster roster;
        for (int n = 1; n <= count; ++n)
            roster.seen(QStringLiteral("Box-%1").arg(n), DnsSdTxt::map(records[size_t(n - 1)]), at);
        auto sorted = roster.sortedDevices();
        benchmark::DoNotOptimize(sorted);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

} // namespace

BENCHMARK(fiveHundredDevicesSeenAndSorted)->Arg(500)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
