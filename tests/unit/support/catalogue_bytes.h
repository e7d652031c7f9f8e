// Catalogues made byte by byte, which the toolkit can open from memory instead of from a file.
#pragma once

#include <wx/arrstr.h>
#include <wx/translation.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Of the leak sanitizer, where there is one.
extern "C" __attribute__((weak)) void __lsan_disable();  // NOLINT(bugprone-reserved-identifier)
extern "C" __attribute__((weak)) void __lsan_enable();   // NOLINT(bugprone-reserved-identifier)

namespace zeldlg::test {

inline void AppendWord(std::string& out, size_t word) {
    const auto value = static_cast<uint32_t>(word);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// A catalogue as msgfmt writes it: header, table of originals, table of translations, texts.
inline std::string MakeCatalogue(const std::vector<std::pair<std::string, std::string>>& entries) {
    const size_t originals = 28;
    const size_t translations = originals + entries.size() * 8;
    std::string file;
    for (const size_t word : {size_t{0x950412de}, size_t{0}, entries.size(), originals,
                              translations, size_t{0}, size_t{0}}) {
        AppendWord(file, word);
    }
    std::string texts;
    const size_t textStart = translations + entries.size() * 8;
    const auto addTable = [&](const auto& textOf) {
        for (const auto& entry : entries) {
            AppendWord(file, textOf(entry).size());
            AppendWord(file, textStart + texts.size());
            texts += textOf(entry);
            texts += '\0';
        }
    };
    addTable([](const auto& entry) -> const std::string& { return entry.first; });
    addTable([](const auto& entry) -> const std::string& { return entry.second; });
    return file + texts;
}

inline constexpr const char* kCatalogueHeader =
    "Content-Type: text/plain; charset=UTF-8\nPlural-Forms: nplurals=2; plural=n != 1;\n";

inline std::string GoodCatalogue() {
    return MakeCatalogue({{"", kCatalogueHeader}, {"Cancel", "Abbrechen"}, {"OK", "In Ordnung"}});
}

/// Gives the toolkit the bytes of one catalogue, which must outlive it.
class BytesLoader : public wxTranslationsLoader {
public:
    explicit BytesLoader(std::string_view file) : m_file(file) {}

    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override {
        return wxMsgCatalog::CreateFromData(
            wxCharBuffer::CreateNonOwned(m_file.data(), m_file.size()), domain);
    }

    wxArrayString GetAvailableTranslations(const wxString&) const override {
        wxArrayString languages;
        languages.Add("de");
        return languages;
    }

private:
    std::string_view m_file;
};

/// The toolkit leaks a part of each plural expression that it cannot parse.
class NoLeakCheck {
public:
    NoLeakCheck() {
        if (__lsan_disable != nullptr) {
            __lsan_disable();
        }
    }
    ~NoLeakCheck() {
        if (__lsan_enable != nullptr) {
            __lsan_enable();
        }
    }
    NoLeakCheck(const NoLeakCheck&) = delete;
    NoLeakCheck& operator=(const NoLeakCheck&) = delete;
};

}  // namespace zeldlg::test
