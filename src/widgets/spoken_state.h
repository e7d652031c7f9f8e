// What a screen reader says of a state that changes while the user works, and when. Logic only: the
// words come from the dialogs, LiveDescription brings them to the control.
//
// Announcements reach few screen readers. The description of the control that has the keyboard
// reaches all: it is spoken when the keyboard comes there, and whenever it changes meanwhile.
#pragma once

#include <wx/string.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace zeldlg {

/// The texts as sentences of one text; empty ones are left out.
wxString Sentences(const std::vector<wxString>& texts);

/// A rule with its state in words, so that a colour is never the only sign.
/// @param rule Translated.
wxString RuleState(const wxString& rule, bool met);

struct SpokenRule {
    wxString rule;  ///< translated
    bool met;
};

/// The rules for one entry, in as few words as tell what is left to do.
class SpokenRules {
public:
    /// @return What is not met; when that is nothing any more, what it was that is met now.
    wxString Update(const std::vector<SpokenRule>& rules);

private:
    std::vector<wxString> m_unmet;
};

/// Seconds of a count-down as it is spoken: a word each second would drown everything else.
class SpokenCountDown {
public:
    void Update(int64_t secondsLeft);

    /// As they are now.
    wxString Whole() const;
    /// As they were when they last were worth a word: with 30, 10 and 5 left. Empty before.
    wxString News() const;

private:
    int64_t m_left = 0;
    std::optional<int64_t> m_told;
};

/// The description of one control.
class SpokenState {
public:
    /// Milliseconds that have to pass after the last key: the next key silences a screen reader.
    static constexpr int kPause = 400;

    /// @param whole What is said when the keyboard comes to the control.
    /// @param news What of it is said while the keyboard is there, when it changes.
    void Tell(const wxString& whole, const wxString& news);

    /// @return The description that the control gets now; nothing when it stays as it is.
    std::optional<wxString> Due(bool hasKeyboard);

    /// @return The description of another control that stands for this one from now on.
    const wxString& Anew();

private:
    wxString m_whole;
    wxString m_news;
    wxString m_toldNews;
    wxString m_description;
};

}  // namespace zeldlg
