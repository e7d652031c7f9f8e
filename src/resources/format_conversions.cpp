#include "resources/format_conversions.h"

namespace zeldlg {

namespace {

// Without the apostrophe of the C library: the toolkit does not know it and would take a wide text
// for a narrow one.
constexpr std::wstring_view kFlags = L"-+ #0";
constexpr std::wstring_view kDigits = L"0123456789";
// A longer width would have the toolkit format gigabytes of blanks.
constexpr size_t kLongestWidth = 3;
constexpr std::wstring_view kLengthModifiers = L"hlLqjzt";

class Parser {
public:
    explicit Parser(std::wstring_view format) : m_rest(format) {}

    Parser& Run() {
        for (size_t percent = m_rest.find(L'%'); percent != std::wstring_view::npos;
             percent = m_rest.find(L'%')) {
            m_words += m_rest.substr(0, percent);
            m_rest.remove_prefix(percent + 1);
            TakeConversion();
        }
        m_words += m_rest;
        return *this;
    }

    const std::vector<std::string>& Conversions() const { return m_conversions; }
    const std::wstring& Words() const { return m_words; }

private:
    void TakeConversion() {
        Skip(kFlags);
        TakeWidth();
        if (Next() == L'.') {
            m_rest.remove_prefix(1);
            TakeWidth();
        }
        std::string conversion = Take(kLengthModifiers);
        if (m_rest.empty()) {
            m_conversions.push_back(conversion + "%");
            return;
        }
        const wchar_t character = Next();
        m_rest.remove_prefix(1);
        if (character == L'%' && conversion.empty()) {
            return;
        }
        // Numbered arguments ("%1$s") come out as "$" here and never match an English text.
        conversion += character < 0x80 ? static_cast<char>(character) : '?';
        m_conversions.push_back(std::move(conversion));
    }

    void TakeWidth() {
        if (Next() == L'*') {
            m_rest.remove_prefix(1);
            m_conversions.emplace_back("*");
        } else if (Take(kDigits).size() > kLongestWidth) {
            m_conversions.emplace_back("width");
        }
    }

    wchar_t Next() const { return m_rest.empty() ? L'\0' : m_rest.front(); }

    void Skip(std::wstring_view set) { static_cast<void>(Take(set)); }

    std::string Take(std::wstring_view set) {
        std::string taken;
        while (!m_rest.empty() && set.find(m_rest.front()) != std::wstring_view::npos) {
            taken += static_cast<char>(m_rest.front());
            m_rest.remove_prefix(1);
        }
        return taken;
    }

    std::wstring_view m_rest;
    std::vector<std::string> m_conversions;
    std::wstring m_words;
};

}  // namespace

std::vector<std::string> FormatConversions(std::wstring_view format) {
    return Parser(format).Run().Conversions();
}

std::wstring WithoutConversions(std::wstring_view format) { return Parser(format).Run().Words(); }

bool HasSameConversions(std::wstring_view original, std::wstring_view translation) {
    return FormatConversions(original) == FormatConversions(translation);
}

}  // namespace zeldlg
