#include "analyse/shard_merge.h"

#include <algorithm>
#include <queue>
#include <stdexcept>
#include <tuple>

#include "analyse/record_reader.h"

namespace orvelin::tools {

namespace {

[[noreturn]] void fail(LineInput const& input, std::string const& reason) {
    throw std::runtime_error(input.name() + ": line " + std::to_string(input.number()) + ": " +
                             reason);
}

std::string missing(std::uint64_t first, std::uint64_t last) {
    if (first == last) {
        return "position " + std::to_string(first) + " is missing";
    }
    return "positions " + std::to_string(first) + " to " + std::to_string(last) + " are missing";
}

}  // namespace

ShardMerge::ShardMerge(std::vector<std::string> const& names, WakeUp const* stop) {
    for (std::string const& name : names) {
        files_.push_back(std::make_unique<File>(name, stop));
        advance(*files_.back());
        files_.back()->first = files_.back()->number;
        if (files_.back()->number > 0) {
            compare_receipts(*files_.back());
        }
        std::uint64_t const step = step_of(name, stop);
        shards_ = step > 0 && (shards_ == 0 || step < shards_) ? step : shards_;
    }
}

/// Positions of a shard that no file holds are told once, by the shard.
void ShardMerge::tell_missing(std::uint64_t first, std::uint64_t last,
                              std::function<void(std::string const& fault)> const& fault) {
    for (std::uint64_t number = first; shards_ > 1 && number <= last; ++number) {
        std::uint64_t const shard = (number - 1) % shards_ + 1;
        bool const is_there = std::any_of(files_.begin(), files_.end(), [&](auto const& file) {
            return file->first > 0 && (file->first - 1) % shards_ + 1 == shard;
        });
        if (is_there) {
            continue;
        }
        if (first < number) {
            fault(missing(first, number - 1));
        }
        if (missing_shards_.insert(shard).second) {
            fault("shard " + std::to_string(shard) + '/' + std::to_string(shards_) +
                  " is missing: no file has its positions, of which " + std::to_string(number) +
                  " is the first");
        }
        first = number + 1;
    }
    if (first <= last) {
        fault(missing(first, last));
    }
}

/// The number of shards, as the step from the first record of a file to its second shows it; 0 when
/// there is no second.
std::uint64_t ShardMerge::step_of(std::string const& name, WakeUp const* stop) {
    File file(name, stop);
    advance(file);
    std::uint64_t const first = file.number;
    if (first > 0) {
        advance(file);
    }
    return file.number > first ? file.number - first : 0;
}

void ShardMerge::advance(File& file) {
    std::uint64_t const before = file.number;
    if (!file.input.next(file.line)) {
        file.number = 0;
        return;
    }
    file.number = record_number(file.line);
    if (file.number == 0) {
        fail(file.input, "no record of this program");
    }
    if (file.number < before) {
        fail(file.input, "position " + std::to_string(file.number) + " behind position " +
                             std::to_string(before));
    }
    file.line += '\n';
}

void ShardMerge::compare_receipts(File const& file) {
    analyse::Receipt receipt;
    try {
        receipt = read_record(file.line).receipt;
    } catch (RecordError const& error) {
        fail(file.input, error.what());
    }
    if (receipt_file_.empty()) {
        receipt_ = receipt;
        receipt_file_ = file.input.name();
    } else if (receipt_ != receipt) {
        fail(file.input, "other limit, lines, moves or version than in " + receipt_file_);
    }
}

void ShardMerge::run(std::function<void(std::string_view line)> const& line,
                     std::function<void(std::string const& fault)> const& fault) {
    using entry_t = std::tuple<std::uint64_t, std::size_t>;
    std::priority_queue<entry_t, std::vector<entry_t>, std::greater<>> queue;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        if (files_[i]->number > 0) {
            queue.emplace(files_[i]->number, i);
        }
    }
    std::size_t last_file = 0;
    while (!queue.empty()) {
        auto const [number, index] = queue.top();
        queue.pop();
        File& file = *files_[index];
        if (number > last_ + 1) {
            tell_missing(last_ + 1, number - 1, fault);
        }
        if (number == last_) {
            fault("position " + std::to_string(number) + " is in " +
                  files_[last_file]->input.name() + " and again in " + file.input.name());
        } else {
            line(file.line);
        }
        last_ = number;
        last_file = index;
        advance(file);
        if (file.number > 0) {
            queue.emplace(file.number, index);
        }
    }
}

}  // namespace orvelin::tools
