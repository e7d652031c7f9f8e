// The catalogue of translations: finds its files where the toolkit would and opens only those that
// are safe to read; keeps host threads, which translate as well, from it while it changes.
#pragma once

#include <wx/translation.h>

#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <vector>

namespace zeldlg {

class CatalogueLoader : public wxFileTranslationsLoader {
public:
    /// @param prefix Folder to search before all others; empty for none. It stays known to the
    ///               toolkit for the life of the process.
    explicit CatalogueLoader(const wxString& prefix);

    /// A damaged file counts as missing. @return The caller's; null when there is none.
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString& lang) override;

    /// The names of all folders with a catalogue of that domain. The toolkit's own way is the most
    /// expensive step of the whole start: it makes several strings of each of some two hundred.
    wxArrayString GetAvailableTranslations(const wxString& domain) const override;

    /// Where a catalogue is looked for, in this order; most of the files do not exist.
    std::vector<wxString> Files(const wxString& domain, const wxString& lang) const;

    /// The bytes of a catalogue file that is safe to read.
    static std::optional<std::string> ReadSound(const wxString& file);

private:
    std::vector<wxString> Prefixes() const;

    wxString m_prefix;
};

/// Held by whoever translates outside the GUI thread.
class CatalogueReader {
public:
    CatalogueReader();
    CatalogueReader(const CatalogueReader&) = delete;
    CatalogueReader& operator=(const CatalogueReader&) = delete;

private:
    std::shared_lock<std::shared_mutex> m_lock;
};

/// Held by the GUI thread while the toolkit's translations object comes, goes and changes.
class CatalogueWriter {
public:
    CatalogueWriter();
    CatalogueWriter(const CatalogueWriter&) = delete;
    CatalogueWriter& operator=(const CatalogueWriter&) = delete;

private:
    std::unique_lock<std::shared_mutex> m_lock;
};

/// When the process exits: nobody translates outside the GUI thread any more, but waits until the
/// process is gone. Once. @return False while somebody still does.
bool CloseCatalogue();

}  // namespace zeldlg
