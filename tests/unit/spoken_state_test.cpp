#include "widgets/spoken_state.h"

#include <gtest/gtest.h>

namespace zeldlg {
namespace {

TEST(Sentences, EachEndsBeforeTheNextAndEmptyOnesAreLeftOut) {
    EXPECT_EQ("", Sentences({}));
    EXPECT_EQ("One", Sentences({"", "One", ""}));
    EXPECT_EQ("One. Two", Sentences({"One", "", "Two"}));
    EXPECT_EQ("One~. Two), three", Sentences({"One~", "Two), three"}));
    EXPECT_EQ("Warning! Two? Three: four. Five",
              Sentences({"Warning!", "Two?", "Three:", "four.", "Five"}));
}

TEST(SpokenRules, WhatIsNotMetIsSaid) {
    SpokenRules rules;
    EXPECT_EQ("Not met: short", rules.Update({{"short", false}, {"long", true}}));
    EXPECT_EQ("Not met: short. Not met: long", rules.Update({{"short", false}, {"long", false}}));
}

TEST(SpokenRules, WhenAllAreMetThoseAreSaidThatWereNot) {
    SpokenRules rules;
    EXPECT_EQ("", rules.Update({{"short", true}, {"long", true}}));
    rules.Update({{"short", false}, {"long", true}});
    EXPECT_EQ("Met: short", rules.Update({{"short", true}, {"long", true}}));
    EXPECT_EQ("Met: short", rules.Update({{"short", true}, {"long", true}}));
    rules.Update({{"short", true}, {"long", false}});
    EXPECT_EQ("Met: long", rules.Update({{"short", true}, {"long", true}}));
}

TEST(SpokenCountDown, SaysTheSecondsWith30And10And5Left) {
    SpokenCountDown count;
    std::vector<int64_t> said;
    wxString last;
    for (int64_t left = 40; left >= -3; --left) {
        count.Update(left);
        EXPECT_EQ(count.Whole(), wxString::Format("Seconds left: %d", int(left > 0 ? left : 0)));
        if (count.News() != last) {
            said.push_back(left);
            last = count.News();
            EXPECT_EQ(last, count.Whole());
        }
    }
    EXPECT_EQ((std::vector<int64_t>{30, 10, 5}), said);
}

TEST(SpokenState, WithoutTheKeyboardTheDescriptionIsTheWhole) {
    SpokenState state;
    EXPECT_FALSE(state.Due(false));
    state.Tell("failure, rule", "rule");
    EXPECT_EQ("failure, rule", state.Due(false));
    EXPECT_FALSE(state.Due(false));
}

TEST(SpokenState, WithTheKeyboardOnlyNewsAreSaidAndOnce) {
    SpokenState state;
    state.Tell("failure, rule", "rule");
    state.Due(false);
    EXPECT_FALSE(state.Due(true)) << "it was heard when the keyboard came";
    state.Tell("failure, other", "other");
    EXPECT_EQ("other", state.Due(true));
    EXPECT_FALSE(state.Due(true));
    state.Tell("more, other", "other");
    EXPECT_FALSE(state.Due(true)) << "no news";
    EXPECT_EQ("more, other", state.Due(false)) << "for when the keyboard comes back";
}

TEST(SpokenState, WhatChangesBackBeforeItIsSaidIsNoNews) {
    SpokenState state;
    state.Tell("rule", "rule");
    state.Due(false);
    state.Tell("other", "other");
    state.Tell("rule", "rule");
    EXPECT_FALSE(state.Due(true));
}

TEST(SpokenState, AnotherRowStartsWithTheWhole) {
    SpokenState state;
    state.Tell("valid, 14", "");
    state.Due(false);
    state.Tell("valid, 10", "10");
    EXPECT_EQ("valid, 10", state.Anew());
    EXPECT_FALSE(state.Due(true));
    state.Tell("valid, 5", "5");
    EXPECT_EQ("5", state.Due(true));
}

}  // namespace
}  // namespace zeldlg
