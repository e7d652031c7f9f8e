#include <gtest/gtest.h>

#include "biometric/enrolment_hint_dialog.h"
#include "biometric/super_token_notification_dialog.h"
#include "support/registry_fixture.h"

namespace zeldlg {
namespace {

TEST(ScanCounter, StartsAtZeroAndCountsEachScan) {
    ScanCounter scans;
    for (int count = 0; count <= 12; ++count) {
        EXPECT_EQ(scans.Number(), wxString::Format("%d", count));
        scans.Advance();
    }
}

TEST(ScanCounter, TheTitleNamesTheScan) {
    ScanCounter scans;
    scans.Advance();
    EXPECT_EQ(scans.Title(), "Lumora Bio Token - enrolling finger (scan 1)");
    scans.Advance();
    scans.Advance();
    EXPECT_EQ(scans.Title(), "Lumora Bio Token - enrolling finger (scan 3)");
}

wxString MainText(NotificationMode mode) {
    const NotificationTexts texts = TextsOf(mode);
    return texts.headline + texts.explanation;
}

constexpr const char* kInstruction =
    "Please swipe your finger over the Lumora Bio Token sensor when the yellow light starts "
    "flashing";

TEST(NotificationTexts, OfAnAuthentication) {
    EXPECT_EQ(MainText(NotificationMode::Authentication),
              "Authentication to the Lumora Bio Token is required for this operation.\n\nPlease "
              "wait for the yellow light to start flashing. Then swipe your finger over the sensor "
              "of the Lumora Bio Token.\n\nThis dialog will automatically disappear once the "
              "authentication has completed.");
    EXPECT_EQ(TextsOf(NotificationMode::Authentication).instruction, kInstruction);
}

TEST(NotificationTexts, OfAnEnrolment) {
    EXPECT_EQ(MainText(NotificationMode::Enrolment),
              "You can now enrol a new fingerprint on the Lumora Bio Token.\n\nPlease wait for the "
              "yellow light to start flashing. Then swipe your finger over the sensor of the "
              "Lumora Bio Token.\n\nThis dialog will automatically disappear once the enrolment "
              "has completed.");
    EXPECT_EQ(TextsOf(NotificationMode::Enrolment).instruction, kInstruction);
}

TEST(NotificationTexts, TheHeadlineIsTheFirstParagraph) {
    EXPECT_EQ(TextsOf(NotificationMode::Authentication).headline,
              "Authentication to the Lumora Bio Token is required for this operation.");
    EXPECT_EQ(TextsOf(NotificationMode::Enrolment).headline,
              "You can now enrol a new fingerprint on the Lumora Bio Token.");
}

class EnrolmentHintSetting : public registry::test::RegistryTest {
protected:
    void WriteValue(const std::string& line) {
        registry::test::WriteFile(
            UserFile(),
            "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0]\r\n" + line +
                "\r\n");
    }
};

TEST_F(EnrolmentHintSetting, TheHintIsWantedUnlessTheStoreSaysZero) {
    const struct {
        const char* line;
        bool wanted;
    } cases[] = {{"", true},
                 {"\"ShowEnrolmentHint\"=dword:00000001\r\n", true},
                 {"\"ShowEnrolmentHint\"=dword:00000000\r\n", false},
                 {"\"ShowEnrolmentHint\"=dword:80000000\r\n", true},
                 {"\"showenrolmenthint\"=dword:00000000\r\n", false},
                 {"\"ShowEnrolmentHint\"=\"0\"\r\n", true},
                 {"\"ShowEnrolmentHint\"=hex:00,00,00,00\r\n", true}};
    for (const auto& each : cases) {
        WriteValue(each.line);
        EXPECT_EQ(IsEnrolmentHintWanted(), each.wanted) << each.line;
    }
}

TEST_F(EnrolmentHintSetting, WithoutAFileTheHintIsWanted) { EXPECT_TRUE(IsEnrolmentHintWanted()); }

TEST_F(EnrolmentHintSetting, IsWrittenAtOnceAndReadEveryTime) {
    WriteValue("");
    StoreEnrolmentHintWanted(false);
    EXPECT_NE(registry::test::ReadFile(UserFile()).find("\"ShowEnrolmentHint\"=dword:00000000"),
              std::string::npos);
    EXPECT_FALSE(IsEnrolmentHintWanted());
    StoreEnrolmentHintWanted(true);
    EXPECT_NE(registry::test::ReadFile(UserFile()).find("\"ShowEnrolmentHint\"=dword:00000001"),
              std::string::npos);
    EXPECT_TRUE(IsEnrolmentHintWanted());
    WriteValue("\"ShowEnrolmentHint\"=dword:00000000\r\n");
    EXPECT_FALSE(IsEnrolmentHintWanted()) << "another process changed it";
}

TEST_F(EnrolmentHintSetting, WithoutTheKeyTheWishIsDropped) {
    registry::test::WriteFile(UserFile(), registry::test::SmallRegistry("00000001"));
    const std::string before = registry::test::ReadFile(UserFile());
    StoreEnrolmentHintWanted(false);
    EXPECT_EQ(registry::test::ReadFile(UserFile()), before);
    EXPECT_TRUE(IsEnrolmentHintWanted());
}

TEST_F(EnrolmentHintSetting, AFileThatIsNoRegistryIsLeftAlone) {
    registry::test::WriteFile(UserFile(), "something else");
    StoreEnrolmentHintWanted(false);
    EXPECT_EQ(registry::test::ReadFile(UserFile()), "something else");
    EXPECT_TRUE(IsEnrolmentHintWanted());
}

}  // namespace
}  // namespace zeldlg
