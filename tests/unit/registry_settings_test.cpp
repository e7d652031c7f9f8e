#include "registry/settings.h"

#include <gtest/gtest.h>

#include <string>

#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::ReadFile;
using test::WriteFile;

class RegistrySettings : public test::RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        WriteFile(UserFile(), Content("00000007"));
    }

    static std::string Content(const std::string& number) {
        return "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0]"
               "\r\n\"Number\"="
               "dword:" +
               number +
               "\r\n\"Text\"=\"caf\xC3\xA9\"\r\n\"Bytes\"=hex:01,00,ff\r\n"
               "\"Latin\"=\"\xE9\"\r\n\"Tilde\"=\"a~b\"\r\n\r\n"
               "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0\\Policies\\Set]\r\n"
               "\"Number\"=dword:00000009\r\n\r\n";
    }
};

TEST_F(RegistrySettings, NumberIsReadOrFallsBack) {
    EXPECT_EQ(ReadDword(kSettingsKey, L"number", 1), 7U);
    EXPECT_EQ(ReadDword(kSettingsKey, L"None", 1), 1U);
    EXPECT_EQ(ReadDword(L"No\\Key", L"Number", 2), 2U);
    EXPECT_EQ(ReadDword(kSettingsKey, L"Number"), 7U);
    EXPECT_EQ(ReadDword(L"No\\Key", L"Number"), std::nullopt);
}

TEST_F(RegistrySettings, ValueOfAnotherTypeCountsAsMissing) {
    EXPECT_EQ(ReadDword(kSettingsKey, L"Text", 3), 3U);
    EXPECT_EQ(ReadDword(kSettingsKey, L"Bytes", 3), 3U);
    EXPECT_EQ(ReadString(kSettingsKey, L"Number"), std::nullopt);
    EXPECT_EQ(ReadString(kSettingsKey, L"Bytes"), std::nullopt);
    EXPECT_EQ(SettingsKey(kSettingsKey).ReadBytes(L"Number", 64), std::nullopt);
}

TEST_F(RegistrySettings, TextIsReadAsWideCharacters) {
    EXPECT_EQ(ReadString(kSettingsKey, L"Text"), L"caf\u00E9");
    EXPECT_EQ(ReadString(kSettingsKey, L"Latin"), L"\u00E9");
    EXPECT_EQ(ReadString(kSettingsKey, L"Tilde"), L"a~b");
}

TEST_F(RegistrySettings, BytesAreReadFromBinaryValuesAndFromTextsAsTheyStandInTheFile) {
    const SettingsKey key(kSettingsKey);
    EXPECT_EQ(key.ReadBytes(L"Bytes", 64), std::string("\x01\x00\xFF", 3));
    EXPECT_EQ(key.ReadBytes(L"Text", 64), "caf\xC3\xA9");
    EXPECT_EQ(key.ReadBytes(L"Latin", 64), "\xE9");
    EXPECT_EQ(key.ReadBytes(L"Bytes", 3), std::string("\x01\x00\xFF", 3));
    EXPECT_EQ(key.ReadBytes(L"Bytes", 2), std::nullopt);
    EXPECT_EQ(key.ReadBytes(L"None", 64), std::nullopt);
}

TEST_F(RegistrySettings, KeyBelowAnotherIsReadThroughIt) {
    const SettingsKey policies(L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\Policies");
    EXPECT_TRUE(policies.IsOpen());
    EXPECT_EQ(SettingsKey(policies, L"set").ReadDword(L"Number"), 9U);
    const SettingsKey none(policies, L"none");
    EXPECT_FALSE(none.IsOpen());
    EXPECT_EQ(none.ReadDword(L"Number"), std::nullopt);
    EXPECT_FALSE(SettingsKey(none, L"set").IsOpen());
}

TEST_F(RegistrySettings, NumberIsWrittenUnderAnExistingKeyOnly) {
    EXPECT_TRUE(WriteDword(kSettingsKey, L"Number", 10));
    EXPECT_EQ(ReadFile(UserFile()), Content("0000000a"));
    EXPECT_FALSE(WriteDword(L"No\\Key", L"Number", 1));
    EXPECT_EQ(ReadFile(UserFile()), Content("0000000a"));
}

}  // namespace
}  // namespace zeldlg::registry
