#include <benchmark/benchmark.h>
#include <cstdint>

#include "search/transposition_table.h"

namespace orvelin::bench {

namespace {

/// Buckets that stay in the processor's innermost caches.
constexpr std::uint64_t few_buckets = 512;

/// A fixed row of numbers without pattern; a step is far cheaper than what is measured.
std::uint64_t scatter(std::uint64_t number) {
    number += 0x9e3779b97f4a7c15U;
    number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31);
}

/// A table, and keys that fall into all of its buckets or, when `few` is asked for, into a few.
class BenchTable {
 public:
    explicit BenchTable(benchmark::State& state) {
        table.set_size(static_cast<int>(state.range(0)));
        bool const few = state.range(1) != 0;
        index_mask_ = (few ? few_buckets : table.buckets()) - 1;
        // Twice as many as there are places: every bucket is full, and every page is there.
        std::uint64_t const records = 8 * (index_mask_ + 1);
        for (std::uint64_t i = 0; i < records; ++i) {
            store(key(i));
        }
        records_ = records;
    }

    /// The key of number `i`. Bucket 0 is never used, so it is passed over.
    std::uint64_t key(std::uint64_t i) const {
        std::uint64_t const bits = scatter(i);
        std::uint64_t const index = bits & index_mask_;
        return (bits & ~(table.buckets() - 1)) | (index == 0 ? 1 : index);
    }

    /// A key that was stored once, and may have been written over since.
    std::uint64_t old_key(std::uint64_t i) const { return key(scatter(~i) & (records_ - 1)); }

    void store(std::uint64_t key) {
        TTrecord record;
        record.set_key(key);
        record.set_score(static_cast<int>(key >> 56), 0);
        record.set_draft(static_cast<unsigned char>((key >> 48) & 31));
        record.set_bound(lower_bound);
        record.set_date(1);
        table.write(record);
    }

    TranspositionTable table;

 private:
    std::uint64_t index_mask_ = 0;
    std::uint64_t records_ = 0;
};

void on_small_and_large_tables(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"MiB", "few"})->Args({6, 1})->Args({6, 0})->Args({128, 0});
}

/// Looks records up. The key of each depends on what the last one gave, as it does in a search,
/// so that no two of them can wait for the memory together.
void table_find(benchmark::State& state) {
    BenchTable bench(state);
    std::uint64_t number = 0;
    std::uint64_t found = 0;
    for ([[maybe_unused]] auto _ : state) {
        TTrecord const* const record = bench.table.find(bench.old_key(number));
        bool const is_there = record != nullptr && record->get_draft() < 64;
        found += is_there ? 1 : 0;
        number += is_there ? 1 : 2;
    }
    state.counters["found"] =
        benchmark::Counter(static_cast<double>(found), benchmark::Counter::kAvgIterations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(table_find)->Apply(on_small_and_large_tables);

/// Fills a whole record in, with its copy.
void table_read(benchmark::State& state) {
    BenchTable bench(state);
    std::uint64_t number = 0;
    for ([[maybe_unused]] auto _ : state) {
        TTrecord record;
        record.set_key(bench.old_key(number));
        number += bench.table.read(record) ? 1 : 2;
        benchmark::DoNotOptimize(record);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(table_read)->Apply(on_small_and_large_tables);

/// Stores records of new keys in full buckets.
void table_store(benchmark::State& state) {
    BenchTable bench(state);
    std::uint64_t number = std::uint64_t{1} << 40;
    for ([[maybe_unused]] auto _ : state) {
        bench.store(bench.key(number++));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(table_store)->Apply(on_small_and_large_tables);

/// Empties a table of which every page is in use, as `ucinewgame` does.
void table_clear(benchmark::State& state) {
    TranspositionTable table;
    table.set_size(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(&table.bucket(1));
        table.clear();
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(table.buckets() * sizeof(Bucket)));
}
BENCHMARK(table_clear)->ArgName("MiB")->Arg(6)->Arg(128)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvelin::bench
