#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <benchmark/benchmark.h>
#include <cstddef>
#include <random>
#include <vector>

namespace {

using namespace norvex::SystemInfo::MacSysInfo;

/// One call takes less than 200 ns. The values are of all magnitudes, so that every tier has its share.
template <QString (*convert)(unsigned long long)>
void convertUserFriendly(benchmark::State& state)
{
    std::mt19937_64 random(1);
    std::vector<unsigned long long> values(1024);
    for (unsigned long long& value : values) {
        value = random() >> random() % 64;
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(convert(values[next++ % values.size()]));
    }
}

BENCHMARK_TEMPLATE(convertUserFriendly, clockSpeedConvertUserFriendly);
BENCHMARK_TEMPLATE(convertUserFriendly, memorySizeConvertUserFriendly);
BENCHMARK_TEMPLATE(convertUserFriendly, diskSizeConvertUserFriendly);

} // namespace
