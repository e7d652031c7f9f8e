// Where catalogues are looked for, and which files are not opened at all.
#include "resources/catalogue_loader.h"

#include <gtest/gtest.h>
#include <wx/utils.h>

#include <filesystem>
#include <string>

#include "support/catalogue_bytes.h"
#include "support/registry_fixture.h"

namespace zeldlg {

namespace {

class CatalogueLoading : public testing::Test {
protected:
    std::string Path() const { return m_folder / "de/LC_MESSAGES/some.mo"; }

    /// Whether the catalogue is found by a loader with that folder of its own.
    static bool IsFound(const std::string& prefix) {
        wxTranslations translations;
        translations.SetLoader(new CatalogueLoader(prefix));
        translations.SetLanguage("de");
        translations.AddCatalog("some");
        return translations.GetTranslatedString("Cancel") != nullptr;
    }

    const registry::test::ScratchDirectory m_folder;
};

TEST_F(CatalogueLoading, ItsOwnFolderAndThatOfTheEnvironmentAreSearched) {
    registry::test::WriteFile(Path(), test::GoodCatalogue());
    const std::string folder = m_folder / "";
    EXPECT_TRUE(IsFound(folder));
    EXPECT_FALSE(IsFound(""));
    wxSetEnv("LC_PATH", folder);
    EXPECT_TRUE(IsFound(""));
    wxSetEnv("LC_PATH", "");
    EXPECT_FALSE(IsFound(""));
    wxUnsetEnv("LC_PATH");
}

TEST_F(CatalogueLoading, AFileBeyondAllReasonCountsAsMissing) {
    constexpr std::uintmax_t kLargest = std::uintmax_t{16} << 20U;
    registry::test::WriteFile(Path(), test::GoodCatalogue());
    std::filesystem::resize_file(Path(), kLargest);
    EXPECT_TRUE(IsFound(m_folder / ""));
    std::filesystem::resize_file(Path(), kLargest + 1);
    EXPECT_FALSE(IsFound(m_folder / ""));
}

}  // namespace

}  // namespace zeldlg
