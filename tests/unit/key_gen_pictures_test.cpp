#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <span>
#include <string>

namespace zeldlg {
namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/art/token_green.xpm"
#include "resources/art/token_neutral.xpm"
#include "resources/art/token_red.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

struct Picture {
    explicit Picture(std::span<const char* const> lines) {
        int columns = 0;
        int rows = 0;
        unsigned keys = 0;
        int keyLength = 0;
        EXPECT_EQ(sscanf(lines[0], "%d %d %u %d", &columns, &rows, &keys, &keyLength), 4);
        EXPECT_EQ(columns, 32);
        EXPECT_EQ(rows, 32);
        EXPECT_EQ(keyLength, 1);
        for (const char* const line : lines.subspan(1, keys)) {
            colours.insert(std::string(line).substr(4));
            known += line[0];
        }
        for (const std::string row : lines.subspan(1 + keys)) {
            EXPECT_EQ(row.size(), 32U);
            EXPECT_EQ(row.find_first_not_of(known), std::string::npos) << row;
            ++rowCount;
        }
        EXPECT_EQ(rowCount, 32);
    }

    std::set<std::string> colours;
    std::string known;
    int rowCount = 0;
};

TEST(KeyGenPictures, AreRedNeutralAndGreenAndShareTheirOtherColours) {
    const Picture red(token_red_xpm);
    const Picture neutral(token_neutral_xpm);
    const Picture green(token_green_xpm);
    EXPECT_EQ(red.colours.size(), 5U);
    EXPECT_EQ(neutral.colours.size(), 6U);
    EXPECT_EQ(green.colours.size(), 5U);
    EXPECT_EQ(red.colours.count("#ff0000"), 1U);
    EXPECT_EQ(green.colours.count("#00ff00"), 1U);
    EXPECT_EQ(neutral.colours.count("#ff0000") + neutral.colours.count("#00ff00"), 0U);
    for (const Picture* const each : {&red, &neutral, &green}) {
        EXPECT_EQ(each->colours.count("#000000"), 1U);
        EXPECT_EQ(each->colours.count("#808080"), 1U);
    }
}

}  // namespace
}  // namespace zeldlg
