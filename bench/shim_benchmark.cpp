// The parser and the row writer by themselves, on composed caches.
#include <benchmark/benchmark.h>

#include <ostream>

#include "shim/shim_parse.h"
#include "shim/shim_rows.h"
#include "support/cache_builder.h"

namespace {

/// Takes everything and keeps nothing.
class null_buffer : public std::streambuf {
 protected:
  int_type overflow(int_type ch) override { return traits_type::not_eof(ch); }
  std::streamsize xsputn(const char* /*text*/, std::streamsize count) override { return count; }
};

std::vector<uint8_t> composed(int layout, int64_t entries) {
  test_support::cache_builder cache(layout);
  for (int64_t i = 0; i < entries; ++i) {
    const std::string name = "C:\\Program Files\\Vendor\\tool-" + std::to_string(i) + ".exe";
    cache.entry({.path = std::u16string(name.begin(), name.end())});
  }
  return cache.bytes();
}

void parse(benchmark::State& state, int layout) {
  const std::vector<uint8_t> cache = composed(layout, state.range(0));
  ovrik::shim_cache_results results;
  for (auto step : state) {
    ovrik::parse_shim_cache(results, ovrik::byte_view(cache), 0, false);
    benchmark::DoNotOptimize(results.size());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(cache.size()));
}

void write_rows(benchmark::State& state, bool by_name) {
  const std::vector<uint8_t> cache = composed(14, state.range(0));
  ovrik::shim_cache_results results;
  ovrik::parse_shim_cache(results, ovrik::byte_view(cache), 0, false);
  null_buffer buffer;
  std::ostream out(&buffer);
  const ovrik::row_settings rows;
  ovrik::row_writer writer(out, rows);
  for (auto step : state) {
    ovrik::output_shim_cache(writer, {}, results, {.sort_by_name = by_name},
                             ovrik::byte_view(cache));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK_CAPTURE(parse, windows_7, 7)->Arg(1000)->Arg(30000);
BENCHMARK_CAPTURE(parse, windows_10, 14)->Arg(1000)->Arg(30000);
BENCHMARK_CAPTURE(write_rows, by_index, false)->Arg(1000)->Arg(30000);
BENCHMARK_CAPTURE(write_rows, by_name, true)->Arg(1000)->Arg(30000);
