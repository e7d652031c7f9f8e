#include "plain_text.h"

#include <clocale>
#include <cwctype>

namespace zeldlg::plain {

namespace {

int ByteAt(std::string_view text, size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : -1;
}

bool Within(int byte, int low, int high) { return byte >= low && byte <= high; }

struct Row {
    int firstLow, firstHigh, secondLow, secondHigh;
    size_t length;
};

// Table 3-7 of the Unicode standard.
constexpr Row kRows[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3},
    {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
    {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

}  // namespace

char32_t PlainSequence(std::string_view text, size_t& length) {
    const int first = ByteAt(text, 0);
    length = 0;
    if (Within(first, 0, 0x7F)) {
        length = 1;
        return static_cast<char32_t>(first);
    }
    for (const Row& row : kRows) {
        if (!Within(first, row.firstLow, row.firstHigh) ||
            !Within(ByteAt(text, 1), row.secondLow, row.secondHigh) ||
            (row.length > 2 && !Within(ByteAt(text, 2), 0x80, 0xBF)) ||
            (row.length > 3 && !Within(ByteAt(text, 3), 0x80, 0xBF))) {
            continue;
        }
        length = row.length;
        int code = first % (row.length == 2 ? 0x20 : row.length == 3 ? 0x10 : 0x08);
        for (size_t i = 1; i < length; ++i) {
            code = code * 64 + ByteAt(text, i) % 64;
        }
        return static_cast<char32_t>(code);
    }
    return 0;
}

std::u32string PlainDecode(std::string_view text, char32_t replacement) {
    std::u32string decoded;
    while (!text.empty()) {
        size_t length = 0;
        const char32_t code = PlainSequence(text, length);
        if (length > 0) {
            decoded += code;
        } else {
            decoded += replacement != 0 ? replacement : static_cast<char32_t>(ByteAt(text, 0));
            length = 1;
        }
        text.remove_prefix(length);
    }
    return decoded;
}

std::string PlainEncode(std::u32string_view text) {
    std::string encoded;
    const auto add = [&encoded](char32_t byte) { encoded += static_cast<char>(byte); };
    for (const char32_t code : text) {
        if (code < 0x80) {
            add(code);
        } else if (code < 0x800) {
            add(0xC0 + code / 64);
            add(0x80 + code % 64);
        } else if (code < 0x10000) {
            add(0xE0 + code / 4096);
            add(0x80 + code / 64 % 64);
            add(0x80 + code % 64);
        } else {
            add(0xF0 + code / 262144);
            add(0x80 + code / 4096 % 64);
            add(0x80 + code / 64 % 64);
            add(0x80 + code % 64);
        }
    }
    return encoded;
}

std::u32string PlainFold(std::string_view name) {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    std::u32string folded = PlainDecode(name, 0);
    for (char32_t& code : folded) {
        const auto lower = static_cast<char32_t>(towlower_l(static_cast<wint_t>(code), unicode));
        // What is not ASCII stays so: the Kelvin sign is no "k".
        if (code < 0x80 || lower >= 0x80) {
            code = lower;
        }
    }
    return folded;
}

std::wstring AsWide(std::u32string_view text) { return {text.begin(), text.end()}; }

std::vector<std::string> PlainLines(std::string_view text) {
    std::vector<std::string> lines;
    std::string line;
    for (const char c : text) {
        if (c != '\n') {
            line += c;
            continue;
        }
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty()) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace zeldlg::plain
