#include "dialogs/unblock_method.h"

#include <algorithm>
#include <iterator>

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

struct Algorithm {
    uint32_t code;
    const char* name;
};

constexpr Algorithm kAlgorithms[] = {
    {0, CATALOGUE_KEY("3DES ECB Challenge/Response")},
    {1, CATALOGUE_KEY("3DES ECB Witness/Challenge/Response")},
};

}  // namespace

wxString AlgorithmName(uint32_t code) {
    const auto* const known =
        std::find_if(std::begin(kAlgorithms), std::end(kAlgorithms),
                     [code](const Algorithm& algorithm) { return algorithm.code == code; });
    return known != std::end(kAlgorithms)
               ? Translate(known->name)
               : FormatTranslated(CATALOGUE_KEY("Unknown algorithm (%u)"), code);
}

uint32_t UnblockMethodOf(bool pukChosen, bool offlineChosen) {
    return pukChosen ? 1 : 1 + static_cast<uint32_t>(offlineChosen);
}

uint32_t AlgorithmIndexOf(int selection) { return static_cast<uint32_t>(std::max(selection, 0)); }

}  // namespace zeldlg
