#include "resources/catalogue_check.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zeldlg {

namespace {

constexpr uint32_t kMagic = 0x950412de;
constexpr uint32_t kSwappedMagic = 0xde120495;
constexpr size_t kHeaderSize = 28;
constexpr size_t kEntrySize = 8;
// The toolkit parses the expression recursively.
constexpr size_t kLongestPluralForms = 1000;

class Catalogue {
public:
    explicit Catalogue(std::string_view file) : m_file(file) {}

    bool IsSound() {
        if (m_file.size() < kHeaderSize) {
            return false;
        }
        const uint32_t magic = WordAt(0);
        m_swapped = magic == kSwappedMagic;
        if (magic != kMagic && !m_swapped) {
            return false;
        }
        const uint64_t count = WordAt(8);
        // The toolkit looks at the first entry whether there is one or not.
        return count > 0 && IsSoundTable(WordAt(12), count) && IsSoundTable(WordAt(16), count) &&
               HasBearablePluralForms(WordAt(16));
    }

    void ForEach(const std::function<void(std::string_view, std::string_view)>& each) {
        m_swapped = WordAt(0) == kSwappedMagic;
        for (uint64_t entry = 0; entry < uint64_t{WordAt(8)} * kEntrySize; entry += kEntrySize) {
            each(TextAt(WordAt(12) + entry), TextAt(WordAt(16) + entry));
        }
    }

private:
    std::string_view TextAt(uint64_t entry) const {
        return m_file.substr(WordAt(entry + 4), WordAt(entry));
    }

    // The caller knows that the word lies inside the file; it need not be aligned.
    uint32_t WordAt(uint64_t offset) const {
        uint32_t word = 0;
        memcpy(&word, m_file.data() + offset, sizeof word);
        return m_swapped ? __builtin_bswap32(word) : word;
    }

    bool IsSoundTable(uint64_t table, uint64_t count) const {
        if (table + count * kEntrySize > m_file.size()) {
            return false;
        }
        for (uint64_t entry = table; entry < table + count * kEntrySize; entry += kEntrySize) {
            const uint64_t end = uint64_t{WordAt(entry)} + WordAt(entry + 4);
            if (end >= m_file.size() || m_file[end] != '\0') {
                return false;
            }
        }
        return true;
    }

    // The header is the translation of the empty text, which is the first one.
    bool HasBearablePluralForms(uint64_t translations) const {
        const std::string_view header = TextAt(translations);
        const size_t forms = header.find("Plural-Forms:");
        return forms == std::string_view::npos ||
               std::min(header.find('\n', forms), header.size()) - forms <= kLongestPluralForms;
    }

    std::string_view m_file;
    bool m_swapped = false;
};

}  // namespace

bool IsSoundCatalogue(std::string_view file) { return Catalogue(file).IsSound(); }

void ForEachTranslation(
    std::string_view file,
    const std::function<void(std::string_view text, std::string_view translation)>& each) {
    Catalogue(file).ForEach(each);
}

}  // namespace zeldlg
