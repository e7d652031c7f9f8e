#include "widgets/spoken_state.h"

#include <algorithm>

#include "resources/texts.h"

namespace zeldlg {

wxString Sentences(const std::vector<wxString>& texts) {
    constexpr std::wstring_view kEnds = L".!?:;\u2026";
    wxString all;
    for (const wxString& text : texts) {
        if (!text.empty() && !all.empty()) {
            all += kEnds.find(all.Last()) == std::wstring_view::npos ? ". " : " ";
        }
        all += text;
    }
    return all;
}

wxString RuleState(const wxString& rule, bool met) {
    return met ? FormatTranslated("Met: %s", rule) : FormatTranslated("Not met: %s", rule);
}

wxString SpokenRules::Update(const std::vector<SpokenRule>& rules) {
    std::vector<wxString> unmet;
    for (const SpokenRule& each : rules) {
        if (!each.met) {
            unmet.push_back(each.rule);
        }
    }
    // When all are met, the last ones that were not stay those that are told.
    const bool met = unmet.empty();
    if (!met) {
        m_unmet = unmet;
    }
    std::vector<wxString> states;
    std::transform(m_unmet.begin(), m_unmet.end(), std::back_inserter(states),
                   [met](const wxString& rule) { return RuleState(rule, met); });
    return Sentences(states);
}

namespace {

constexpr int64_t kToldSeconds[] = {30, 10, 5};

wxString SecondsLeft(int64_t seconds) {
    return FormatTranslated("Seconds left: %d", ShownNumber(std::max<int64_t>(seconds, 0)));
}

}  // namespace

void SpokenCountDown::Update(int64_t secondsLeft) {
    m_left = secondsLeft;
    if (std::find(std::begin(kToldSeconds), std::end(kToldSeconds), secondsLeft) !=
        std::end(kToldSeconds)) {
        m_told = secondsLeft;
    }
}

wxString SpokenCountDown::Whole() const { return SecondsLeft(m_left); }

wxString SpokenCountDown::News() const { return m_told ? SecondsLeft(*m_told) : wxString(); }

void SpokenState::Tell(const wxString& whole, const wxString& news) {
    m_whole = whole;
    m_news = news;
}

std::optional<wxString> SpokenState::Due(bool hasKeyboard) {
    if (hasKeyboard && m_news == m_toldNews) {
        return {};
    }
    m_toldNews = m_news;
    const wxString& due = hasKeyboard ? m_news : m_whole;
    if (due == m_description) {
        return {};
    }
    m_description = due;
    return due;
}

const wxString& SpokenState::Anew() {
    m_toldNews = m_news;
    return m_description = m_whole;
}

}  // namespace zeldlg
