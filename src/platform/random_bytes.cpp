#include "platform/random_bytes.h"

#include <openssl/err.h>
#include <openssl/rand.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <ctime>

namespace zeldlg::platform {

namespace {

int FillPseudo(unsigned char* buffer, int length) {
// The fall-back for a generator that could not be seeded is this very function.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    return RAND_pseudo_bytes(buffer, length);
#pragma GCC diagnostic pop
}

void FillPiece(unsigned char* buffer, int length, const RandomGenerator& generator) {
    if (generator.fill(buffer, length) == 1) {
        return;
    }
    generator.takeError();
    const int64_t now = time(nullptr);
    generator.seed(&now, sizeof now);
    generator.fillPseudo(buffer, length);
    generator.seed(buffer, length);
    generator.fill(buffer, length);
}

}  // namespace

const RandomGenerator& CryptographicGenerator() {
    static constexpr RandomGenerator kGenerator{RAND_bytes, FillPseudo, RAND_seed, ERR_get_error};
    return kGenerator;
}

void RandomBytes(void* buffer, size_t length, const RandomGenerator& generator) {
    if (buffer == nullptr) {
        return;
    }
    // The generator counts in int.
    for (auto* next = static_cast<unsigned char*>(buffer); length > 0;) {
        const size_t piece = std::min<size_t>(length, INT_MAX);
        FillPiece(next, static_cast<int>(piece), generator);
        next += piece;
        length -= piece;
    }
}

}  // namespace zeldlg::platform
