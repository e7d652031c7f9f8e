// Catalogues that pass the check are opened and searched by the toolkit, from memory that ends
// where nothing may be read. The verdict is compared with a plain one.
#include "resources/catalogue_check.h"

#include <sys/mman.h>
#include <unistd.h>
#include <wx/log.h>
#include <wx/translation.h>

#include <cstring>

#include "fuzz_target.h"
#include "unit/support/catalogue_bytes.h"

namespace zeldlg::fuzz {

namespace {

/// Bytes in front of a page that must not be touched.
class FencedBytes {
public:
    explicit FencedBytes(std::string_view bytes) {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t room = (bytes.size() + page) / page * page;
        m_size = room + page;
        void* const map =
            mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        REQUIRE(map != MAP_FAILED);
        m_map = static_cast<char*>(map);
        REQUIRE(mprotect(m_map + room, page, PROT_NONE) == 0);
        m_bytes = m_map + room - bytes.size();
        memcpy(m_bytes, bytes.data(), bytes.size());
    }
    ~FencedBytes() { munmap(m_map, m_size); }
    FencedBytes(const FencedBytes&) = delete;
    FencedBytes& operator=(const FencedBytes&) = delete;

    const char* Data() const { return m_bytes; }

private:
    char* m_map = nullptr;
    char* m_bytes = nullptr;
    size_t m_size = 0;
};

/// Reads the file's numbers one byte at a time.
class PlainCatalogue {
public:
    explicit PlainCatalogue(std::string_view file) : m_file(file) {}

    bool IsSound() {
        if (m_file.size() < 28) {
            return false;
        }
        m_bigEnded = Number(0) == 0xde120495;
        if (Number(0) != 0x950412de) {
            return false;
        }
        for (uint64_t i = 0; i < Number(8); ++i) {
            if (!IsText(Number(12) + i * 8) || !IsText(Number(16) + i * 8)) {
                return false;
            }
        }
        return Number(8) > 0;
    }

private:
    uint64_t Number(uint64_t at) const {
        uint64_t number = 0;
        for (uint64_t i = 0; i < 4; ++i) {
            const auto byte = static_cast<unsigned char>(m_file[at + (m_bigEnded ? i : 3 - i)]);
            number = number * 256 + byte;
        }
        return number;
    }

    bool IsText(uint64_t entry) const {
        if (entry + 8 > m_file.size()) {
            return false;
        }
        const uint64_t end = Number(entry) + Number(entry + 4);
        return end < m_file.size() && m_file[end] == '\0';
    }

    std::string_view m_file;
    bool m_bigEnded = false;
};

/// What the library does with a catalogue.
void OpenAndSearch(std::string_view file) {
    const test::NoLeakCheck noLeakCheck;
    wxTranslations translations;
    translations.SetLoader(new test::BytesLoader(file));
    translations.SetLanguage("de");
    translations.AddCatalog("fuzz");
    for (const char* text : {"", "OK", "Cancel", "&Abort"}) {
        const wxString* const found = translations.GetTranslatedString(text);
        REQUIRE(found == nullptr || found->length() <= file.size());
    }
}

}  // namespace

FUZZ_TARGET(catalogue_check) {
    static const wxLogNull quiet;
    const FencedBytes file(bytes);
    const bool sound = IsSoundCatalogue({file.Data(), bytes.size()});
    // The check may be stricter by what the toolkit would not survive, never laxer.
    REQUIRE(!sound || PlainCatalogue(bytes).IsSound());
    if (!sound) {
        REQUIRE(!PlainCatalogue(bytes).IsSound() ||
                bytes.find("Plural-Forms:") != std::string_view::npos);
        return;
    }
    OpenAndSearch({file.Data(), bytes.size()});
}

}  // namespace zeldlg::fuzz
