// What travels with a request is typed on its whole way: what does not belong to it does not
// compile.
#include <gtest/gtest.h>

#include <cstddef>

#include "api/call_frame.h"
#include "runtime/requests.h"

namespace zeldlg {
namespace {

template <typename... Arguments>
concept CanAsk = requires(Arguments... arguments) {
    api::Ask(arguments...);  // compiles
};

template <typename... Arguments>
concept CanSend = requires(Arguments... arguments) {
    api::Send(arguments...);  // compiles
};

using ShowPin = decltype(kShowPin);
static_assert(CanAsk<ShowPin, const PinDialogRequest*, PinBuffer*>);
static_assert(!CanAsk<ShowPin, const PinDialogRequestEx*, PinBuffer*>);
static_assert(!CanAsk<ShowPin, const PinDialogRequest*, PinChangeBuffers*>);
static_assert(!CanAsk<ShowPin, const PinDialogRequest*, const PinBuffer*>);
static_assert(!CanAsk<ShowPin, const void*, void*>);
static_assert(!CanAsk<uint64_t, const PinDialogRequest*, PinBuffer*>, "a code is no request");

static_assert(CanAsk<decltype(kChangePin), const PinChangeRequest*, PinChangeBuffers*>);
static_assert(!CanAsk<decltype(kChangePin), const PolicedPinChangeRequest*, PinChangeBuffers*>);
static_assert(
    !CanAsk<decltype(kUnblockThroughCr), const ChallengeResponseRequest*, PinChangeBuffers*>);
static_assert(!CanAsk<decltype(kSelectDigitalId), const DigitalIdChoice*, PinBuffer*>);
static_assert(!CanAsk<decltype(kSelectToken), const TokenChoiceList*, uint64_t*>,
              "its output is stored by the export");
static_assert(!CanAsk<decltype(kQuestionBox), const wchar_t*, bool*>, "it has a rule of its own");

static_assert(CanSend<decltype(kQuestionBox), const wchar_t*, bool*>);
static_assert(!CanSend<decltype(kQuestionBox), const char*, bool*>);
static_assert(!CanSend<decltype(kTokenLocked), const wchar_t*>);
static_assert(!CanSend<decltype(kShowEnrolment), const char*>, "it carries nothing");
static_assert(CanSend<decltype(kPinPadShowVerification), bool, void**>);
static_assert(!CanSend<decltype(kPinPadShowVerification), bool, bool*>);

// The shapes of replies.
static_assert(offsetof(PinReply<PinBuffer>, output) == 0);
static_assert(offsetof(PinReply<PinBuffer>, returnCode) == 8);
static_assert(offsetof(ChangeReply<PinChangeBuffers>, returnCode) == 0);
static_assert(offsetof(ChangeReply<PinChangeBuffers>, output) == 8);
static_assert(offsetof(TranslationReply<char>, size) == 0);
static_assert(offsetof(TranslationReply<char>, buffer) == 8);
static_assert(offsetof(TranslationReply<char>, result) == 16);

template <typename T>
T AfterTheWay(T parameter) {
    return std::get<0>(Unpacked<T>(Packed(parameter)));
}

TEST(TypedRequests, ParametersArriveAsTheyWereSent) {
    const PinDialogRequest record{};
    EXPECT_EQ(AfterTheWay(&record), &record);
    EXPECT_EQ(AfterTheWay<const char*>(nullptr), nullptr);
    EXPECT_TRUE(AfterTheWay(true));
    EXPECT_FALSE(AfterTheWay(false));
}

TEST(TypedRequests, NothingTravelsAsZeroAndIsNoParameter) {
    EXPECT_EQ(Packed(Nothing()), 0U);
    EXPECT_EQ(std::tuple_size_v<decltype(Unpacked<Nothing>(0))>, 0U);
}

}  // namespace
}  // namespace zeldlg
