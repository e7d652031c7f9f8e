// Where catalogues are looked for, and which files are not opened at all.
#include "resources/catalogue.h"

#include <gtest/gtest.h>
#include <wx/arrstr.h>
#include <wx/stdpaths.h>
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

TEST_F(CatalogueLoading, SoIsThatOfTheHostsInstallation) {
    registry::test::WriteFile(m_folder / "share/locale/de/LC_MESSAGES/some.mo",
                              test::GoodCatalogue());
    wxStandardPaths& places = wxStandardPaths::Get();
    const wxString before = places.GetInstallPrefix();
    places.SetInstallPrefix(m_folder / "");
    EXPECT_TRUE(IsFound(""));
    places.SetInstallPrefix(before);
    EXPECT_FALSE(IsFound(""));
}

TEST_F(CatalogueLoading, AFileBeyondAllReasonCountsAsMissing) {
    constexpr std::uintmax_t kLargest = std::uintmax_t{16} << 20U;
    registry::test::WriteFile(Path(), test::GoodCatalogue());
    std::filesystem::resize_file(Path(), kLargest);
    EXPECT_TRUE(IsFound(m_folder / ""));
    std::filesystem::resize_file(Path(), kLargest + 1);
    EXPECT_FALSE(IsFound(m_folder / ""));
}

TEST_F(CatalogueLoading, TheToolkitsOwnWayFindsTheSameLanguages) {
    for (const char* const file :
         {"/de/LC_MESSAGES/some.mo", "/fr_CH/some.mo", "/pt_BR/LC_MESSAGES/other.mo",
          "/empty/LC_MESSAGES/none", "/sr@latin/LC_MESSAGES/some.mo", "/some.mo"}) {
        registry::test::WriteFile(m_folder / file, test::GoodCatalogue());
    }
    std::filesystem::create_directories(m_folder / "/folder/some.mo");
    std::filesystem::create_directory_symlink(m_folder / "/de", m_folder / "/link");
    const CatalogueLoader loader(m_folder / "");  // now the toolkit searches there as well
    for (const char* const domain : {"some", "other", "none", "gtk30"}) {
        wxArrayString expected = wxFileTranslationsLoader().GetAvailableTranslations(domain);
        wxArrayString found = loader.GetAvailableTranslations(domain);
        expected.Sort();
        found.Sort();
        EXPECT_EQ(found, expected) << domain;
    }
    wxArrayString some = loader.GetAvailableTranslations("some");
    some.Sort();
    EXPECT_EQ(wxJoin(some, ' '), "de fr_CH link sr@latin");
}

}  // namespace

}  // namespace zeldlg
