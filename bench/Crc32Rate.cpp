// The checksum beside that of zlib.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <random>
#include <string>

#include "analysis/CRC32.h"

namespace tallowin::analysis {
namespace {

std::string RandomBytes(std::size_t size) {
  std::mt19937 random(1);
  std::string bytes(size, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

void Ours(benchmark::State& state) {
  const std::string bytes = RandomBytes(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(Crc32OfBytes(bytes));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void Zlib(benchmark::State& state) {
  const std::string bytes = RandomBytes(static_cast<std::size_t>(state.range(0)));
  const auto* data = reinterpret_cast<const Bytef*>(bytes.data());
  for (auto _ : state) {
    benchmark::DoNotOptimize(crc32(0, data, static_cast<uInt>(bytes.size())));
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

constexpr std::int64_t kKilo = 1 << 10;
constexpr std::int64_t kMega = 1 << 20;
BENCHMARK(Ours)->Arg(kKilo)->Arg(kMega)->Arg(256 * kMega);
BENCHMARK(Zlib)->Arg(kKilo)->Arg(kMega)->Arg(256 * kMega);

}  // namespace
}  // namespace tallowin::analysis

BENCHMARK_MAIN();
