#include "widgets/pin_field.h"

#include <gtest/gtest.h>

#include <string>

namespace zeldlg {
namespace {

struct Offer {
    const char* offered;
    const char* everything;  // what goes into a field that takes everything
    const char* asciiOnly;   // and into one that takes ASCII only
};

constexpr Offer kOffers[] = {
    {"", "", ""},
    {"1234", "1234", "1234"},
    {" 1\t2 ", " 1\t2 ", " 1\t2 "},
    {"\x7f", "\x7f", "\x7f"},
    {"\u00e9", "\u00e9", ""},
    {"\u0080", "\u0080", ""},
    {"a\u00e9b\u20acc\U0001f511d", "a\u00e9b\u20acc\U0001f511d", "abcd"},
    // The first line that is not empty.
    {"1234\n", "1234", "1234"},
    {"12\n34", "12", "12"},
    {"12\r\n34\r\n", "12", "12"},
    {"12\r34", "12", "12"},
    {"12\u202834", "12", "12"},
    {"12\u202934", "12", "12"},
    {"\n1234", "1234", "1234"},
    {"\r\n1234\r\n5678", "1234", "1234"},
    {"\n\r\r\n\u2029\u20281234\u20295678", "1234", "1234"},
    {" \n1234", " ", " "},
    // A line that is refused is not made up for by the next.
    {"\n\u00e9\n1234", "\u00e9", ""},
    // Only line ends.
    {"\n", "", ""},
    {"\r\n", "", ""},
    {"\n\n\r\r\n\u2028\u2029", "", ""},
    // Begins as U+2028 does.
    {"\u20acA\u2030", "\u20acA\u2030", "A"},
};

TEST(AcceptedText, IsWhatTheFieldTakesOfTheFirstLineThatIsNotEmpty) {
    for (const auto& [offered, everything, asciiOnly] : kOffers) {
        EXPECT_EQ(std::string_view(AcceptedText(offered, Accepts::Everything)), everything)
            << testing::PrintToString(offered);
        EXPECT_EQ(std::string_view(AcceptedText(offered, Accepts::AsciiOnly)), asciiOnly)
            << testing::PrintToString(offered);
    }
}

TEST(AcceptedText, OfItselfIsAllOfIt) {
    for (const Offer& offer : kOffers) {
        for (const Accepts accepts : {Accepts::Everything, Accepts::AsciiOnly}) {
            const platform::SecretBytes once = AcceptedText(offer.offered, accepts);
            EXPECT_EQ(std::string_view(AcceptedText(once, accepts)), std::string_view(once));
        }
    }
}

// Also where a character is cut off.
TEST(AcceptedText, ReadsNoFurtherThanTheTextGoes) {
    const std::string whole = "12\u2028";
    for (size_t length = 0; length <= whole.size(); ++length) {
        const std::string cut = whole.substr(0, length);
        EXPECT_EQ(std::string_view(AcceptedText(cut, Accepts::AsciiOnly)),
                  whole.substr(0, std::min<size_t>(length, 2)));
    }
}

}  // namespace
}  // namespace zeldlg
