// What every fuzz target needs: its entry point, the bytes it plays with, and how it complains.
//
// A target is one file with one FUZZ_TARGET(name) { ... } whose body gets `bytes`. The fuzzer calls
// it with bytes of its own making, the replay program with the files of corpus/<name>/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zeldlg::fuzz {

using FuzzFunction = void (*)(std::string_view bytes);

/// Makes a target known to the replay program.
class FuzzTarget {
public:
    FuzzTarget(const char* name, FuzzFunction function);

    static const FuzzTarget* First();
    const FuzzTarget* Next() const { return m_next; }
    std::string_view Name() const { return m_name; }
    void Run(std::string_view bytes) const { m_function(bytes); }

private:
    const char* m_name;
    FuzzFunction m_function;
    const FuzzTarget* m_next;
};

/// The fuzzer's bytes, taken from the front piece by piece. Past the end everything is 0 or empty.
class FuzzInput {
public:
    explicit FuzzInput(std::string_view bytes) : m_rest(bytes) {}

    bool IsEmpty() const { return m_rest.empty(); }
    uint8_t Byte();
    bool Flag() { return (Byte() & 1U) != 0; }
    /// A number below `bound`, which is 1 to 256.
    unsigned Below(unsigned bound) { return Byte() % bound; }
    uint32_t Word();
    /// At most `most` (up to 255) bytes; the first byte says how many.
    std::string Text(unsigned most);
    /// Everything that is left.
    std::string Rest();

private:
    std::string_view m_rest;
};

/// Printable forms for the report of a mismatch.
std::string Shown(std::string_view text);
std::string Shown(std::wstring_view text);
inline std::string Shown(const std::string& text) { return Shown(std::string_view(text)); }
inline std::string Shown(const std::wstring& text) { return Shown(std::wstring_view(text)); }
template <typename Number>
std::string Shown(Number number) {
    return std::to_string(number);
}

/// Reports and aborts, so that the fuzzer keeps the input.
[[noreturn]] void Fail(const char* file, int line, const std::string& what);

}  // namespace zeldlg::fuzz

#define REQUIRE(condition)                                        \
    do {                                                          \
        if (!(condition)) {                                       \
            ::zeldlg::fuzz::Fail(__FILE__, __LINE__, #condition); \
        }                                                         \
    } while (false)

/// Both must have the same type.
#define REQUIRE_EQ(actual, expected)                                                      \
    do {                                                                                  \
        const auto actualValue = (actual);                                                \
        const decltype(actualValue) expectedValue = (expected);                           \
        if (!(actualValue == expectedValue)) {                                            \
            ::zeldlg::fuzz::Fail(__FILE__, __LINE__,                                      \
                                 #actual " is\n  " + ::zeldlg::fuzz::Shown(actualValue) + \
                                     "\nand should be\n  " +                              \
                                     ::zeldlg::fuzz::Shown(expectedValue));               \
        }                                                                                 \
    } while (false)

#ifdef ZELDLG_FUZZ
#define FUZZ_ENTRY                                                            \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { \
        FuzzOneInput({reinterpret_cast<const char*>(data), size});            \
        return 0;                                                             \
    }
#else
#define FUZZ_ENTRY
#endif

#define FUZZ_TARGET(name)                                                      \
    static void FuzzOneInput(std::string_view bytes);                          \
    static const ::zeldlg::fuzz::FuzzTarget g_fuzzTarget(#name, FuzzOneInput); \
    FUZZ_ENTRY                                                                 \
    static void FuzzOneInput([[maybe_unused]] std::string_view bytes)
