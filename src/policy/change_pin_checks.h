// What a change dialog asks of what is typed: the four rules of every change and, under a policy,
// the pages that explain it. A list that the dialog shows as it is.
#pragma once

#include <wx/string.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "policy/change_pin_mode.h"
#include "policy/pin_policy.h"
#include "policy/policy_checker.h"

namespace zeldlg {

/// In UTF-8 bytes.
struct LengthBounds {
    uint32_t min = 0;
    uint32_t max = 0;

    bool Contain(size_t length) const { return length >= min && length <= max; }
};

struct ChangePinBounds {
    LengthBounds newValue;
    LengthBounds oldValue;
};

/// What is typed, as UTF-8 bytes.
struct ChangePinEntries {
    std::string_view oldValue;
    std::string_view newValue;
    std::string_view confirmation;
};

/// A rule, or a page of the policed dialog.
struct ChangePinCheck {
    wxString title;
    bool met = false;
    /// What is asked for, and on a policy's page what is wrong.
    wxString text;
    /// The same without any character of the new value: somebody may listen.
    wxString spoken;
};

/// One of the policies P1 to P4, and its page in the change dialog.
struct Policy {
    uint8_t bit;        ///< of PinPolicy::enabledMask
    const char* title;  ///< of its page: a catalogue key
    /// Null: it is for the token to check.
    PolicyStatus (*check)(PinPolicy& policy, std::string_view pin);
    bool messageNeedsPin;      ///< other messages must not see it
    bool messageHasCharacter;  ///< of the new value
    /// What its page says, whatever is typed.
    wxString (*describe)(const PinPolicy& policy);

    /// Accepts any PIN when it is switched off or for the token to check.
    PolicyStatus StatusOf(PinPolicy& policy, std::string_view pin) const;
};

std::span<const Policy> Policies();

class ChangePinChecks {
public:
    /// The rules come first in the list, the pages behind them.
    static constexpr size_t kRuleCount = 4;

    /// Begins with nothing typed.
    /// @param policed Whether there are pages.
    /// @param policy Nothing when the host has none: no policy is checked then, and each page says
    ///               that its policy is disabled.
    ChangePinChecks(ChangePinMode mode, const ChangePinBounds& bounds, bool policed = false,
                    std::optional<PinPolicy> policy = {});

    /// A page whose policy says the same of the new value as before keeps its text.
    void Update(const ChangePinEntries& typed);

    const std::vector<ChangePinCheck>& List() const { return m_list; }

    /// Of the list: the page that is to show by itself, the first that is not met, or the first.
    /// Where there are pages.
    size_t PageToShow() const;

    enum class Entry { OldValue, NewValue, Confirmation };
    /// Those that say what an entry lacks, each once: the pages of length and equality repeat
    /// rules.
    std::vector<ChangePinCheck> Of(Entry entry) const;

    bool AllMet() const {
        return std::all_of(m_list.begin(), m_list.end(), [](const auto& each) { return each.met; });
    }

private:
    void UpdatePage(const Policy& policy, PolicyStatus& last, std::string_view pin,
                    ChangePinCheck& page);

    ChangePinBounds m_bounds;
    PinPolicy m_policy;
    std::vector<ChangePinCheck> m_list;
    std::vector<PolicyStatus> m_statuses;  // by Policies(); empty without pages
};

}  // namespace zeldlg
