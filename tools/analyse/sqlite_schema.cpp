#include "analyse/sqlite_schema.h"

#include "evaluation/weight.h"

namespace orvelin::tools {

namespace {

constexpr char const* tables = R"(
CREATE TABLE IF NOT EXISTS receipt (
  schema INTEGER, search_limit TEXT, lines INTEGER, leaves INTEGER, played INTEGER, rest INTEGER,
  version TEXT, signature TEXT);
CREATE TABLE IF NOT EXISTS games (
  id INTEGER PRIMARY KEY, file TEXT, game INTEGER, line INTEGER, white TEXT, black TEXT,
  result TEXT, event TEXT, date TEXT);
CREATE TABLE IF NOT EXISTS positions (
  number INTEGER PRIMARY KEY, game_id INTEGER REFERENCES games(id), file TEXT, line INTEGER,
  id TEXT, ply INTEGER, fen TEXT, chess960 INTEGER, nodes INTEGER, depth INTEGER, score INTEGER,
  centipawns INTEGER, mate INTEGER, win INTEGER, draw INTEGER, loss INTEGER, static INTEGER,
  played TEXT, played_san TEXT, taken TEXT, mark TEXT, lost REAL, accuracy REAL, sentence TEXT);
CREATE TABLE IF NOT EXISTS lines (
  position INTEGER REFERENCES positions(number), line INTEGER, depth INTEGER, score INTEGER,
  centipawns INTEGER, mate INTEGER, win INTEGER, draw INTEGER, loss INTEGER, at_least INTEGER,
  moves TEXT, san TEXT, unexplained TEXT, leaf_moves TEXT, leaf_fen TEXT, leaf_score INTEGER,
  leaf_fading REAL, PRIMARY KEY (position, line)) WITHOUT ROWID;
)";

}  // namespace

std::string sqlite_schema() {
    std::string text = tables;
    text +=
        "CREATE TABLE IF NOT EXISTS terms (position INTEGER REFERENCES positions(number), "
        "line INTEGER";
    for (std::string const& name : Weight().names) {
        text += ", \"" + name.substr(0, name.find(' ')) + "\" REAL";
    }
    return text + ", PRIMARY KEY (position, line)) WITHOUT ROWID;";
}

std::string insert_statement(std::string const& table, int values) {
    std::string text = "INSERT INTO " + table + " VALUES (?";
    for (int i = 1; i < values; ++i) {
        text += ",?";
    }
    return text + ')';
}

}  // namespace orvelin::tools
