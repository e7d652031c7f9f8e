#include "dialogs/token_error.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

struct Row {
    uint64_t code;
    const char* text;
};

constexpr Row kRows[] = {
    {6, CATALOGUE_KEY("Device error")},
    {16, CATALOGUE_KEY("Token is read-only")},
    {49, CATALOGUE_KEY("Token out of memory")},
    {50, CATALOGUE_KEY("Token removed before the operation could complete")},
    {164, CATALOGUE_KEY("PIN locked")},
    {224, CATALOGUE_KEY("Token not present")},
    {226, CATALOGUE_KEY("Token is read-only")},
};

wxString WithCode(const char* text, uint64_t code) {
    return Translate(text) +
           FormatTranslated(CATALOGUE_KEY(" (0x%02X)"), static_cast<unsigned>(code));
}

}  // namespace

wxString TokenErrorText(uint64_t code) {
    for (const Row& row : kRows) {
        if (row.code == code) {
            return Translate(row.text);
        }
    }
    return WithCode(CATALOGUE_KEY("Device error"), code);
}

wxString UnknownErrorText(uint64_t code) { return WithCode(CATALOGUE_KEY("Unknown error"), code); }

}  // namespace zeldlg
