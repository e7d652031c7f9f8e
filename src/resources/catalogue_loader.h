// Finds message catalogues where the toolkit would, and opens only those that are safe to read.
#pragma once

#include <wx/translation.h>

#include <optional>
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

}  // namespace zeldlg
