#include "dialogs/message_boxes.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>

namespace zeldlg {
namespace {

TEST(TokenErrors, EveryCodeHasItsText) {
    const std::map<uint64_t, std::string> texts = {
        {6, "Device error"},
        {16, "Token is read-only"},
        {226, "Token is read-only"},
        {49, "Token out of memory"},
        {50, "Token removed before the operation could complete"},
        {164, "PIN locked"},
        {224, "Token not present"}};
    for (unsigned code = 0; code <= 0x400; ++code) {
        char other[40];
        snprintf(other, sizeof other, "Device error (0x%02X)", code);
        const auto known = texts.find(code);
        EXPECT_EQ(TokenErrorText(code).utf8_string(), known != texts.end() ? known->second : other)
            << code;
    }
}

TEST(TokenErrors, ALongCodeIsNotTakenForAShortOne) {
    EXPECT_EQ(TokenErrorText(0x1'0000'0006), "Device error (0x06)");
    EXPECT_EQ(TokenErrorText(0x80000001), "Device error (0x80000001)");
}

TEST(UnknownErrors, NameTheirCode) {
    EXPECT_EQ(UnknownErrorText(0), "Unknown error (0x00)");
    EXPECT_EQ(UnknownErrorText(6), "Unknown error (0x06)");
    EXPECT_EQ(UnknownErrorText(0xABCDE), "Unknown error (0xABCDE)");
}

}  // namespace
}  // namespace zeldlg
