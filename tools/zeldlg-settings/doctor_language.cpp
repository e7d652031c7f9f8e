// The doctor on the language of the dialogs.
#include <wx/app.h>
#include <wx/init.h>
#include <wx/intl.h>
#include <wx/log.h>
#include <wx/translation.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "doctor.h"
#include "registry/registry_encoding.h"
#include "registry/settings.h"
#include "resources/catalogue.h"
#include "resources/catalogue_check.h"
#include "resources/format_conversions.h"

namespace admin {

using namespace zeldlg::registry;

namespace {

constexpr const char* kDomain = "tokenutils";

void ReportLocale(Report& report) {
    for (const char* const name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG", "LC_PATH"}) {
        report.Line(name, Variable(name));
    }
    const bool usable = std::setlocale(LC_ALL, "") != nullptr;
    report.Line("locale of the system", usable ? std::setlocale(LC_MESSAGES, nullptr) : "none");
    if (!usable) {
        report.Problem("The locale that the environment asks for is not installed.",
                       "`locale -a` lists what there is; `dpkg-reconfigure locales` makes more.");
    }
}

std::wstring FolderOf(const FoundSettings& settings) {
    for (const wchar_t* const path : kLocalesKeys) {
        KeyNode* const key =
            settings.text == nullptr
                ? nullptr
                : settings.text->Find(FoldedName("HKEY_LOCAL_MACHINE\\" + ToNarrow(path)));
        if (key != nullptr) {
            const std::optional<RegistryValue> value = settings.text->Value(*key, "Path");
            return value && value->type == kTypeString ? ToWide(value->bytes) : std::wstring();
        }
    }
    return {};
}

std::wstring ReportFolder(Report& report, const FoundSettings& settings) {
    std::wstring folder = FolderOf(settings);
    const std::string path = ToNarrow(folder);
    report.Line("folder of catalogues", path.empty() ? "not set: the usual ones" : path);
    std::error_code error;
    if (!path.empty() && !std::filesystem::is_directory(path, error)) {
        report.Problem("There is no folder " + path + ".",
                       "Mend the setting Path of the key Locales.");
    }
    return folder;
}

// Translations that the dialogs do not take: they would read arguments that are not there.
void ReportEntries(Report& report, const std::string& catalogue) {
    int count = -1;  // the first entry is no text
    zeldlg::ForEachTranslation(catalogue, [&](std::string_view text, std::string_view translation) {
        ++count;
        if (!text.empty() && !zeldlg::HasSameConversions(ToWide(text), ToWide(translation))) {
            report.Problem(
                "A translation is not used, the English text is: \"" + std::string(text) + "\"",
                "Its conversions (%d, %s ...) have to be those of the English text.");
        }
    });
    report.Line("texts in it", std::to_string(count));
}

// Returns whether it is a catalogue to use.
bool ReportFile(Report& report, const std::string& file) {
    std::error_code error;
    if (!std::filesystem::exists(std::filesystem::symlink_status(file, error))) {
        return false;
    }
    const auto bytes = zeldlg::CatalogueLoader::ReadSound(wxString::FromUTF8(file));
    if (bytes) {
        report.Line("catalogue", file + " (used)");
        ReportEntries(report, *bytes);
        return true;
    }
    report.Line("catalogue", file + " (passed over)");
    report.Problem(file + " is damaged, or cannot be read.",
                   "It counts as missing. Install it again, or make it anew with msgfmt.");
    return false;
}

// As the toolkit has it: with the country, then without.
void ReportCatalogue(Report& report, const zeldlg::CatalogueLoader& loader,
                     const wxString& language) {
    for (const wxString& each : {language, language.BeforeFirst('_')}) {
        for (const wxString& file : loader.Files(kDomain, each)) {
            if (ReportFile(report, file.utf8_string())) {
                return;
            }
        }
        if (!language.Contains("_")) {
            break;
        }
    }
    report.Line("catalogue", "none to use: the texts are English");
}

}  // namespace

void ReportLanguage(Report& report, const FoundSettings& settings) {
    report.Section("Language");
    ReportLocale(report);
    const std::wstring folder = ReportFolder(report, settings);
    // The places depend on the application's name, of which the library has none.
    const wxInitializer initializer;
    const wxLogNull noMessages;
    wxAppConsole::GetInstance()->SetAppName(wxString());
    wxTranslations translations;
    auto* const loader = new zeldlg::CatalogueLoader(folder);  // for `translations`, its owner
    translations.SetLoader(loader);
    const wxString language = translations.GetBestTranslation(kDomain, wxLANGUAGE_ENGLISH_US);
    report.Line("language", language.empty() ? "no catalogue for it" : language.utf8_string());
    if (!language.empty()) {
        ReportCatalogue(report, *loader, language);
    }
}

}  // namespace admin
