// Catalogues that the toolkit opens from memory instead of from a file.
#pragma once

#include <wx/translation.h>

#include <string_view>

// Of the leak sanitizer, where there is one.
extern "C" __attribute__((weak)) void __lsan_disable();  // NOLINT(bugprone-reserved-identifier)
extern "C" __attribute__((weak)) void __lsan_enable();   // NOLINT(bugprone-reserved-identifier)

namespace zeldlg::test {

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
