// What Translate() and TranslateFormat() are given has to be in the template: all calls in a
// program of tests come by here, those of the library too (-Wl,--wrap).
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <wx/string.h>
#include <wx/translation.h>

#include <cstdlib>

#include "resources/texts.h"

namespace {

// A catalogue that translates all of the template.
bool IsInTemplate(const char* english) {
    static const wxMsgCatalog* const catalogue =
        wxMsgCatalog::CreateFromFile(ZELDLG_WHOLE_CATALOGUE, "tokenutils");
    return catalogue->GetString(wxString::FromAscii(english)) != nullptr;
}

// A text that script/mutate has changed is for the tests that know it.
bool IsMutated() { return getenv("ZELDLG_MUTANT") != nullptr; }

void Check(const char* english) {
    EXPECT_TRUE(IsMutated() || IsInTemplate(english)) << english << ": mark it with CATALOGUE_KEY";
}

}  // namespace

namespace zeldlg {

wxString RealTranslate(const char* english) asm("__real__ZN6zeldlg9TranslateEPKc");
wxString CheckedTranslate(const char* english) asm("__wrap__ZN6zeldlg9TranslateEPKc");
wxString RealTranslateFormat(const char* english) asm("__real__ZN6zeldlg15TranslateFormatEPKc");
wxString CheckedTranslateFormat(const char* english) asm("__wrap__ZN6zeldlg15TranslateFormatEPKc");

wxString CheckedTranslate(const char* english) {
    Check(english);
    return RealTranslate(english);
}

wxString CheckedTranslateFormat(const char* english) {
    Check(english);
    return RealTranslateFormat(english);
}

TEST(GivenTexts, OneThatNoTranslatorGetsToSeeIsFound) {
    if (IsMutated()) {
        GTEST_SKIP() << "nothing is looked at";
    }
    EXPECT_NONFATAL_FAILURE(Translate("in no template"), "CATALOGUE_KEY");
    EXPECT_NONFATAL_FAILURE(FormatTranslated("%s in no template", "x"), "CATALOGUE_KEY");
    EXPECT_EQ(Translate("Cancel"), "Cancel");
}

}  // namespace zeldlg
