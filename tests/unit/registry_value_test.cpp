#include "registry/registry_value.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using namespace std::string_literals;

std::optional<RegistryValue> Read(std::string_view line) {
    const std::optional<ValueLine> parsed = ParseValueLine(line);
    return parsed ? std::optional(ReadValue(*parsed)) : std::nullopt;
}

RegistryValue NumberValue(uint32_t number) { return {kTypeNumber, number, {}}; }
RegistryValue TextValue(std::string text) { return {kTypeString, 0, std::move(text)}; }
RegistryValue BinaryValue(std::string bytes) { return {kTypeBinary, 0, std::move(bytes)}; }

TEST(RegistryValueLine, NumberWithDigits0000000aReadsAs10AndIsWrittenSo) {
    EXPECT_EQ(Read("\"n\"=dword:0000000a"), NumberValue(10));
    EXPECT_EQ(FormatValueLine("n", NumberValue(10)), "\"n\"=dword:0000000a");
}

TEST(RegistryValueLine, NumberIsReadAsFarAsItsDigitsGo) {
    EXPECT_EQ(Read("\"n\"=dword:ffffffff"), NumberValue(0xFFFFFFFF));
    EXPECT_EQ(Read("\"n\"=dword:DEADBEEF"), NumberValue(0xDEADBEEF));
    EXPECT_EQ(Read("\"n\"=dword:1f"), NumberValue(0x1F));
    EXPECT_EQ(Read("\"n\"=dword:12 34"), NumberValue(0x12));
    EXPECT_EQ(Read("\"n\"=dword:1x"), NumberValue(1));
    EXPECT_EQ(Read("\"n\"=dword:"), NumberValue(0));
    EXPECT_EQ(Read("\"n\"=dword:-1"), NumberValue(0));
    for (const char* const neighbour : {"/", ":", "@", "G", "`", "g"}) {
        EXPECT_EQ(Read("\"n\"=dword:1"s + neighbour + "2"), NumberValue(1)) << neighbour;
    }
    EXPECT_EQ(Read("\"n\"=dword:123456789"), NumberValue(0x23456789));
}

TEST(RegistryValueLine, BinaryOfThreeBytesIsWrittenWithCommasBetween) {
    EXPECT_EQ(FormatValueLine("b", BinaryValue("\x01\xAB\xFF")), "\"b\"=hex:01,ab,ff");
    EXPECT_EQ(Read("\"b\"=hex:01,ab,ff"), BinaryValue("\x01\xAB\xFF"));
    EXPECT_EQ(FormatValueLine("b", BinaryValue("")), "\"b\"=hex:");
    EXPECT_EQ(Read("\"b\"=hex:"), BinaryValue(""));
}

TEST(RegistryValueLine, BinaryIsReadAsFarAsItsDigitsGo) {
    EXPECT_EQ(Read("\"b\"=hex:01,aB,"), BinaryValue("\x01\xAB"));
    EXPECT_EQ(Read("\"b\"=hex:01,a"), BinaryValue("\x01"));
    EXPECT_EQ(Read("\"b\"=hex:01,gg,02"), BinaryValue("\x01"));
    EXPECT_EQ(Read("\"b\"=hex:0102"), BinaryValue("\x01"));
    EXPECT_EQ(Read("\"b\"=hex:00,01"), BinaryValue("\0\x01"s));
}

TEST(RegistryValueLine, TextRunsToTheLastDoubleQuote) {
    EXPECT_EQ(Read("\"s\"=\"text\""), TextValue("text"));
    EXPECT_EQ(Read("\"s\"=\"\""), TextValue(""));
    EXPECT_EQ(Read("\"s\"=\"say \"hello\" there\""), TextValue("say \"hello\" there"));
    EXPECT_EQ(Read("\"s\"=\"text\" behind"), TextValue("text"));
    EXPECT_EQ(Read("\"s\"=\"not closed"), TextValue("not closed"));
    EXPECT_EQ(Read("\"s\"=\"C:\\dir\\\""), TextValue("C:\\dir\\"));
}

TEST(RegistryValueLine, AtSignNamesTheDefaultValue) {
    EXPECT_EQ(ParseValueLine("@=\"text\"")->name, "");
    EXPECT_EQ(ParseValueLine("\"@\"=\"text\"")->name, "");
    EXPECT_EQ(Read("@=\"text\""), TextValue("text"));
    EXPECT_EQ(FormatValueLine("", TextValue("text")), "@=\"text\"");
}

TEST(RegistryValueLine, NamesMayHoldBlanksBracketsAndQuotes) {
    for (const std::string name :
         {"Automatic retry timeout", "[a]", "a\"b", "a\"=b", "a\"", "\"", "a=b", "\\", " "}) {
        for (const RegistryValue& value :
             {NumberValue(7), TextValue("x\"y"), BinaryValue("\x01")}) {
            const std::string line = FormatValueLine(name, value).value();
            ASSERT_TRUE(ParseValueLine(line)) << line;
            EXPECT_EQ(ParseValueLine(line)->name, name) << line;
            EXPECT_EQ(Read(line), value) << line;
        }
    }
}

TEST(RegistryValueLine, WhatReadsBackAsSomethingElseIsNotStorable) {
    EXPECT_FALSE(FormatValueLine("a\"=\"b", TextValue("x")).has_value());
    EXPECT_FALSE(FormatValueLine("a\"=dword:", TextValue("x")).has_value());
    EXPECT_FALSE(FormatValueLine("a\nb", NumberValue(1)).has_value());
    EXPECT_FALSE(FormatValueLine("a", TextValue("one\r\n[two]")).has_value());
    EXPECT_FALSE(FormatValueLine("@", TextValue("x")).has_value());
    EXPECT_TRUE(FormatValueLine("a", TextValue("one\rtwo")).has_value());
    EXPECT_TRUE(FormatValueLine("", TextValue("x")).has_value());
}

TEST(RegistryValueLine, OtherLinesAreNoValues) {
    for (const std::string_view line :
         {"", "; comment", "n=dword:1", "\"n\"", "\"n\"=", "\"n\"=word:1", "\"n\"=hex(2):00", "\"",
          "@", "@=", "@x", " \"n\"=dword:1", "\"n=dword:1", "\"n\"=qword:1"}) {
        EXPECT_FALSE(ParseValueLine(line)) << line;
    }
}

}  // namespace
}  // namespace zeldlg::registry
