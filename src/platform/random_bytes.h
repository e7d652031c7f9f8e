// Random bytes from the cryptographic generator. Nothing in the library calls it; kept, and tested.
#pragma once

#include <cstddef>

namespace zeldlg::platform {

/// The generator's operations, so that a test can make one of them fail. The two that fill a
/// buffer return 1 on success.
struct RandomGenerator {
    int (*fill)(unsigned char* buffer, int length);
    int (*fillPseudo)(unsigned char* buffer, int length);
    void (*seed)(const void* data, int length);
    unsigned long (*takeError)();
};

/// The generator of OpenSSL.
const RandomGenerator& CryptographicGenerator();

/// Fills `buffer` with `length` random bytes; nothing happens for a null buffer or a length of 0.
void RandomBytes(void* buffer, size_t length,
                 const RandomGenerator& generator = CryptographicGenerator());

}  // namespace zeldlg::platform
