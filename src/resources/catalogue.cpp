#include "resources/catalogue.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <wx/filefn.h>
#include <wx/stdpaths.h>
#include <wx/utils.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "platform/file_descriptor.h"
#include "resources/catalogue_check.h"

namespace zeldlg {

namespace {

// Far beyond any catalogue: what is larger is not read into memory.
constexpr size_t kLargestCatalogue = size_t{16} << 20;

bool ReadFile(const wxString& path, std::string& bytes) {
    const auto file = platform::FileDescriptor::Open(path.fn_str().data(), O_RDONLY);
    if (!file.IsOpen() || file.Size() > kLargestCatalogue) {
        return false;
    }
    bytes.resize(file.Size());
    return file.Read(bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

// A folder that is looked through. Not the standard library's: that ends the process where there is
// no memory for a name.
class Folder {
public:
    explicit Folder(const wxString& path) : m_entries(opendir(path.fn_str())) {}
    // The next name in it, "." and ".." as well; null at the end, and where it cannot be read.
    const char* Next() {
        const dirent* const entry = m_entries != nullptr ? readdir(m_entries.get()) : nullptr;
        return entry != nullptr ? entry->d_name : nullptr;
    }
    bool HasFile(const std::string& path) const {
        struct stat status = {};
        return fstatat(dirfd(m_entries.get()), path.c_str(), &status, 0) == 0 &&
               S_ISREG(status.st_mode);
    }

private:
    struct Close {
        void operator()(DIR* entries) const { closedir(entries); }
    };
    std::unique_ptr<DIR, Close> m_entries;
};

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
    const std::string file((domain + ".mo").fn_str().data());
    std::string path;
    for (const wxString& prefix : Prefixes()) {
        Folder folder(prefix);
        while (const char* const name = folder.Next()) {
            const auto holds = [&](const char* between) {
                return folder.HasFile(path.assign(name).append(between).append(file));
            };
            if (name[0] != '.' && (holds("/LC_MESSAGES/") || holds("/"))) {
                languages.Add(wxString(name, *wxConvFileName));
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

namespace {

// Guards the toolkit's process-wide translations object. May be used while the process exits.
std::shared_mutex g_catalogueMutex;
static_assert(std::is_trivially_destructible_v<std::shared_mutex>);

}  // namespace

CatalogueReader::CatalogueReader() : m_lock(g_catalogueMutex) {}

CatalogueWriter::CatalogueWriter() : m_lock(g_catalogueMutex) {}

bool CloseCatalogue() { return g_catalogueMutex.try_lock(); }

}  // namespace zeldlg
