#include "analyse/term_names.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace orvelin::analyse::test {

namespace {

TEST(TermNamesTest, CodeNamesAreThoseOfTheEngineInItsOrder) {
    Weight const weight;
    ASSERT_EQ(weight.names.size(), term_names().size());
    for (std::size_t i = 0; i < term::count; ++i) {
        EXPECT_EQ(weight.names[i], term_names()[i].code);
    }
}

TEST(TermNamesTest, EachTermHasAFullNameOfItsOwnAndAMeaning) {
    std::set<std::string_view> names;
    for (TermName const& name : term_names()) {
        EXPECT_TRUE(names.insert(name.full).second) << name.full;
        EXPECT_FALSE(name.full.empty());
        EXPECT_FALSE(name.meaning.empty());
        EXPECT_EQ(name.full.find('_'), std::string_view::npos);
        EXPECT_EQ(name.meaning.find('\n'), std::string_view::npos);
    }
}

TEST(TermNamesTest, EachGroupHasANameAndTerms) {
    std::set<term_group> used;
    for (TermName const& name : term_names()) {
        ASSERT_LT(static_cast<std::size_t>(name.group), term_group_count);
        used.insert(name.group);
    }
    EXPECT_EQ(used.size(), term_group_count);
    std::set<std::string_view> names;
    for (term_group const group : used) {
        names.insert(group_name(group));
    }
    EXPECT_EQ(names.size(), term_group_count);
    EXPECT_EQ(group_name(term_group::king_safety), "king safety");
    EXPECT_EQ(term_names()[term::own_hanging_material].group, term_group::threats);
    EXPECT_EQ(term_names()[term::passed_pawns].group, term_group::passed_pawns);
    EXPECT_EQ(term_names()[term::king_activity].group, term_group::endgame);
}

}  // namespace

}  // namespace orvelin::analyse::test
