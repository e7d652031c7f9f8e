// Policies out of the configuration store.
#include "policy/pin_policy_settings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "policy/change_pin_checks.h"
#include "policy/policy_descriptions.h"
#include "support/registry_fixture.h"

namespace zeldlg {
namespace {

constexpr const char* kPoliciesSection =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0\\Policies";

std::string Registry(const std::string& values) {
    std::string text = "REGEDIT4\r\n\r\n";
    text.append(kPoliciesSection).append("]\r\n\r\n");
    text.append(kPoliciesSection).append("\\Set]\r\n").append(values).append("\r\n");
    return text;
}

/// No field has the value that a reading would leave behind by accident.
PinPolicy PreviousPolicy() {
    PinPolicy policy;
    policy.headerByte = 101;
    policy.formatTag = 102;
    policy.enabledMask = 103;
    policy.p1Threshold = 104;
    policy.p1CaseSensitive = 105;
    policy.p1FullPinCheck = 106;
    policy.p2NbClass = 107;
    policy.p2PopMin = 108;
    policy.p2MinLen = 109;
    policy.p2ClassMask = 110;
    policy.p3Threshold = 111;
    policy.p3HistorySize = 112;
    policy.p3CaseInsensitive = 113;
    policy.p3LengthNormalize = 114;
    policy.p3StrictOnly = 115;
    policy.p4CharList = "previous";
    policy.lastRefusedCharacter = 116;
    policy.p4IsWhiteList = 117;
    policy.source = PolicySource::Card;
    return policy;
}

class PolicySettings : public registry::test::RegistryTest {
protected:
    /// A record as it was before, read from a set with these value lines.
    PinPolicy Read(const std::string& values) {
        registry::test::WriteFile(UserFile(), Registry(values));
        PinPolicy policy = PreviousPolicy();
        LoadPinPolicyFromRegistry(policy, L"Set");
        return policy;
    }
};

TEST_F(PolicySettings, EmptySetTurnsEverythingOnAndLeavesTheRest) {
    PinPolicy expected = PreviousPolicy();
    expected.enabledMask = 255;
    expected.p2ClassMask = 255;
    expected.p4CharList = "";
    expected.source = PolicySource::Registry;
    EXPECT_EQ(Read(""), expected);
}

TEST_F(PolicySettings, EveryValueGoesIntoItsField) {
    PinPolicy expected = PreviousPolicy();
    expected.enabledMask = 1;
    expected.p1Threshold = 2;
    expected.p1CaseSensitive = 3;
    expected.p1FullPinCheck = 4;
    expected.p2NbClass = 5;
    expected.p2PopMin = 6;
    expected.p2MinLen = 7;
    expected.p2ClassMask = 8;
    expected.p3Threshold = 9;
    expected.p3HistorySize = 10;
    expected.p3CaseInsensitive = 11;
    expected.p3LengthNormalize = 12;
    expected.p3StrictOnly = 13;
    expected.p4CharList = std::string("\x41\x00\xFF", 3);
    expected.p4IsWhiteList = 14;
    expected.source = PolicySource::Registry;
    EXPECT_EQ(Read("\"PoliciesEnabled\"=dword:00000001\r\n\"P1Threshold\"=dword:00000002\r\n"
                   "\"P1CaseSensitive\"=dword:00000003\r\n\"P1FullPinCheck\"=dword:00000004\r\n"
                   "\"P2NbClass\"=dword:00000005\r\n\"P2PopMin\"=dword:00000006\r\n"
                   "\"P2MinLen\"=dword:00000007\r\n\"P2ClassMask\"=dword:00000008\r\n"
                   "\"P3Threshold\"=dword:00000009\r\n\"P3HistorySize\"=dword:0000000a\r\n"
                   "\"P3CaseInsensitive\"=dword:0000000b\r\n"
                   "\"P3LengthNormalize\"=dword:0000000c\r\n"
                   "\"P3StrictOnly\"=dword:0000000d\r\n\"P4CharList\"=hex:41,00,ff\r\n"
                   "\"P4IsWhiteList\"=dword:0000000e\r\n"),
              expected);
}

TEST_F(PolicySettings, NumberIsKeptAsItsLowestByte) {
    const PinPolicy policy = Read(
        "\"P1Threshold\"=dword:000001ff\r\n\"P2ClassMask\"=dword:12345600\r\n"
        "\"PoliciesEnabled\"=dword:ffffff0f\r\n\"P4IsWhiteList\"=dword:00000100\r\n");
    EXPECT_EQ(policy.p1Threshold, 0xFF);
    EXPECT_EQ(policy.p2ClassMask, 0);
    EXPECT_EQ(policy.enabledMask, 0x0F);
    EXPECT_EQ(policy.p4IsWhiteList, 0);
}

TEST_F(PolicySettings, NumberOfAnotherTypeCountsAsMissing) {
    const PinPolicy policy = Read(
        "\"PoliciesEnabled\"=\"1\"\r\n\"P1Threshold\"=\"1\"\r\n"
        "\"P2ClassMask\"=hex:01,00,00,00\r\n\"P2MinLen\"=hex:01,00,00,00\r\n");
    EXPECT_EQ(policy.enabledMask, 255);
    EXPECT_EQ(policy.p1Threshold, 104);
    EXPECT_EQ(policy.p2ClassMask, 255);
    EXPECT_EQ(policy.p2MinLen, 109);
}

TEST_F(PolicySettings, CharacterListMayBeATextOrBytes) {
    EXPECT_EQ(Read("\"P4CharList\"=\"0123\"\r\n").p4CharList, "0123");
    EXPECT_EQ(Read("\"P4CharList\"=\"\xC3\xA9\"\r\n").p4CharList, "\xC3\xA9");
    EXPECT_EQ(Read("\"P4CharList\"=\"\xE9\"\r\n").p4CharList, "\xE9");
    EXPECT_EQ(Read("\"P4CharList\"=\"\"\r\n").p4CharList, "");
    EXPECT_EQ(Read("\"P4CharList\"=hex:30,31,00\r\n").p4CharList, std::string("01\0", 3));
}

TEST_F(PolicySettings, CharacterListHasAtMost64Bytes) {
    const std::string longest(64, 'c');
    EXPECT_EQ(Read("\"P4CharList\"=\"" + longest + "\"\r\n").p4CharList, longest);
    EXPECT_EQ(Read("\"P4CharList\"=\"" + longest + "c\"\r\n").p4CharList, "");
}

TEST_F(PolicySettings, CharacterListThatIsANumberLeavesNone) {
    EXPECT_EQ(Read("\"P4CharList\"=dword:00000030\r\n").p4CharList, "");
}

TEST_F(PolicySettings, MissingSetChangesOnlyTheSource) {
    registry::test::WriteFile(UserFile(), Registry("\"P1Threshold\"=dword:00000001\r\n"));
    PinPolicy expected = PreviousPolicy();
    expected.source = PolicySource::Registry;
    PinPolicy policy = PreviousPolicy();
    LoadPinPolicyFromRegistry(policy, L"Other");
    EXPECT_EQ(policy, expected);
}

TEST_F(PolicySettings, MissingPoliciesKeyChangesOnlyTheSource) {
    registry::test::WriteFile(UserFile(), registry::test::SmallRegistry("00000001"));
    PinPolicy expected = PreviousPolicy();
    expected.source = PolicySource::Registry;
    PinPolicy policy = PreviousPolicy();
    LoadPinPolicyFromRegistry(policy, L"Set");
    EXPECT_EQ(policy, expected);
}

TEST_F(PolicySettings, WithoutAnyFileOnlyTheSourceChanges) {
    PinPolicy expected = PreviousPolicy();
    expected.source = PolicySource::Registry;
    PinPolicy policy = PreviousPolicy();
    LoadPinPolicyFromRegistry(policy, L"Set");
    EXPECT_EQ(policy, expected);
}

TEST_F(PolicySettings, ReadingWritesNothingAndClosesItsKeys) {
    Read("\"P1Threshold\"=dword:00000001\r\n");
    const std::string content = registry::test::ReadFile(UserFile());
    EXPECT_EQ(content, Registry("\"P1Threshold\"=dword:00000001\r\n"));
    // With a key still open the store would not read the file again.
    EXPECT_EQ(Read("\"P1Threshold\"=dword:00000002\r\n").p1Threshold, 2);
}

TEST_F(PolicySettings, HistoryPolicyWithItsBitClearIsDescribedAsDisabled) {
    const PinPolicy policy = Read(
        "\"PoliciesEnabled\"=dword:0000000b\r\n\"P3Threshold\"=dword:00000003\r\n"
        "\"P3HistorySize\"=dword:00000005\r\n");
    EXPECT_EQ(policy.p3HistorySize, 5);
    EXPECT_EQ(DescribeHistoryChecking(policy), L"History checking:\nThis policy is disabled");
}

TEST_F(PolicySettings, ReadPolicyIsTheOneThatIsChecked) {
    PinPolicy policy = Read(
        "\"PoliciesEnabled\"=dword:00000008\r\n\"P4CharList\"=\"0123456789\"\r\n"
        "\"P4IsWhiteList\"=dword:00000001\r\n");
    EXPECT_EQ(Policies()[3].StatusOf(policy, "12a4"), 0x6402);
}

/// Sets an environment variable for as long as it lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const std::string& value) : m_name(name) {
        if (const char* previous = getenv(name)) {
            m_previous = previous;
        }
        setenv(name, value.c_str(), 1);
    }
    ~EnvironmentVariable() {
        if (m_previous) {
            setenv(m_name, m_previous->c_str(), 1);
        } else {
            unsetenv(m_name);
        }
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_previous;
};

TEST_F(PolicySettings, AreFoundUnderTheHomeThatTheEnvironmentNames) {
    registry::SetRegistryPlaces({scratch / "shipped", scratch / "etc", scratch / "tmp",
                                 registry::RegistryPlaces::ProcessEnvironment});
    const EnvironmentVariable home("ZEL_HOME", scratch / "home");
    EXPECT_EQ(Read("\"P2MinLen\"=dword:00000008\r\n").p2MinLen, 8);
}

}  // namespace
}  // namespace zeldlg
