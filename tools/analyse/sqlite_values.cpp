#include "analyse/sqlite_values.h"

namespace orvelin::tools {

void bind_optional(Statement& statement, std::optional<int> value) {
    if (value) {
        statement.bind(std::int64_t{*value});
    } else {
        statement.bind_null();
    }
}

void bind_score(Statement& statement, analyse::Score const& score) {
    auto const chances = score.chances();
    statement.bind(std::int64_t{score.units}).bind(std::int64_t{score.centipawns()});
    bind_optional(statement, score.mate());
    statement.bind(std::int64_t{chances.win}).bind(std::int64_t{chances.draw});
    statement.bind(std::int64_t{chances.loss});
}

void bind_nulls(Statement& statement, int count) {
    for (int i = 0; i < count; ++i) {
        statement.bind_null();
    }
}

void bind_played(Statement& statement, std::optional<analyse::PlayedMove> const& played) {
    if (!played) {
        bind_nulls(statement, 7);
        return;
    }
    statement.bind(played->move).bind(played->san);
    if (played->taken.empty()) {
        statement.bind_null();
    } else {
        statement.bind(played->taken);
    }
    if (!played->judgement) {
        bind_nulls(statement, 4);
        return;
    }
    statement.bind(analyse::mark_text(played->judgement->mark)).bind(played->judgement->lost);
    if (played->judgement->accuracy) {
        statement.bind(*played->judgement->accuracy);
    } else {
        statement.bind_null();
    }
    statement.bind(played->judgement->sentence);
}

}  // namespace orvelin::tools
