// Finding and opening keys; handles and their rights.
#include "registry/registry_store.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::Key;
using test::kStart;
using test::Number;
using test::ReadFile;
using test::SetNumber;
using test::SetText;
using test::SmallRegistry;
using test::Text;
using test::WriteFile;

class RegistryStore : public test::RegistryTest {
protected:
    void UseFile(const std::string& content) { WriteFile(UserFile(), content); }

    static std::optional<uint32_t> NumberInKey() {
        return Number(Key(HKEY_LOCAL_MACHINE, L"Key").handle, L"Number");
    }
};

// Finding and opening

TEST_F(RegistryStore, WithZelHomeSetHomeIsIgnored) {
    UseFile(SmallRegistry("00000001"));
    WriteFile(scratch / "other/.tessaly/registry", SmallRegistry("00000002"));
    environment["HOME"] = scratch / "other";
    EXPECT_EQ(NumberInKey(), 1U);
    environment.erase("ZEL_HOME");
    EXPECT_EQ(NumberInKey(), 2U);
}

TEST_F(RegistryStore, UserFileWithTheShippedStampIsKeptWithTheUsersChanges) {
    const std::string stamp = "\"RegistryHash\"=\"one\"\r\n";
    WriteFile(ShippedFile(), SmallRegistry("00000001", stamp));
    {
        const Key key(HKEY_LOCAL_MACHINE, L"Key");
        EXPECT_EQ(SetNumber(key.handle, L"Number", 2), kSuccess);
        EXPECT_EQ(SetText(key.handle, L"Extra", L"mine"), kSuccess);
    }
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    EXPECT_EQ(Number(key.handle, L"Number"), 2U);
    EXPECT_EQ(Text(key.handle, L"Extra"), L"mine");
}

TEST_F(RegistryStore, UserFileWithTheSameStampKeepsExtraKeysAfterLoading) {
    const std::string stamp = "\"RegistryHash\"=\"one\"\r\n";
    WriteFile(ShippedFile(), SmallRegistry("00000001", stamp));
    UseFile(SmallRegistry("00000001", stamp) + "[HKEY_LOCAL_MACHINE\\Mine]\r\n\r\n");
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"Mine").error, kSuccess);
}

TEST_F(RegistryStore, ShippedFileWithoutAStampNeverOverwritesAUserFile) {
    WriteFile(ShippedFile(), SmallRegistry("00000001"));
    UseFile(SmallRegistry("00000002"));
    EXPECT_EQ(NumberInKey(), 2U);
}

TEST_F(RegistryStore, RefreshIsDecidedAtEveryLoad) {
    WriteFile(ShippedFile(), SmallRegistry("00000001", "\"RegistryHash\"=\"one\"\r\n"));
    EXPECT_EQ(NumberInKey(), 1U);
    WriteFile(ShippedFile(), SmallRegistry("00000002", "\"RegistryHash\"=\"two\"\r\n"));
    EXPECT_EQ(NumberInKey(), 2U);
}

TEST_F(RegistryStore, FileWithoutTheSignatureYields1017OnEveryOperation) {
    UseFile("Windows Registry Editor Version 5.00\r\n");
    HKEY key = 0;
    wchar_t name[10];
    uint32_t size = std::size(name);
    EXPECT_EQ(RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Key", 284, &key), 1017U);
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"Key", 0, &key, nullptr), 1017U);
    EXPECT_EQ(RegQueryValueEx(HKEY_LOCAL_MACHINE, L"v", nullptr, nullptr, nullptr), 1017U);
    EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, L"v", 1), 1017U);
    EXPECT_EQ(RegEnumKey(HKEY_LOCAL_MACHINE, 0, name, &size), 1017U);
    EXPECT_EQ(RegDeleteKey(HKEY_LOCAL_MACHINE, L"Key"), 1017U);
    EXPECT_EQ(RegDeleteTree(HKEY_LOCAL_MACHINE, L"Key", 0), 1017U);
    EXPECT_EQ(RegDeleteValue(HKEY_LOCAL_MACHINE, L"v"), 1017U);
    EXPECT_EQ(key, 0U);
    EXPECT_EQ(ReadFile(UserFile()), "Windows Registry Editor Version 5.00\r\n");
}

// No key can be open then, and they read no file: there is nothing that either could complain of.
TEST_F(RegistryStore, FileWithoutTheSignatureIsNoneOfFlushsAndClosesBusiness) {
    UseFile("Windows Registry Editor Version 5.00\r\n");
    HKEY key = 0;
    EXPECT_EQ(RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Key", 284, &key), 1017U);
    EXPECT_EQ(RegFlush(), kSuccess);
    EXPECT_EQ(RegCloseKey(key), kInvalidHandle);
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), kInvalidHandle);
    EXPECT_EQ(ReadFile(UserFile()), "Windows Registry Editor Version 5.00\r\n");
}

TEST_F(RegistryStore, SectionHeaderWithoutLineEndYields1015AtTheFirstOpening) {
    UseFile(SmallRegistry("00000001") + "[HKEY_LOCAL_MACHINE\\Other]");
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"Key").error, 1015U);
}

TEST_F(RegistryStore, FailedLoadIsTriedAgainByTheNextOperation) {
    UseFile("broken");
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"Key").error, kNotRegistry);
    UseFile(SmallRegistry("00000003"));
    EXPECT_EQ(NumberInKey(), 3U);
}

TEST_F(RegistryStore, KeyIsFoundWithItsPathInLowerCase) {
    UseFile(kStart +
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0]\r\n\"LimitPinToAscii\""
            "=dword:00000001\r\n\r\n");
    const Key key(HKEY_LOCAL_MACHINE, L"software\\corvenna\\tessaly\\2.0");
    EXPECT_EQ(key.error, kSuccess);
    EXPECT_EQ(Number(key.handle, L"limitpintoascii"), 1U);
}

TEST_F(RegistryStore, ThreeRootsLiveInOneFile) {
    UseFile(kStart + "[HKEY_CLASSES_ROOT\\A]\r\n\r\n[HKEY_CURRENT_USER\\B]\r\n\r\n" +
            "[HKEY_LOCAL_MACHINE\\C]\r\n\r\n");
    EXPECT_EQ(Key(HKEY_CLASSES_ROOT, L"A").error, kSuccess);
    EXPECT_EQ(Key(HKEY_CURRENT_USER, L"B").error, kSuccess);
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"C").error, kSuccess);
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"A").error, kNotFound);
    EXPECT_EQ(Key(0x80000003, L"A").error, kInvalidHandle);
}

TEST_F(RegistryStore, BackslashesAtTheEndsOfAPathMakeNoDifference) {
    UseFile(kStart + "[HKEY_LOCAL_MACHINE\\A\\B]\r\n\r\n");
    for (const wchar_t* path : {L"A\\B", L"\\A\\B", L"A\\B\\", L"\\A\\B\\"}) {
        EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, path).error, kSuccess) << testing::PrintToString(path);
    }
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, L"A\\\\B").error, kNotFound);
}

TEST_F(RegistryStore, PathBelowAKeyWhoseNameEndsWithABackslashHasOneBackslashThere) {
    UseFile(kStart + "[HKEY_LOCAL_MACHINE\\A\\]\r\n\r\n[HKEY_LOCAL_MACHINE\\A\\B]\r\n\r\n");
    const Key key(HKEY_LOCAL_MACHINE, L"A\\\\");
    ASSERT_EQ(key.error, kSuccess);
    EXPECT_EQ(Key(key.handle, L"B").error, kSuccess);
}

TEST_F(RegistryStore, PathIsRelativeToAnOpenKey) {
    UseFile(kStart + "[HKEY_LOCAL_MACHINE\\A\\B]\r\n\"x\"=dword:00000001\r\n\r\n");
    const Key parent(HKEY_LOCAL_MACHINE, L"a");
    const Key child(parent.handle, L"b");
    EXPECT_EQ(Number(child.handle, L"x"), 1U);
}

TEST_F(RegistryStore, EmptyPathIsTheKeyItself) {
    UseFile(SmallRegistry("00000004"));
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    for (const wchar_t* path : {static_cast<const wchar_t*>(nullptr), L"", L"\\"}) {
        EXPECT_EQ(Number(Key(key.handle, path).handle, L"Number"), 4U);
        EXPECT_EQ(Key(HKEY_CLASSES_ROOT, path).error, kSuccess);
    }
}

TEST_F(RegistryStore, FullNameHasAtMost260Bytes) {
    const std::string name(260 - std::string("HKEY_LOCAL_MACHINE\\").size(), 'n');
    UseFile(kStart + "[HKEY_LOCAL_MACHINE\\" + name + "]\r\n\r\n[HKEY_LOCAL_MACHINE\\" + name +
            "x]\r\n\r\n");
    const std::wstring wide(name.begin(), name.end());
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, wide.c_str()).error, kSuccess);
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, (wide + L"x").c_str()).error, kNotFound);
    HKEY key = 0;
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, (wide + L"x").c_str(), 0, &key, nullptr),
              kNotFound);
    EXPECT_EQ(Key(HKEY_LOCAL_MACHINE, std::wstring(100000, L'n').c_str()).error, kNotFound);
}

TEST_F(RegistryStore, Latin1NamesAndTextsOfAFileAreReadAndMatched) {
    UseFile(kStart +
            "[HKEY_LOCAL_MACHINE\\Stra\xDF"
            "e]\r\n\"Gr\xF6\xDF"
            "e\"=\"caf\xE9\"\r\n\r\n");
    const Key key(HKEY_LOCAL_MACHINE, L"stra\u00DFe");
    EXPECT_EQ(Text(key.handle, L"GR\u00D6\u00DFE"), L"caf\u00E9");
}

TEST_F(RegistryStore, SeveralHandlesShareOneKey) {
    UseFile(SmallRegistry("00000001"));
    Key first(HKEY_LOCAL_MACHINE, L"Key");
    Key second(HKEY_LOCAL_MACHINE, L"KEY");
    EXPECT_NE(first.handle, second.handle);
    EXPECT_EQ(SetNumber(first.handle, L"Number", 9), kSuccess);
    EXPECT_EQ(first.Close(), kSuccess);
    EXPECT_EQ(Number(second.handle, L"Number"), 9U);
}

TEST_F(RegistryStore, ChangesOfOthersAreSeenWhenNoKeyIsOpen) {
    UseFile(SmallRegistry("00000001"));
    EXPECT_EQ(NumberInKey(), 1U);
    UseFile(SmallRegistry("00000002"));
    EXPECT_EQ(NumberInKey(), 2U);
    const Key held(HKEY_LOCAL_MACHINE, L"Key");
    UseFile(SmallRegistry("00000003"));
    EXPECT_EQ(NumberInKey(), 2U);
}

TEST_F(RegistryStore, TwoThousandOpenKeysAreServedQuicklyAndRightly) {
    std::string content = kStart;
    for (int i = 0; i < 2000; ++i) {
        content += "[HKEY_LOCAL_MACHINE\\K" + std::to_string(i) +
                   "]\r\n\"i\"=dword:" + (i % 2 == 0 ? "00000000" : "00000001") + "\r\n\r\n";
    }
    UseFile(content);
    std::vector<std::unique_ptr<Key>> keys;
    for (int i = 0; i < 2000; ++i) {
        keys.push_back(
            std::make_unique<Key>(HKEY_LOCAL_MACHINE, (L"k" + std::to_wstring(i)).c_str()));
        ASSERT_EQ(Number(keys.back()->handle, L"I"), static_cast<uint32_t>(i % 2)) << i;
    }
}

// Handles and rights

TEST_F(RegistryStore, ClosingARootIsRefused) {
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), 6U);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), 6U);
    EXPECT_EQ(RegCloseKey(HKEY_CLASSES_ROOT), 6U);
}

TEST_F(RegistryStore, StaleAndBogusHandlesAreInvalid) {
    UseFile(SmallRegistry("00000001"));
    Key closed(HKEY_LOCAL_MACHINE, L"Key");
    const HKEY stale = closed.handle;
    closed.Close();
    const Key open(HKEY_LOCAL_MACHINE, L"Key");
    HKEY key = 0;
    wchar_t name[10];
    uint32_t size = std::size(name);
    for (const HKEY bad : {HKEY{0}, HKEY{1}, stale, open.handle + 1, HKEY{0x7FFFFFFF},
                           std::numeric_limits<HKEY>::max()}) {
        EXPECT_EQ(RegOpenKeyEx(bad, L"Key", 284, &key), kInvalidHandle) << bad;
        EXPECT_EQ(RegCreateKeyEx(bad, L"Key", 0, &key, nullptr), kInvalidHandle) << bad;
        EXPECT_EQ(RegQueryValueEx(bad, L"Number", nullptr, nullptr, nullptr), kInvalidHandle);
        EXPECT_EQ(SetNumber(bad, L"Number", 1), kInvalidHandle) << bad;
        EXPECT_EQ(RegEnumKey(bad, 0, name, &size), kInvalidHandle) << bad;
        EXPECT_EQ(RegDeleteKey(bad, L"Key"), kInvalidHandle) << bad;
        EXPECT_EQ(RegDeleteTree(bad, L"Key", 0), kInvalidHandle) << bad;
        EXPECT_EQ(RegDeleteValue(bad, L"Number"), kInvalidHandle) << bad;
        EXPECT_EQ(RegCloseKey(bad), kInvalidHandle) << bad;
    }
}

TEST_F(RegistryStore, EachOperationNeedsItsBit) {
    UseFile(SmallRegistry("00000001") + "[HKEY_LOCAL_MACHINE\\Key\\Sub]\r\n\r\n");
    for (const uint32_t access : {0x0U, 0x04U, 0x08U, 0x10U, 0x1CU, 284U, ~0x1CU, ~0U}) {
        const Key key(HKEY_LOCAL_MACHINE, L"Key", access);
        const auto expect = [access](RegistryError error, uint32_t bit) {
            EXPECT_EQ(error, (access & bit) != 0 ? kSuccess : kAccessDenied)
                << "access " << access << ", bit " << bit;
        };
        uint32_t size = 0;
        wchar_t name[10];
        uint32_t length = std::size(name);
        HKEY made = 0;
        expect(SetNumber(key.handle, L"Other", 1), 0x08);
        expect(RegQueryValueEx(key.handle, L"Number", nullptr, nullptr, &size), 0x04);
        expect(RegDeleteValue(key.handle, L"Other"), 0x08);
        expect(RegEnumKey(key.handle, 0, name, &length), 0x10);
        expect(RegCreateKeyEx(key.handle, L"New", 0, &made, nullptr), 0x10);
        if (made != 0) {
            RegCloseKey(made);
        }
        expect(RegDeleteKey(key.handle, L"New"), 0x10);
        EXPECT_EQ(Key(key.handle, L"Sub").error, kSuccess);
    }
}

TEST_F(RegistryStore, RequiredPointersThatAreNullYield1) {
    UseFile(SmallRegistry("00000001"));
    const Key key(HKEY_LOCAL_MACHINE, L"Key");
    uint32_t size = 4;
    wchar_t name[10];
    EXPECT_EQ(RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Key", 284, nullptr), 1U);
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"Key", 0, nullptr, nullptr), 1U);
    EXPECT_EQ(RegQueryValueEx(key.handle, L"Number", nullptr, name, nullptr), 1U);
    EXPECT_EQ(RegSetValueEx(key.handle, L"Number", kTypeBinary, nullptr, 1), 1U);
    EXPECT_EQ(RegEnumKey(key.handle, 0, nullptr, &size), 1U);
    EXPECT_EQ(RegEnumKey(key.handle, 0, name, nullptr), 1U);
    EXPECT_EQ(RegQueryValueEx(key.handle, L"Number", nullptr, nullptr, nullptr), kSuccess);
}

}  // namespace
}  // namespace zeldlg::registry
