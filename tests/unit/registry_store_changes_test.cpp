// Reading, setting and deleting values; creating, listing and deleting keys.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "registry/registry_store.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::Key;
using test::kStart;
using test::Number;
using test::ReadFile;
using test::SetBytes;
using test::SetNumber;
using test::SetText;
using test::SmallRegistry;
using test::Text;
using test::WriteFile;

class RegistryStoreChanges : public test::RegistryTest {
protected:
    void UseFile(const std::string& content) { WriteFile(UserFile(), content); }

    static std::vector<std::wstring> SubKeys(HKEY key) {
        std::vector<std::wstring> names;
        wchar_t name[300];
        uint32_t size = std::size(name);
        while (RegEnumKey(key, static_cast<uint32_t>(names.size()), name, &size) == kSuccess) {
            names.emplace_back(name, size);
            size = std::size(name);
        }
        return names;
    }
};

// Values

TEST_F(RegistryStoreChanges, QueryWithoutABufferReturnsSizeAndTypeOnly) {
    UseFile(SmallRegistry("00000001", "\"Text\"=\"abc\"\r\n\"Bytes\"=hex:01,02,03\r\n"));
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    const struct {
        const wchar_t* name;
        uint32_t type, size;
    } rows[] = {{L"Number", 4, 4}, {L"Text", 1, 4 * sizeof(wchar_t)}, {L"Bytes", 3, 3}};
    for (const auto& row : rows) {
        uint32_t type = 0;
        uint32_t size = 0;
        EXPECT_EQ(RegQueryValueEx(key.handle, row.name, &type, nullptr, &size), kSuccess);
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(size, row.size);
    }
}

TEST_F(RegistryStoreChanges, ValueThatDoesNotFitIsNotWritten) {
    UseFile(SmallRegistry("00000001", "\"Bytes\"=hex:01,02,03\r\n"));
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    unsigned char bytes[3] = {9, 9, 9};
    uint32_t size = 2;
    EXPECT_EQ(RegQueryValueEx(key.handle, L"Bytes", nullptr, bytes, &size), kNoMemory);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(bytes[0], 9);
    EXPECT_EQ(RegQueryValueEx(key.handle, L"Bytes", nullptr, bytes, &size), kSuccess);
    EXPECT_EQ(bytes[2], 3);
}

TEST_F(RegistryStoreChanges, MissingValueIsNotFoundAndLeavesTheOutputsAlone) {
    UseFile(SmallRegistry("00000001"));
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    uint32_t type = 77;
    uint32_t size = 88;
    EXPECT_EQ(RegQueryValueEx(key.handle, L"None", &type, nullptr, &size), kNotFound);
    EXPECT_EQ(type, 77U);
    EXPECT_EQ(size, 88U);
    EXPECT_EQ(RegDeleteValue(key.handle, L"None"), kNotFound);
}

TEST_F(RegistryStoreChanges, SetValueIsSeenAtOnceAndTheFileChangesWhenTheLastHandleIsClosed) {
    UseFile(SmallRegistry("00000001"));
    Key first(HKEY_LOCAL_MACHINE, L"Key");
    Key second(HKEY_LOCAL_MACHINE, L"");
    EXPECT_EQ(SetNumber(first.handle, L"Number", 10), kSuccess);
    EXPECT_EQ(Number(first.handle, L"Number"), 10U);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001"));
    EXPECT_EQ(first.Close(), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001"));
    EXPECT_EQ(RegFlush(), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001"));
    EXPECT_EQ(second.Close(), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("0000000a"));
}

TEST_F(RegistryStoreChanges, FileWrittenByTheStoreReadsBackToTheSameValues) {
    HKEY made = 0;
    ASSERT_EQ(RegCreateKeyEx(HKEY_CURRENT_USER, L"Some\\Key", 0, &made, nullptr), kSuccess);
    EXPECT_EQ(SetNumber(made, L"number", 0xFFFFFFFF), kSuccess);
    EXPECT_EQ(SetText(made, L"text", L"caf\u00E9 \u20AC \"quoted\" \\back\\"), kSuccess);
    EXPECT_EQ(SetText(made, L"empty", L""), kSuccess);
    EXPECT_EQ(SetText(made, nullptr, L"the default"), kSuccess);
    EXPECT_EQ(SetBytes(made, L"bytes", "\x01\xAB\xFF"), kSuccess);
    EXPECT_EQ(SetBytes(made, L"no bytes", ""), kSuccess);
    EXPECT_EQ(RegCloseKey(made), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()),
              kStart +
                  "[HKEY_CURRENT_USER\\Some]\r\n\r\n[HKEY_CURRENT_USER\\Some\\Key]\r\n"
                  "\"number\"=dword:ffffffff\r\n"
                  "\"text\"=\"caf\xC3\xA9 \xE2\x82\xAC \"quoted\" \\back\\\"\r\n"
                  "\"empty\"=\"\"\r\n@=\"the default\"\r\n\"bytes\"=hex:01,ab,ff\r\n"
                  "\"no bytes\"=hex:\r\n\r\n");
    const Key key(HKEY_CURRENT_USER, L"some\\key");
    EXPECT_EQ(Number(key.handle, L"Number"), 0xFFFFFFFF);
    EXPECT_EQ(Text(key.handle, L"text"), L"caf\u00E9 \u20AC \"quoted\" \\back\\");
    EXPECT_EQ(Text(key.handle, L"empty"), L"");
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L"@"}) {
        EXPECT_EQ(Text(key.handle, name), L"the default");
    }
    RegistryValue value;
    EXPECT_EQ(QueryStoredValue(key.handle, L"bytes", value), kSuccess);
    EXPECT_EQ(value, (RegistryValue{kTypeBinary, 0, "\x01\xAB\xFF"}));
}

TEST_F(RegistryStoreChanges, ShorterTextLeavesTheTailOfTheOldOne) {
    UseFile(SmallRegistry("00000001", "\"Long\"=\"0123456789\"\r\n"));
    const std::string before = ReadFile(UserFile());
    {
        const Key key(HKEY_LOCAL_MACHINE, L"Key");
        EXPECT_EQ(SetText(key.handle, L"Long", L""), kSuccess);
    }
    const std::string text = SmallRegistry("00000001", "\"Long\"=\"\"\r\n");
    EXPECT_EQ(ReadFile(UserFile()), text + before.substr(text.size()));
    EXPECT_EQ(Text(Key(HKEY_LOCAL_MACHINE, L"Key").handle, L"Long"), L"");
}

TEST_F(RegistryStoreChanges, TailOfTheOldTextDoesNotBringDeletedValuesOfTheSectionBack) {
    UseFile(SmallRegistry("00000001", "\"One\"=dword:00000001\r\n\"Two\"=dword:00000002\r\n"));
    for (const wchar_t* name : {L"One", L"Two"}) {
        const Key key(HKEY_LOCAL_MACHINE, L"Key");
        EXPECT_EQ(RegDeleteValue(key.handle, name), kSuccess);
    }
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    EXPECT_EQ(Number(key.handle, L"One"), std::nullopt);
    EXPECT_EQ(Number(key.handle, L"Two"), std::nullopt);
    EXPECT_EQ(Number(key.handle, L"Number"), 1U);
}

TEST_F(RegistryStoreChanges, WhatTheFileCannotHoldIsRefused) {
    UseFile(SmallRegistry("00000001"));
    Key key(HKEY_LOCAL_MACHINE, L"Key");
    const uint32_t number = 1;
    EXPECT_EQ(RegSetValueEx(key.handle, L"Number", kTypeNumber, &number, 3), kFileError);
    EXPECT_EQ(RegSetValueEx(key.handle, L"Number", 2, &number, 4), kFileError);
    EXPECT_EQ(SetText(key.handle, L"Text", L"two\r\nlines"), kFileError);
    EXPECT_EQ(SetNumber(key.handle, L"a\nb", 1), kFileError);
    HKEY made = 0;
    EXPECT_EQ(RegCreateKeyEx(key.handle, L"a]\r\n[b", 0, &made, nullptr), kFileError);
    EXPECT_EQ(key.Close(), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001"));
}

TEST_F(RegistryStoreChanges, TextEndsAtItsFirstZeroOrItsSize) {
    UseFile(SmallRegistry("00000001"));
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    const wchar_t text[] = L"abc\0def";
    EXPECT_EQ(RegSetValueEx(key.handle, L"T", kTypeString, text, sizeof text), kSuccess);
    EXPECT_EQ(Text(key.handle, L"T"), L"abc");
    EXPECT_EQ(RegSetValueEx(key.handle, L"T", kTypeString, text, 2 * sizeof(wchar_t)), kSuccess);
    EXPECT_EQ(Text(key.handle, L"T"), L"ab");
    EXPECT_EQ(RegSetValueEx(key.handle, L"T", kTypeString, nullptr, 0), kSuccess);
    EXPECT_EQ(Text(key.handle, L"T"), L"");
}

TEST_F(RegistryStoreChanges, RootsHaveValuesToo) {
    UseFile(SmallRegistry("00000001"));
    EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, L"x", 5), kSuccess);
    EXPECT_EQ(Number(HKEY_LOCAL_MACHINE, L"X"), 5U);
    EXPECT_EQ(RegFlush(), kSuccess);
    EXPECT_EQ(Number(HKEY_LOCAL_MACHINE, L"X"), 5U);
    EXPECT_EQ(RegDeleteValue(HKEY_LOCAL_MACHINE, L"x"), kSuccess);
    EXPECT_EQ(Number(HKEY_LOCAL_MACHINE, L"x"), std::nullopt);
}

// Keys

TEST_F(RegistryStoreChanges, CreatingTellsNewFromExisting) {
    HKEY key = 0;
    uint32_t disposition = 0;
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"A\\B", 0, &key, &disposition), kSuccess);
    EXPECT_EQ(disposition, kCreatedNewKey);
    EXPECT_EQ(RegCloseKey(key), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()),
              kStart + "[HKEY_LOCAL_MACHINE\\A]\r\n\r\n[HKEY_LOCAL_MACHINE\\A\\B]\r\n\r\n");
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"a\\b", 0, &key, &disposition), kSuccess);
    EXPECT_EQ(disposition, kOpenedExistingKey);
    EXPECT_EQ(SetNumber(key, L"x", 1), kSuccess);
    EXPECT_EQ(RegCloseKey(key), kSuccess);
}

TEST_F(RegistryStoreChanges, EnumeratingGivesSubKeysInFileOrderAnd2PastTheLast) {
    UseFile(kStart +
            "[HKEY_LOCAL_MACHINE\\A\\Zeta]\r\n\r\n[HKEY_LOCAL_MACHINE\\A\\Beta\\X]\r\n\r\n" +
            "[HKEY_LOCAL_MACHINE\\A\\Alpha]\r\n\r\n");
    const Key key(HKEY_LOCAL_MACHINE, L"A");
    EXPECT_EQ(SubKeys(key.handle), (std::vector<std::wstring>{L"Zeta", L"Beta", L"Alpha"}));
    wchar_t name[5];
    uint32_t size = std::size(name);
    EXPECT_EQ(RegEnumKey(key.handle, 3, name, &size), 2U);
    EXPECT_EQ(RegEnumKey(key.handle, 0xFFFFFFFF, name, &size), 2U);
    size = 4;
    EXPECT_EQ(RegEnumKey(key.handle, 0, name, &size), kNoMemory);
    EXPECT_EQ(size, 5U);
    EXPECT_EQ(RegEnumKey(key.handle, 0, name, &size), kSuccess);
    EXPECT_EQ(size, 4U);
    EXPECT_STREQ(name, L"Zeta");
}

TEST_F(RegistryStoreChanges, DeletingRemovesOneKeyWithoutSubKeys) {
    UseFile(kStart + "[HKEY_LOCAL_MACHINE\\A]\r\n\r\n[HKEY_LOCAL_MACHINE\\A\\B]\r\n\r\n" +
            "[HKEY_LOCAL_MACHINE\\C]\r\n\r\n");
    EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L"A"), kAccessDenied);
    EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L"a\\b"), kSuccess);
    EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L"a\\b"), kNotFound);
    EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L"A"), kSuccess);
    EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L""), kAccessDenied);
    EXPECT_EQ(SubKeys(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{L"C"});
}

TEST_F(RegistryStoreChanges, DeletionWithoutAnOpenKeyIsWrittenByTheNextFlushOrLastClose) {
    const std::string content =
        kStart + "[HKEY_LOCAL_MACHINE\\A]\r\n\r\n[HKEY_LOCAL_MACHINE\\B]\r\n\r\n";
    for (const bool flush : {true, false}) {
        UseFile(content);
        EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L"A"), kSuccess);
        EXPECT_EQ(ReadFile(UserFile()), content);
        if (flush) {
            EXPECT_EQ(RegFlush(), kSuccess);
        } else {
            EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"B").Close(), kSuccess);
        }
        EXPECT_TRUE(ReadFile(UserFile()).starts_with(kStart + "[HKEY_LOCAL_MACHINE\\B]\r\n\r\n"));
    }
}

TEST_F(RegistryStoreChanges, DeletingATreeRemovesAllBelow) {
    UseFile(kStart + "[HKEY_LOCAL_MACHINE\\A\\B\\C]\r\n\r\n[HKEY_LOCAL_MACHINE\\A\\D]\r\n\r\n" +
            "[HKEY_LOCAL_MACHINE\\E]\r\n\r\n");
    EXPECT_EQ(RegDeleteTree(HKEY_LOCAL_MACHINE, L"None", 0), kNotFound);
    EXPECT_EQ(RegDeleteTree(HKEY_LOCAL_MACHINE, nullptr, 0), kAccessDenied);
    EXPECT_EQ(RegDeleteTree(HKEY_LOCAL_MACHINE, L"a", 0), kSuccess);
    EXPECT_EQ(SubKeys(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{L"E"});
    EXPECT_EQ(RegFlush(), kSuccess);
    EXPECT_TRUE(ReadFile(UserFile()).starts_with(kStart + "[HKEY_LOCAL_MACHINE\\E]\r\n\r\n"));
}

TEST_F(RegistryStoreChanges, HandleOfADeletedKeyFindsNothingAndCanBeClosed) {
    UseFile(SmallRegistry("00000001"));
    Key key(HKEY_LOCAL_MACHINE, L"Key");
    EXPECT_EQ(RegDeleteKey(key.handle, L""), kSuccess);
    EXPECT_EQ(RegQueryValueEx(key.handle, L"Number", nullptr, nullptr, nullptr), kNotFound);
    EXPECT_EQ(SetNumber(key.handle, L"Number", 1), kNotFound);
    EXPECT_EQ(Key(key.handle, L"Sub").error, kNotFound);
    EXPECT_EQ(RegDeleteKey(key.handle, L""), kNotFound);
    HKEY made = 0;
    EXPECT_EQ(RegCreateKeyEx(key.handle, L"Sub", 0, &made, nullptr), kNotFound);
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"Key", 0, &made, nullptr), kSuccess);
    EXPECT_EQ(Number(made, L"Number"), std::nullopt);
    EXPECT_EQ(RegCloseKey(made), kSuccess);
    EXPECT_EQ(key.Close(), kSuccess);
}

TEST_F(RegistryStoreChanges, EnumeratedLatin1NameOpensItsKey) {
    UseFile(kStart +
            "[HKEY_LOCAL_MACHINE\\Stra\xDF"
            "e]\r\n\r\n");
    EXPECT_EQ(SubKeys(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{L"Stra\u00DFe"});
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"Stra\u00DFe").error, kSuccess);
}

}  // namespace
}  // namespace zeldlg::registry
