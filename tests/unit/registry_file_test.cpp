// Where the registry file is found, made, refreshed and written.
#include "registry/registry_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "registry/registry_refresh.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::Mode;
using test::ReadFile;
using test::SmallRegistry;
using test::WriteFile;

class RegistryFile : public test::RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        m_oldMask = umask(0);  // the modes asked for are the modes seen
    }
    void TearDown() override {
        umask(m_oldMask);
        RegistryTest::TearDown();
    }

    /// The content of the file that would be loaded.
    std::string Opened() {
        FileContent content;
        const FileDescriptor file = OpenForReading(Places()).file;
        if (!file.IsOpen() || ReadContent(file, content) != kSuccess) {
            return "none";
        }
        return {content.text.get(), content.size};
    }

    static std::string Diagnostic(int error) {
        return "v0:" + std::to_string(getpid()) + ":The registry cannot be read: error " +
               std::to_string(error) + "\n";
    }

private:
    mode_t m_oldMask = 0;
};

using RegistryRefresh = RegistryFile;

TEST(RegistryPlaces, ShippedDefaults) {
    const RegistryPlaces places;
    EXPECT_EQ(RegistryPath(places.shippedDirectory), "/usr/share/tessaly/registry");
    EXPECT_EQ(RegistryPath(places.systemDirectory), "/etc/tessaly/registry");
    EXPECT_EQ(SharedTemporaryDirectory(places), "/tmptmpregistry-nobody");
}

TEST_F(RegistryFile, WithZelHomeSetHomeIsIgnored) {
    environment = {{"ZEL_HOME", "/zel"}, {"HOME", "/home"}};
    EXPECT_EQ(UserDirectory(Places()), "/zel/.tessaly");
}

TEST_F(RegistryFile, EmptyZelHomeCountsAsSet) {
    environment = {{"ZEL_HOME", ""}, {"HOME", "/home"}};
    EXPECT_EQ(UserDirectory(Places()), "/.tessaly");
}

TEST_F(RegistryFile, WithoutZelHomeTheUserDirectoryIsUnderHome) {
    environment = {{"HOME", "/home"}, {"HOMEDRIVE", "/drive"}, {"HOMEPATH", "/path"}};
    EXPECT_EQ(UserDirectory(Places()), "/home/.tessaly");
}

TEST_F(RegistryFile, HomeDriveAndHomePathAreTheLastChoiceAndBothNeeded) {
    environment = {{"HOMEDRIVE", "/drive"}, {"HOMEPATH", "/path"}};
    EXPECT_EQ(UserDirectory(Places()), "/drive/path/.tessaly");
    environment = {{"HOMEDRIVE", "/drive"}};
    EXPECT_EQ(UserDirectory(Places()), std::nullopt);
    environment = {{"HOMEPATH", "/path"}};
    EXPECT_EQ(UserDirectory(Places()), std::nullopt);
}

TEST_F(RegistryFile, HomeDriveAndHomePathMayHave259BytesTogether) {
    const std::string drive = "/drive";
    environment = {{"HOMEDRIVE", drive}, {"HOMEPATH", std::string(259 - drive.size(), 'p')}};
    EXPECT_EQ(UserDirectory(Places())->size(), 259 + std::string("/.tessaly").size());
    environment["HOMEPATH"] += 'p';
    EXPECT_EQ(UserDirectory(Places()), std::nullopt);
}

TEST_F(RegistryFile, TemporaryDirectoryHasNoSlashAfterThePrefix) {
    environment = {{"USER", "jo"}};
    EXPECT_EQ(
        UserTemporaryDirectory({.temporaryPrefix = "/tmp", .environment = Places().environment}),
        "/tmptmpregistry-jo");
    environment.clear();
    EXPECT_EQ(UserTemporaryDirectory(Places()), std::nullopt);
}

TEST_F(RegistryFile, FilesAreTriedInTheirOrder) {
    WriteFile(UserFile(), "user");
    WriteFile(UserTemporaryFile(), "temporary");
    WriteFile(ShippedFile(), "shipped");
    WriteFile(SystemFile(), "system");
    for (const auto& [content, path] :
         {std::pair("user", UserFile()), std::pair("temporary", UserTemporaryFile()),
          std::pair("shipped", ShippedFile()), std::pair("system", SystemFile())}) {
        EXPECT_EQ(Opened(), content);
        std::filesystem::remove(path);
    }
}

TEST_F(RegistryFile, WithoutAnyFileAnEmptyOneIsMadeInTheUserDirectory) {
    EXPECT_EQ(Opened(), "REGEDIT4\r\n\r\n");
    EXPECT_EQ(ReadFile(UserFile()), "REGEDIT4\r\n\r\n");
    EXPECT_EQ(Mode(UserDirectoryPath()), 0700U);
    EXPECT_EQ(Mode(UserFile()), 0600U);
}

TEST_F(RegistryFile, WithoutAUserDirectoryTheTemporaryOneOfTheUserIsMade) {
    environment.erase("ZEL_HOME");
    EXPECT_EQ(Opened(), "REGEDIT4\r\n\r\n");
    EXPECT_EQ(ReadFile(UserTemporaryFile()), "REGEDIT4\r\n\r\n");
    EXPECT_EQ(Mode(std::filesystem::path(UserTemporaryFile()).parent_path()), 0700U);
    EXPECT_EQ(Mode(UserTemporaryFile()), 0600U);
}

TEST_F(RegistryFile, WithoutHomeAndUserTheTemporaryDirectoryForEveryoneIsMade) {
    environment.clear();
    EXPECT_EQ(Opened(), "REGEDIT4\r\n\r\n");
    EXPECT_EQ(ReadFile(SharedTemporaryFile()), "REGEDIT4\r\n\r\n");
    EXPECT_EQ(Mode(std::filesystem::path(SharedTemporaryFile()).parent_path()), 0777U);
    EXPECT_EQ(Mode(SharedTemporaryFile()), 0600U);
}

TEST_F(RegistryFile, OpeningForWritingKeepsAFileAndNeverTakesAShippedOne) {
    WriteFile(ShippedFile(), "shipped");
    WriteFile(SystemFile(), "system");
    environment.clear();
    EXPECT_TRUE(OpenForWriting(Places()).IsOpen());
    EXPECT_EQ(ReadFile(SharedTemporaryFile()), "REGEDIT4\r\n\r\n");
    WriteFile(SharedTemporaryFile(), "kept");
    EXPECT_TRUE(OpenForWriting(Places()).IsOpen());
    EXPECT_EQ(ReadFile(SharedTemporaryFile()), "kept");
    EXPECT_EQ(ReadFile(ShippedFile()), "shipped");
    EXPECT_EQ(ReadFile(SystemFile()), "system");
}

TEST_F(RegistryFile, SymbolicLinksAreFollowed) {
    WriteFile(scratch / "elsewhere/file", "linked");
    std::filesystem::create_directories(UserDirectoryPath());
    std::filesystem::create_symlink(scratch / "elsewhere/file", UserFile());
    EXPECT_EQ(Opened(), "linked");
}

TEST_F(RegistryFile, ContentIsReadWholeAndEndsWithAZeroByte) {
    WriteFile(UserFile(), std::string(100000, 'x'));
    FileContent content;
    ASSERT_EQ(ReadContent(FileDescriptor::Open(UserFile(), O_RDONLY), content), kSuccess);
    EXPECT_EQ(content.size, 100000U);
    EXPECT_EQ(content.text[100000], '\0');
}

TEST_F(RegistryFile, FileThatShrinksWhileItIsReadIsAnErrorWithADiagnostic) {
    WriteFile(UserFile(), "REGEDIT4\r\n\r\n");
    const FileDescriptor file = FileDescriptor::Open(UserFile(), O_RDONLY);
    std::filesystem::resize_file(UserFile(), 4);
    FileContent content;
    testing::internal::CaptureStdout();
    EXPECT_EQ(ReadContent(file, content), kFileError);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), Diagnostic(0));
    EXPECT_EQ(content.text, nullptr);
}

TEST_F(RegistryFile, FileThatCannotBeReadIsAnErrorWithItsNumber) {
    WriteFile(UserFile(), "REGEDIT4\r\n\r\n");
    const FileDescriptor file = FileDescriptor::Open(UserFile(), O_WRONLY);
    FileContent content;
    testing::internal::CaptureStdout();
    EXPECT_EQ(ReadContent(file, content), kFileError);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), Diagnostic(EBADF));
}

TEST_F(RegistryFile, FileTooBigForMemoryIsNotRead) {
    WriteFile(UserFile(), "REGEDIT4");
    std::filesystem::resize_file(UserFile(), (256ULL << 20U) + 1);  // sparse
    FileContent content;
    EXPECT_EQ(ReadContent(FileDescriptor::Open(UserFile(), O_RDONLY), content), kNoMemory);
}

TEST_F(RegistryFile, LinesAreWrittenWithCrLfOverTheOldContentWithoutTruncating) {
    WriteFile(UserFile(), "0123456789ABCDEF");
    const FileDescriptor file = FileDescriptor::Open(UserFile(), O_RDWR);
    RegistryWriter writer(file);
    EXPECT_TRUE(writer.WriteLine("one"));
    EXPECT_TRUE(writer.WriteLine(""));
    EXPECT_TRUE(writer.WriteLine("two"));
    EXPECT_TRUE(writer.Finish());
    EXPECT_EQ(ReadFile(UserFile()), "one\r\n\r\ntwo\r\nCDEF");
}

TEST_F(RegistryFile, AWrittenLineHasAtMost16383CharactersWithItsLineEnd) {
    WriteFile(UserFile(), "");
    const FileDescriptor file = FileDescriptor::Open(UserFile(), O_RDWR);
    RegistryWriter writer(file);
    EXPECT_TRUE(writer.WriteLine(std::string(16381, 'a')));
    EXPECT_TRUE(writer.WriteLine(std::string(16382, 'b')));
    EXPECT_TRUE(writer.WriteLine("c"));
    EXPECT_TRUE(writer.Finish());
    EXPECT_EQ(ReadFile(UserFile()),
              std::string(16381, 'a') + "\r\n" + std::string(16381, 'b') + "\r\nc\r\n");
}

TEST_F(RegistryFile, ManyLinesArriveInOrder) {
    WriteFile(UserFile(), "");
    std::string expected;
    {
        const FileDescriptor file = FileDescriptor::Open(UserFile(), O_RDWR);
        RegistryWriter writer(file);
        for (int i = 0; i < 20000; ++i) {
            const std::string line = "line " + std::to_string(i);
            ASSERT_TRUE(writer.WriteLine(line));
            expected += line + "\r\n";
        }
        EXPECT_TRUE(writer.Finish());
    }
    EXPECT_EQ(ReadFile(UserFile()), expected);
}

TEST_F(RegistryFile, FailedWritesAreReported) {
    WriteFile(UserFile(), "REGEDIT4\r\n\r\n");
    const FileDescriptor file = FileDescriptor::Open(UserFile(), O_RDONLY);
    RegistryWriter writer(file);
    EXPECT_TRUE(writer.WriteLine("still in the buffer"));
    EXPECT_FALSE(writer.WriteLine(std::string(16381, 'x')));
    EXPECT_FALSE(writer.WriteLine("after a failure"));
    EXPECT_FALSE(writer.Finish());
    EXPECT_EQ(ReadFile(UserFile()), "REGEDIT4\r\n\r\n");
}

TEST_F(RegistryRefresh, StampIsTheRestOfTheFirstLineThatHasOne) {
    const std::string mark = R"("RegistryHash"=")";
    const struct {
        std::string content;
        std::optional<std::string> stamp;
    } rows[] = {
        {"", std::nullopt},
        {"REGEDIT4\r\n", std::nullopt},
        {"\"registryhash\"=\"a\"\r\n", std::nullopt},
        {"\"RegistryHash\"=\"a\"\r\n", "\"RegistryHash\"=\"a\"\r\n"},
        {"xx\"RegistryHash\"=\"a\" yy\n\"RegistryHash\"=\"b\"\n", "\"RegistryHash\"=\"a\" yy\n"},
        {"x\n" + mark + "end", mark + "end"},
        {std::string(65530, 'x') + "\n\"RegistryHash\"=\"far\"\n", "\"RegistryHash\"=\"far\"\n"},
        {std::string(65536 * 2 - 8, 'x') + mark + std::string(70000, 's') + "\"\nz",
         mark + std::string(70000, 's') + "\"\n"},
    };
    for (const auto& row : rows) {
        WriteFile(scratch / "file", row.content);
        const RegistryStamp stamp = ReadStamp(scratch / "file");
        EXPECT_TRUE(stamp.readable);
        EXPECT_EQ(stamp.text, row.stamp) << row.content.substr(0, 100);
    }
    EXPECT_FALSE(ReadStamp(scratch / "no such file").readable);
}

const std::string kStampOne = "\"RegistryHash\"=\"one\"\r\n";
const std::string kStampTwo = "\"RegistryHash\"=\"two\"\r\n";

TEST_F(RegistryRefresh, MissingUserFileIsMadeFromTheShippedOne) {
    WriteFile(ShippedFile(), SmallRegistry("00000001"));
    RefreshUserFile(Places());
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001"));
    EXPECT_EQ(Mode(UserDirectoryPath()), 0700U);
    EXPECT_EQ(Mode(UserFile()), 0766U);
}

TEST_F(RegistryRefresh, MissingUserFileIsMadeWhereASymbolicLinkLeads) {
    WriteFile(ShippedFile(), SmallRegistry("00000001", kStampOne));
    std::filesystem::create_directories(UserDirectoryPath());
    std::filesystem::create_symlink(scratch / "linked", UserFile());
    RefreshUserFile(Places());
    EXPECT_EQ(ReadFile(scratch / "linked"), SmallRegistry("00000001", kStampOne));
    EXPECT_TRUE(std::filesystem::is_symlink(UserFile()));
}

TEST_F(RegistryRefresh, UserFileWithTheSameStampIsKept) {
    WriteFile(ShippedFile(), SmallRegistry("00000001", kStampOne));
    WriteFile(UserFile(), SmallRegistry("00000002", kStampOne));
    RefreshUserFile(Places());
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000002", kStampOne));
}

TEST_F(RegistryRefresh, ShippedFileWithoutAStampNeverOverwritesAUserFile) {
    WriteFile(ShippedFile(), SmallRegistry("00000001"));
    for (const std::string& stamp : {std::string(), kStampOne}) {
        WriteFile(UserFile(), SmallRegistry("00000002", stamp));
        RefreshUserFile(Places());
        EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000002", stamp));
    }
}

TEST_F(RegistryRefresh, UserFileWithAnotherStampOrNoneIsOverwritten) {
    WriteFile(ShippedFile(), SmallRegistry("00000001", kStampTwo));
    for (const std::string& stamp : {std::string(), kStampOne}) {
        WriteFile(UserFile(), SmallRegistry("00000002", stamp));
        RefreshUserFile(Places());
        EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001", kStampTwo));
    }
}

TEST_F(RegistryRefresh, StampsAreComparedWithTheirLineEnds) {
    WriteFile(ShippedFile(), SmallRegistry("00000001", "\"RegistryHash\"=\"one\"\n"));
    WriteFile(UserFile(), SmallRegistry("00000002", kStampOne));
    RefreshUserFile(Places());
    EXPECT_TRUE(ReadFile(UserFile()).starts_with(ReadFile(ShippedFile())));
}

TEST_F(RegistryRefresh, LongerUserFileKeepsItsTail) {
    const std::string shipped = SmallRegistry("00000001", kStampTwo);
    const std::string user = SmallRegistry("00000002", kStampOne + "\"More\"=\"text\"\r\n");
    WriteFile(ShippedFile(), shipped);
    WriteFile(UserFile(), user);
    RefreshUserFile(Places());
    EXPECT_EQ(ReadFile(UserFile()), shipped + user.substr(shipped.size()));
}

TEST_F(RegistryRefresh, MissingShippedFileCopiesNothing) {
    RefreshUserFile(Places());
    EXPECT_FALSE(std::filesystem::exists(UserDirectoryPath()));
    WriteFile(UserFile(), SmallRegistry("00000002", kStampOne));
    RefreshUserFile(Places());
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000002", kStampOne));
}

TEST_F(RegistryRefresh, WithoutAUserDirectoryNothingIsCopied) {
    WriteFile(ShippedFile(), SmallRegistry("00000001", kStampOne));
    environment.clear();
    RefreshUserFile(Places());
    EXPECT_FALSE(std::filesystem::exists(UserFile()));
}

TEST_F(RegistryRefresh, LargeShippedFileArrivesWhole) {
    std::string shipped = SmallRegistry("00000001", kStampOne);
    for (int i = 0; i < 100000; ++i) {
        shipped += "; padding " + std::to_string(i) + "\r\n";
    }
    WriteFile(ShippedFile(), shipped);
    RefreshUserFile(Places());
    EXPECT_EQ(ReadFile(UserFile()), shipped);
}

}  // namespace
}  // namespace zeldlg::registry
