// The pages of the policed change dialog that explain the four policies: what they say and
// whether the typed PIN keeps to them.
#pragma once

#include <wx/string.h>

#include <array>
#include <optional>
#include <string_view>

#include "policy/pin_policy.h"
#include "policy/policy_checker.h"

namespace zeldlg {

enum class PolicyPage { Distance, Diversification, Similarity, Restriction };
inline constexpr size_t kPolicyPageCount = 4;

class PolicyPages {
public:
    /// @param policy Nothing when the host has none: no policy is checked then, and each page
    ///               says that its policy is disabled.
    explicit PolicyPages(std::optional<PinPolicy> policy);

    /// Checks a PIN (UTF-8). A page whose status stays the same keeps its text.
    void Update(std::string_view pin);

    bool AllMet() const { return m_statuses.AllAccepted(); }
    /// Similarity is for the token to decide: it counts as met here.
    bool IsMet(PolicyPage page) const { return StatusOf(page) == kPolicyAccepted; }
    /// The policy in words, followed by what is wrong with the PIN.
    const wxString& TextOf(PolicyPage page) const { return m_texts[static_cast<size_t>(page)]; }

private:
    PolicyStatus StatusOf(PolicyPage page) const;
    wxString Describe(PolicyPage page) const;
    void Store(PolicyPage page, PolicyStatus& last, PolicyStatus now, std::string_view pin);

    PinPolicy m_policy;
    LocalPolicyStatuses m_statuses;
    std::array<wxString, kPolicyPageCount> m_texts;
};

}  // namespace zeldlg
