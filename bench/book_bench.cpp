#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "book/book.h"
#include "book/book_record.h"

namespace orvelin {

namespace {

constexpr std::size_t entries = 1'000'000;

/// A book file of a million positions with one move each, removed at the end of the process.
class LargeBook {
 public:
    LargeBook() {
        std::mt19937_64 random(1);
        for (std::uint64_t& key : keys_) {
            key = random();
        }
        std::sort(keys_.begin(), keys_.end());
        std::ofstream file(name_, std::ios::binary);
        Book_record record;
        record.set_move(BKmove(std::uint16_t{796}));
        record.set_weight(1);
        for (std::uint64_t const key : keys_) {
            record.set_key(key);
            file.write(record.bytes(), Book_record::size);
        }
    }
    ~LargeBook() { std::remove(name_.c_str()); }
    LargeBook(LargeBook const&) = delete;
    LargeBook& operator=(LargeBook const&) = delete;

    std::string const& name() const { return name_; }
    std::vector<std::uint64_t> const& keys() const { return keys_; }

 private:
    std::string name_ = "/tmp/orvelin_book_bench_" + std::to_string(getpid()) + ".bin";
    std::vector<std::uint64_t> keys_ = std::vector<std::uint64_t>(entries);
};

LargeBook const& large_book() {
    static LargeBook const book;
    return book;
}

/// Looks random keys up: those of the file, or (`offset` 1) such as are not in it.
void look_up(benchmark::State& state) {
    Book book;
    book.set_name(large_book().name());
    book.open();
    std::mt19937_64 random(2);
    auto const offset = static_cast<std::uint64_t>(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        std::uint64_t const key = large_book().keys()[random() % entries] + offset;
        benchmark::DoNotOptimize(book.get_move(key));
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(look_up)->ArgName("absent")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace orvelin
