// The configuration store on file systems that are full, read-only or hold the unexpected.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "registry/registry_file.h"
#include "registry/registry_refresh.h"
#include "registry/registry_store.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::BecomeOrdinaryUser;
using test::InChild;
using test::Key;
using test::Mode;
using test::Number;
using test::ReadFile;
using test::SetNumber;
using test::SmallRegistry;
using test::WriteFile;

/// What NumberInKey() gives when the key or value is missing.
constexpr int kNoNumber = 99;

class RegistryFaults : public test::RegistryTest {
protected:
    void TearDown() override {
        chmod((scratch / "").c_str(), 0755);
        chmod((scratch / "home").c_str(), 0755);
        RegistryTest::TearDown();
    }

    /// Lets nobody but root make anything in the home or a temporary directory.
    void ForbidNewFiles() {
        ASSERT_EQ(chmod((scratch / "home").c_str(), 0555), 0);
        ASSERT_EQ(chmod((scratch / "").c_str(), 0555), 0);
    }

    static int NumberInKey() {
        const Key key(HKEY_LOCAL_MACHINE, L"Key");
        return static_cast<int>(Number(key.handle, L"Number").value_or(kNoNumber));
    }

    /// Sets the number to 7 and closes. @return 0, 10 when it could not be set, 20 when the close
    /// reported a failure
    static int SetSeven() {
        Key key(HKEY_LOCAL_MACHINE, L"Key");
        if (SetNumber(key.handle, L"Number", 7) != kSuccess) {
            return 10;
        }
        return key.Close() == kSuccess ? 0 : 20;
    }

    /// As SetSeven(), by a user to whom file modes apply.
    static int SetSevenAsOrdinaryUser() {
        return InChild([] { return BecomeOrdinaryUser() ? SetSeven() : 90; });
    }

    static int NumberAsOrdinaryUser() {
        return InChild([] { return BecomeOrdinaryUser() ? NumberInKey() : 90; });
    }

    /// Something that is no regular file in the user file's place.
    void ExpectShippedInsteadOfUserFile() {
        WriteFile(ShippedFile(), SmallRegistry("00000005", "\"RegistryHash\"=\"one\"\r\n"));
        EXPECT_EQ(NumberInKey(), 5);
        EXPECT_EQ(SetSeven(), 0);  // goes to the user's temporary directory
        EXPECT_TRUE(ReadFile(UserTemporaryFile()).find("dword:00000007") != std::string::npos);
        EXPECT_EQ(NumberInKey(), 7);
    }
};

TEST_F(RegistryFaults, DirectoryInTheFilesPlaceIsPassedOver) {
    std::filesystem::create_directories(UserFile());
    ExpectShippedInsteadOfUserFile();
}

TEST_F(RegistryFaults, FifoInTheFilesPlaceIsPassedOverWithoutWaiting) {
    std::filesystem::create_directories(UserDirectoryPath());
    ASSERT_EQ(mkfifo(UserFile().c_str(), 0600), 0);
    ExpectShippedInsteadOfUserFile();
}

TEST_F(RegistryFaults, DeviceInTheFilesPlaceIsPassedOver) {
    std::filesystem::create_directories(UserDirectoryPath());
    std::filesystem::create_symlink("/dev/zero", UserFile());
    ExpectShippedInsteadOfUserFile();
}

TEST_F(RegistryFaults, LoopOfSymbolicLinksInTheFilesPlaceIsPassedOver) {
    std::filesystem::create_directories(UserDirectoryPath());
    std::filesystem::create_symlink(UserFile(), UserFile());
    ExpectShippedInsteadOfUserFile();
}

TEST_F(RegistryFaults, HomeThatIsAFileIsPassedOver) {
    WriteFile(scratch / "file", "no directory");
    environment["ZEL_HOME"] = scratch / "file";
    ExpectShippedInsteadOfUserFile();
}

TEST_F(RegistryFaults, HomeThatDoesNotExistIsNotMade) {
    environment["ZEL_HOME"] = scratch / "no/such/home";
    ExpectShippedInsteadOfUserFile();
    EXPECT_FALSE(std::filesystem::exists(scratch / "no"));
}

TEST_F(RegistryFaults, ShippedFileThatIsADirectoryOrFifoCountsAsMissing) {
    std::filesystem::create_directories(ShippedFile());
    WriteFile(SystemFile(), SmallRegistry("00000006"));
    EXPECT_EQ(NumberInKey(), 6);
    std::filesystem::remove(ShippedFile());
    ASSERT_EQ(mkfifo(ShippedFile().c_str(), 0600), 0);
    EXPECT_EQ(NumberInKey(), 6);
}

TEST_F(RegistryFaults, UnreadableHomeGivesTheShippedFile) {
    WriteFile(ShippedFile(), SmallRegistry("00000005", "\"RegistryHash\"=\"one\"\r\n"));
    WriteFile(UserFile(), SmallRegistry("00000006"));
    ForbidNewFiles();
    ASSERT_EQ(chmod((scratch / "home").c_str(), 0), 0);
    EXPECT_EQ(NumberAsOrdinaryUser(), 5);
    EXPECT_EQ(SetSevenAsOrdinaryUser(), 20);
    ASSERT_EQ(chmod((scratch / "home").c_str(), 0755), 0);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000006"));
}

TEST_F(RegistryFaults, UnreadableUserFileIsLeftAsItIs) {
    WriteFile(ShippedFile(), SmallRegistry("00000005", "\"RegistryHash\"=\"one\"\r\n"));
    WriteFile(UserFile(), SmallRegistry("00000006"));
    ASSERT_EQ(chmod(UserFile().c_str(), 0222), 0);
    EXPECT_EQ(NumberAsOrdinaryUser(), 5);
    ASSERT_EQ(chmod(UserFile().c_str(), 0644), 0);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000006"));
}

TEST_F(RegistryFaults, ReadOnlyHomeIsReadAndAFailedWriteIsReported) {
    WriteFile(UserFile(), SmallRegistry("00000006"));
    ASSERT_EQ(chmod(UserFile().c_str(), 0444), 0);
    ForbidNewFiles();
    EXPECT_EQ(NumberAsOrdinaryUser(), 6);
    EXPECT_EQ(SetSevenAsOrdinaryUser(), 20);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000006"));
}

// kept: the change goes where nothing reads it as long as the user's file can be read.
TEST_F(RegistryFaults, ReadOnlyUserFileKeepsItsSettingsAndTheChangeGoesToTheTemporaryFile) {
    WriteFile(UserFile(), SmallRegistry("00000006"));
    ASSERT_EQ(chmod(UserFile().c_str(), 0444), 0);
    ASSERT_EQ(chmod((scratch / "").c_str(), 0777), 0);
    EXPECT_EQ(SetSevenAsOrdinaryUser(), 0);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000006"));
    EXPECT_EQ(ReadFile(UserTemporaryFile()), SmallRegistry("00000007"));
    EXPECT_EQ(NumberAsOrdinaryUser(), 6);
    std::filesystem::remove(UserFile());
    EXPECT_EQ(NumberInKey(), 7);
}

TEST_F(RegistryFaults, ReadOnlyHomeWithoutAFileGivesTheShippedOne) {
    WriteFile(ShippedFile(), SmallRegistry("00000005", "\"RegistryHash\"=\"one\"\r\n"));
    ForbidNewFiles();
    EXPECT_EQ(NumberAsOrdinaryUser(), 5);
    EXPECT_FALSE(std::filesystem::exists(UserDirectoryPath()));
}

TEST_F(RegistryFaults, NothingToReadAndNowhereToWriteYields1016) {
    ForbidNewFiles();
    EXPECT_EQ(InChild([] {
                  if (!BecomeOrdinaryUser()) {
                      return 90;
                  }
                  return Key(HKEY_LOCAL_MACHINE, L"Key").error == 1016 ? 0 : 1;
              }),
              0);
}

TEST_F(RegistryFaults, WithoutUserTheTemporaryDirectoryForEveryoneIsUsed) {
    environment.clear();
    HKEY key = 0;
    EXPECT_EQ(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"Key", 0, &key, nullptr), kSuccess);
    EXPECT_EQ(RegCloseKey(key), kSuccess);
    EXPECT_EQ(ReadFile(SharedTemporaryFile()), "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\Key]\r\n\r\n");
}

TEST_F(RegistryFaults, HomeFromDriveAndPathOf260BytesIsNotUsed) {
    const std::string home = scratch / "home";
    WriteFile(UserFile(), SmallRegistry("00000006"));
    WriteFile(ShippedFile(), SmallRegistry("00000005"));
    // The same directory, spelled with as many slashes as it takes.
    environment = {{"HOMEDRIVE", home}, {"HOMEPATH", std::string(259 - home.size(), '/')}};
    EXPECT_EQ(NumberInKey(), 6);
    environment["HOMEPATH"] += '/';
    EXPECT_EQ(NumberInKey(), 5);
}

TEST_F(RegistryFaults, FileThatVanishesBetweenRefreshAndOpenGivesTheNextOne) {
    WriteFile(ShippedFile(), SmallRegistry("00000005"));
    WriteFile(UserFile(), SmallRegistry("00000006"));
    int homes = 0;
    onLookUp = [&](std::string_view name) {
        if (name == "ZEL_HOME" && ++homes == 2) {
            std::filesystem::remove(UserFile());
        }
    };
    EXPECT_EQ(NumberInKey(), 5);
    EXPECT_EQ(homes, 2);
}

TEST_F(RegistryFaults, UserFileDeletedWhileAKeyIsOpenIsMadeAgain) {
    WriteFile(UserFile(), SmallRegistry("00000006"));
    Key key(HKEY_LOCAL_MACHINE, L"Key");
    std::filesystem::remove_all(UserDirectoryPath());
    EXPECT_EQ(SetNumber(key.handle, L"Number", 10), kSuccess);
    EXPECT_EQ(key.Close(), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("0000000a"));
}

/// Lets no file grow beyond `bytes`: writing on fails as on a full file system.
void LimitFileSize(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(RegistryFaults, FullFileSystemWhileWritingIsReportedAndWhatWasWrittenStays) {
    std::string more;
    for (int i = 0; i < 3000; ++i) {
        more += "\"v" + std::to_string(i) + "\"=dword:00000001\r\n";
    }
    WriteFile(UserFile(), SmallRegistry("00000006", more));
    EXPECT_EQ(InChild([] {
                  LimitFileSize(20000);
                  return SetSeven();
              }),
              20);
    EXPECT_EQ(ReadFile(UserFile()).substr(0, 60), SmallRegistry("00000007").substr(0, 60));
    EXPECT_EQ(ReadFile(UserFile()).size(), SmallRegistry("00000006", more).size());
}

TEST_F(RegistryFaults, CopyThatDoesNotFitLeavesNoBeginningOfAFileBehind) {
    std::string more;
    for (int i = 0; i < 3000; ++i) {
        more += "\"v" + std::to_string(i) + "\"=dword:00000001\r\n";
    }
    WriteFile(ShippedFile(), SmallRegistry("00000005", more));
    EXPECT_EQ(InChild([] {
                  LimitFileSize(20000);
                  return NumberInKey();
              }),
              5);
    EXPECT_FALSE(std::filesystem::exists(UserFile()));
}

TEST_F(RegistryFaults, NewFileThatCannotHoldItsFirstLineIsNotLeftBehind) {
    EXPECT_EQ(InChild([] {
                  LimitFileSize(4);
                  return Key(HKEY_LOCAL_MACHINE, L"Key").error == kFileError ? 0 : 1;
              }),
              0);
    EXPECT_FALSE(std::filesystem::exists(UserFile()));
    EXPECT_FALSE(std::filesystem::exists(SharedTemporaryFile()));
}

TEST_F(RegistryFaults, HomeOnAFullFileSystemGivesTheShippedFile) {
    WriteFile(ShippedFile(), SmallRegistry("00000005", std::string(8000, ';').append("\r\n")));
    const std::string home = scratch / "home";
    const int result = InChild([&] {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", home.c_str(), "tmpfs", 0, "size=4k") != 0) {
            return 80;
        }
        std::filesystem::create_directories(home + "/.tessaly");
        const int number = NumberInKey();
        return std::filesystem::exists(home + "/.tessaly/registry") ? 70 : number;
    });
    if (result == 80) {
        GTEST_SKIP() << "mounting is not permitted here";
    }
    EXPECT_EQ(result, 5);
}

TEST_F(RegistryFaults, RestrictiveUmaskAppliesToWhatIsMade) {
    const mode_t old = umask(077);
    WriteFile(ShippedFile(), SmallRegistry("00000005"));
    EXPECT_EQ(NumberInKey(), 5);
    umask(old);
    EXPECT_EQ(Mode(UserFile()), 0700U);
}

}  // namespace
}  // namespace zeldlg::registry
