#include "resources/catalogue_loader.h"

#include <wx/file.h>
#include <wx/filefn.h>
#include <wx/stdpaths.h>
#include <wx/utils.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "resources/catalogue_check.h"

namespace zeldlg {

namespace {

namespace fs = std::filesystem;

// Far beyond any catalogue: what is larger is not read into memory.
constexpr wxFileOffset kLargestCatalogue = wxFileOffset{16} << 20;

bool ReadFile(const wxString& path, std::string& bytes) {
    wxFile file;
    if (!wxFileExists(path) || !file.Open(path)) {
        return false;
    }
    const wxFileOffset size = file.Length();
    if (size < 0 || size > kLargestCatalogue) {
        return false;
    }
    bytes.resize(static_cast<size_t>(size));
    return file.Read(bytes.data(), bytes.size()) == static_cast<ssize_t>(size);
}

bool IsFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

}  // namespace

CatalogueLoader::CatalogueLoader(const wxString& prefix) : m_prefix(prefix) {
    if (!prefix.empty()) {
        AddCatalogLookupPathPrefix(prefix);
    }
}

// Opened from the bytes that were checked: the file may change in between.
wxMsgCatalog* CatalogueLoader::LoadCatalog(const wxString& domain, const wxString& lang) {
    for (const wxString& file : Files(domain, lang)) {
        const std::optional<std::string> bytes = ReadSound(file);
        if (!bytes) {
            continue;
        }
        if (wxMsgCatalog* const catalogue = wxMsgCatalog::CreateFromData(
                wxCharBuffer::CreateNonOwned(bytes->data(), bytes->size()), domain)) {
            return catalogue;
        }
    }
    return nullptr;
}

wxArrayString CatalogueLoader::GetAvailableTranslations(const wxString& domain) const {
    wxArrayString languages;
    const fs::path file((domain + ".mo").fn_str().data());
    for (const wxString& prefix : Prefixes()) {
        std::error_code ignored;
        for (fs::directory_iterator each(prefix.fn_str().data(), ignored), end; each != end;
             each.increment(ignored)) {
            const fs::path& folder = each->path();
            if (IsFile(folder / "LC_MESSAGES" / file) || IsFile(folder / file)) {
                languages.Add(wxString(folder.filename().c_str(), *wxConvFileName));
            }
        }
    }
    return languages;
}

std::vector<wxString> CatalogueLoader::Files(const wxString& domain, const wxString& lang) const {
    std::vector<wxString> files;
    for (const wxString& prefix : Prefixes()) {
        const wxString folder = prefix + "/" + lang;
        for (const wxString& each : {folder + "/LC_MESSAGES", folder}) {
            files.push_back(each + "/" + domain + ".mo");
        }
    }
    return files;
}

std::optional<std::string> CatalogueLoader::ReadSound(const wxString& file) {
    std::string bytes;
    return ReadFile(file, bytes) && IsSoundCatalogue(bytes) ? std::optional(std::move(bytes))
                                                            : std::nullopt;
}

// The toolkit's own order.
std::vector<wxString> CatalogueLoader::Prefixes() const {
    std::vector<wxString> prefixes;
    if (!m_prefix.empty()) {
        prefixes.push_back(m_prefix);
    }
    prefixes.push_back(wxStandardPaths::Get().GetResourcesDir());
    prefixes.push_back(wxStandardPaths::Get().GetInstallPrefix() + "/share/locale");
    wxString searchPath;
    if (wxGetEnv("LC_PATH", &searchPath) && !searchPath.empty()) {
        prefixes.push_back(searchPath);
    }
    prefixes.push_back(wxGetInstallPrefix() + "/share/locale");
    return prefixes;
}

}  // namespace zeldlg
