#include "policy/policy_pages.h"

#include <utility>

#include "policy/policy_descriptions.h"
#include "policy/policy_messages.h"
#include "resources/texts.h"

namespace zeldlg {

PolicyPages::PolicyPages(std::optional<PinPolicy> policy)
    : m_policy(std::move(policy).value_or(PinPolicy())) {
    for (size_t page = 0; page < kPolicyPageCount; ++page) {
        m_texts[page] = Describe(static_cast<PolicyPage>(page));
    }
}

void PolicyPages::Update(std::string_view pin) {
    const LocalPolicyStatuses now = CheckLocalPolicies(m_policy, pin);
    // A message about classes is made from the PIN; the others must not see it.
    Store(PolicyPage::Distance, m_statuses.distance, now.distance, {});
    Store(PolicyPage::Diversification, m_statuses.classes, now.classes, pin);
    Store(PolicyPage::Restriction, m_statuses.restriction, now.restriction, {});
}

void PolicyPages::Store(PolicyPage page, PolicyStatus& last, PolicyStatus now,
                        std::string_view pin) {
    if (now == last) {
        return;
    }
    last = now;
    wxString& text = m_texts[static_cast<size_t>(page)];
    text = Describe(page);
    if (now != kPolicyAccepted) {
        text += "\n\n" + DescribePolicyStatus(m_policy, now, pin);
    }
}

PolicyStatus PolicyPages::StatusOf(PolicyPage page) const {
    switch (page) {
        case PolicyPage::Distance:
            return m_statuses.distance;
        case PolicyPage::Diversification:
            return m_statuses.classes;
        case PolicyPage::Restriction:
            return m_statuses.restriction;
        case PolicyPage::Similarity:
            break;
    }
    return kPolicyAccepted;
}

wxString PolicyPages::Describe(PolicyPage page) const {
    switch (page) {
        case PolicyPage::Distance:
            return DescribeElementaryDistance(m_policy);
        case PolicyPage::Diversification:
            return DescribeCharacterClassification(m_policy);
        case PolicyPage::Similarity:
            if (!m_policy.IsEnabled(kPolicyHistoryChecking)) {
                return Translate(CATALOGUE_KEY("Pin History checking policy is disabled."));
            }
            return m_policy.p3HistorySize == 0
                       ? Translate(CATALOGUE_KEY("History checking policy log is empty."))
                       : DescribeHistoryChecking(m_policy);
        case PolicyPage::Restriction:
            break;
    }
    return m_policy.IsEnabled(kPolicyCharacterRestriction)
               ? DescribeCharacterRestriction(m_policy)
               : Translate(CATALOGUE_KEY("Character restriction policy is disabled."));
}

}  // namespace zeldlg
