#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "analyse/answerer.h"
#include "analyse/record.h"
#include "analyse/record_json.h"

namespace orvelin::test::analysis {

/// Terms that need all their digits, with both zeros, and the smallest and largest numbers.
inline analyse::term_scores_t awkward_terms(float first) {
    analyse::term_scores_t terms{};
    for (std::size_t i = 0; i < terms.size(); ++i) {
        terms[i] = first / static_cast<float>(3 * i + 7);
    }
    terms[0] = -0.0F;
    terms[1] = 0.0F;
    terms[2] = 1.17549435e-38F;
    terms[3] = -3.40282347e+38F;
    terms[4] = 1.0e-45F;
    terms[5] = 16777217.0F;
    return terms;
}

/// A record with something in every field.
inline analyse::Record full_record(std::uint64_t number) {
    analyse::Record record;
    record.number = number;
    record.source = {"a \"b\",\n.pgn", 12,     3,         static_cast<int>(number),
                     "M\xC3\xBCller",  "\\\t", "1/2-1/2", "Cup, 3rd",
                     "1999.??.??",     ""};
    record.fen = "8/8/8/8/8/8/8/K1k5 w - - 0 " + std::to_string(number);
    record.chess960 = true;
    record.nodes = 18446744073709551ULL;
    record.depth = 9;
    record.score.units = -123;
    record.static_score = 45;
    record.terms = awkward_terms(100.1F);
    analyse::RecordLine line;
    line.depth = 9;
    line.score.units = -123;
    line.moves = "a1a2 c1c2";
    line.san = "Ka2 Kc2";
    line.leaf = {"a1a2 c1c2 a2a3", "8/8/8/8/8/K7/2k5/8 b - - 3 9", -124, 0.98F,
                 awkward_terms(-7.7F)};
    record.lines = {line, line};
    record.lines[1].at_least = true;
    record.lines[1].leaf.reset();
    record.lines[1].unexplained = "mate or draw";
    record.lines[1].score.units = 29990;
    record.rest = line;
    record.rest->score.units = -321;
    record.played = {"a1a2", "Ka2", "nb3", line,
                     analyse::RecordJudgement{analyse::move_mark::mistake, 123.5, 59.9,
                                              "1.Ka2 is worse: \"so\", it is said."}};
    record.receipt = analyse::receipt_of({analyse::Limit::kind::depth, 9}, 2, true, true, true);
    return record;
}

inline std::string json_of(analyse::Record const& record) {
    std::string text;
    analyse::append_json(text, record);
    return text;
}

/// Counts from 1, with a FEN text for each number.
class CountingSource : public tools::PositionSource {
 public:
    explicit CountingSource(std::uint64_t count) : count_(count) {}
    bool next(tools::Asked& asked) override {
        if (number_ == count_) {
            return false;
        }
        asked = {};
        asked.source.file = "numbers";
        asked.source.line = ++number_;
        asked.fen = fen(number_);
        return true;
    }
    static std::string fen(std::uint64_t number) {
        return "8/8/8/8/8/8/8/K1k5 w - - 0 " + std::to_string(number);
    }
    std::uint64_t given() const { return number_; }

 private:
    std::uint64_t count_;
    std::atomic<std::uint64_t> number_ = 0;
};

/// Answers from the question alone, now and then slowly.
class PlainAnswerer : public tools::Answerer {
 public:
    explicit PlainAnswerer(std::atomic<int>* answers = nullptr) : answers_(answers) {}
    analyse::Record answer(tools::Asked const& asked, tools::Request const& request) override {
        if (asked.number % 7 == 1) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        analyse::Record record = full_record(1);
        record.number = asked.number;
        record.source = asked.source;
        record.fen = asked.fen;
        record.receipt = request.receipt();
        record.score.units = static_cast<int>(asked.fen.size());
        if (answers_ != nullptr) {
            ++*answers_;
        }
        return record;
    }

 private:
    std::atomic<int>* answers_;
};

inline tools::answerer_maker_t plain_answerers(std::atomic<int>* answers = nullptr) {
    return [answers] { return std::make_unique<PlainAnswerer>(answers); };
}

}  // namespace orvelin::test::analysis
