#include "policy/change_pin_checks.h"

#include <utility>

#include "policy/policy_descriptions.h"
#include "policy/policy_messages.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

// Places in the list.
enum : size_t {
    kOldLength,
    kMinLength,
    kMaxLength,
    kEqual,
    kLengthPage,
    kEqualityPage,
    kPolicyPage
};
static_assert(kLengthPage == ChangePinChecks::kRuleCount);

wxString HistoryPage(const PinPolicy& policy) {
    if (!policy.IsEnabled(kPolicyHistoryChecking)) {
        return Translate("Pin History checking policy is disabled.");
    }
    return policy.p3HistorySize == 0 ? Translate("History checking policy log is empty.")
                                     : DescribeHistoryChecking(policy);
}

wxString RestrictionPage(const PinPolicy& policy) {
    return policy.IsEnabled(kPolicyCharacterRestriction)
               ? DescribeCharacterRestriction(policy)
               : Translate("Character restriction policy is disabled.");
}

constexpr Policy kPolicies[] = {
    {kPolicyElementaryDistance, CATALOGUE_KEY("Distance"),
     [](PinPolicy& policy, std::string_view pin) { return CheckElementaryDistance(policy, pin); },
     false, false, DescribeElementaryDistance},
    {kPolicyCharacterClassification, CATALOGUE_KEY("Diversification"),
     [](PinPolicy& policy, std::string_view pin) { return CheckCharacterClasses(policy, pin); },
     true, false, DescribeCharacterClassification},
    {kPolicyHistoryChecking, CATALOGUE_KEY("Similarity"), nullptr, false, false, HistoryPage},
    {kPolicyCharacterRestriction, CATALOGUE_KEY("Restriction"),
     [](PinPolicy& policy, std::string_view pin) {
         return policy.p4CharList.empty() ? kPolicyAccepted
                                          : CheckCharacterRestriction(policy, pin);
     },
     false, true, RestrictionPage},
};

}  // namespace

std::span<const Policy> Policies() { return kPolicies; }

PolicyStatus Policy::StatusOf(PinPolicy& policy, std::string_view pin) const {
    return check != nullptr && policy.IsEnabled(bit) ? check(policy, pin) : kPolicyAccepted;
}

ChangePinChecks::ChangePinChecks(ChangePinMode mode, const ChangePinBounds& bounds, bool policed,
                                 std::optional<PinPolicy> policy)
    : m_bounds(bounds), m_policy(std::move(policy).value_or(PinPolicy())) {
    const ChangePinTexts& texts = TextsOf(mode);
    const auto bound = [](const char* format, auto... values) {
        return FormatTranslated(format, ShownNumber(values)...);
    };
    for (const wxString& rule :
         {bound(texts.oldRule, bounds.oldValue.min, bounds.oldValue.max),
          bound(texts.minRule, bounds.newValue.min), bound(texts.maxRule, bounds.newValue.max),
          Translate(texts.equalRule)}) {
        m_list.push_back({.title = rule, .met = false, .text = rule, .spoken = rule});
    }
    if (policed) {
        const auto addPage = [this](const char* title, const wxString& text) {
            m_list.push_back(
                {.title = Translate(title), .met = true, .text = text, .spoken = text});
        };
        addPage(CATALOGUE_KEY("Length"), m_list[kOldLength].text + "\n" + m_list[kMinLength].text +
                                             "\n" + m_list[kMaxLength].text);
        addPage(CATALOGUE_KEY("Equality"), m_list[kEqual].text);
        for (const Policy& each : kPolicies) {
            addPage(each.title, each.describe(m_policy));
        }
        m_statuses.resize(std::size(kPolicies), kPolicyAccepted);
    }
    Update({});
}

void ChangePinChecks::Update(const ChangePinEntries& typed) {
    const size_t length = typed.newValue.size();
    m_list[kOldLength].met = m_bounds.oldValue.Contain(typed.oldValue.size());
    m_list[kMinLength].met = length >= m_bounds.newValue.min;
    m_list[kMaxLength].met = length <= m_bounds.newValue.max;
    m_list[kEqual].met = typed.newValue == typed.confirmation;
    if (m_statuses.empty()) {
        return;
    }
    m_list[kLengthPage].met =
        m_list[kOldLength].met && m_list[kMinLength].met && m_list[kMaxLength].met;
    m_list[kEqualityPage].met = m_list[kEqual].met;
    for (size_t i = 0; i < m_statuses.size(); ++i) {
        UpdatePage(kPolicies[i], m_statuses[i], typed.newValue, m_list[kPolicyPage + i]);
    }
}

size_t ChangePinChecks::PageToShow() const {
    const auto first = m_list.begin() + kLengthPage;
    const auto unmet =
        std::find_if(first, m_list.end(), [](const auto& each) { return !each.met; });
    return kLengthPage + (unmet != m_list.end() ? static_cast<size_t>(unmet - first) : 0);
}

std::vector<ChangePinCheck> ChangePinChecks::Of(Entry entry) const {
    switch (entry) {
        case Entry::OldValue:
            return {m_list[kOldLength]};
        case Entry::Confirmation:
            return {m_list[kEqual]};
        case Entry::NewValue:
            break;
    }
    std::vector<ChangePinCheck> all = {m_list[kMinLength], m_list[kMaxLength]};
    if (!m_statuses.empty()) {
        all.insert(all.end(), m_list.begin() + kPolicyPage, m_list.end());
    }
    return all;
}

void ChangePinChecks::UpdatePage(const Policy& policy, PolicyStatus& last, std::string_view pin,
                                 ChangePinCheck& page) {
    const PolicyStatus now = policy.StatusOf(m_policy, pin);
    if (now == last) {
        return;
    }
    last = now;
    page.met = now == kPolicyAccepted;
    page.spoken = page.text = policy.describe(m_policy);
    if (!page.met) {
        page.text += "\n\n" + DescribePolicyStatus(
                                  m_policy, now, policy.messageNeedsPin ? pin : std::string_view());
        if (!policy.messageHasCharacter) {
            page.spoken = page.text;
        }
    }
}

}  // namespace zeldlg
