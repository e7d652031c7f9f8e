// The wrapper for hosts in C++, on functions that stand for those of the library.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <zeldlg/zeldlg.hpp>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using zeldlg::Attempts;
using zeldlg::Bounds;
using zeldlg::Failure;
using zeldlg::PinPad;
using zeldlg::Policy;
using zeldlg::Result;
using zeldlg::Secret;
using zeldlg::Session;

// What the library was asked, and what its user does. The records are kept by value; what they
// point to is copied while it is there.
struct Library {
    uint32_t code = ZELDLG_OK;
    std::string typed = "2468";
    std::string second = "97531";
    uint64_t chosen = 0;
    bool abort = false;

    std::vector<std::string> calls;
    std::string label;
    PinDialogRequest pin{};
    PinDialogRequestEx pinEx{};
    PinChangeRequest change{};
    PolicedPinChangeRequest policed{};
    bool hasPolicy = false;
    PinPolicyDescriptor descriptor{};
    PinPolicyWire wire{};
    std::string characters;
    uint64_t capacity = 0;
    std::vector<std::string> rows;
};

Library g_library;

uint32_t Deliver(PinBuffer* buffer) {
    g_library.capacity = buffer->pinLength;
    if (g_library.code == ZELDLG_OK) {
        memcpy(buffer->pin, g_library.typed.data(), g_library.typed.size());
        buffer->pinLength = static_cast<uint32_t>(g_library.typed.size());
    }
    return g_library.code;
}

template <const char* Name>
uint32_t ShowPin(const PinDialogRequest* request, PinBuffer* buffer) {
    g_library.calls.emplace_back(Name);
    g_library.pin = *request;
    g_library.label = request->tokenLabel;
    return Deliver(buffer);
}

template <const char* Name>
uint32_t ShowPinEx(const PinDialogRequestEx* request, PinBuffer* buffer) {
    g_library.calls.emplace_back(Name);
    g_library.pinEx = *request;
    g_library.label = request->tokenLabel;
    return Deliver(buffer);
}

uint32_t DeliverBoth(PinChangeBuffers* buffers) {
    g_library.capacity = buffers->newLength;
    if (g_library.code == ZELDLG_OK) {
        memcpy(buffers->oldValue, g_library.typed.data(), g_library.typed.size());
        memcpy(buffers->newValue, g_library.second.data(), g_library.second.size());
        buffers->oldLength = g_library.typed.size();
        buffers->newLength = g_library.second.size();
    }
    return g_library.code;
}

template <const char* Name>
uint32_t ShowChange(const PinChangeRequest* request, PinChangeBuffers* buffers) {
    g_library.calls.emplace_back(Name);
    g_library.change = *request;
    g_library.label = request->tokenLabel;
    return DeliverBoth(buffers);
}

uint32_t ShowPoliced(const PolicedPinChangeRequest* request, PinChangeBuffers* buffers) {
    g_library.calls.emplace_back("policed");
    g_library.policed = *request;
    g_library.label = request->tokenLabel;
    g_library.hasPolicy = request->policy != nullptr;
    if (g_library.hasPolicy) {
        g_library.descriptor = *request->policy;
        g_library.wire = *request->policy->block;
        const PinPolicyCharList& list = *g_library.wire.charList;
        g_library.characters.assign(list.characters, list.length);
    }
    return DeliverBoth(buffers);
}

uint32_t ShowTokens(const TokenChoiceList* list, uint64_t* identifier) {
    for (uint32_t i = 0; i < list->count; ++i) {
        g_library.rows.push_back(std::string(list->entries[i].name) + "|" +
                                 list->entries[i].detail);
    }
    *identifier = list->entries[g_library.chosen].identifier;
    return g_library.code;
}

uint32_t Record(const char* what) {
    g_library.calls.emplace_back(what);
    return g_library.code;
}

template <const char* Name>
uint32_t ShowPad(void** handle, uint8_t allowAbort) {
    g_library.calls.push_back(std::string(Name) + (allowAbort != 0 ? " with Abort" : ""));
    *handle = &g_library;
    return g_library.code == ZELDLG_OK ? 1 : 0;
}

template <const char* Name>
void TellPad(void* handle) {
    g_library.calls.emplace_back(handle == &g_library ? Name : "a wrong handle");
}

constexpr char kPin[] = "pin", kPinEx[] = "pin-ex", kLegal[] = "legal", kLegalEx[] = "legal-ex",
               kChange[] = "change", kPuk[] = "puk", kVerify[] = "verify", kModify[] = "modify",
               kPadLegal[] = "pad-legal", kNoPin[] = "no-pin", kLegalNoPin[] = "legal-no-pin",
               kNext[] = "next", kHide[] = "hide", kAdd[] = "add", kDelete[] = "delete",
               kClear[] = "clear", kAccept[] = "accept", kCancel[] = "cancel", kTimeout[] = "time";

DLG_FunctionList Functions() {
    DLG_FunctionList functions{};
    functions.version = ZELDLG_FUNCTION_LIST_VERSION;
    functions.ShowPinDialog = ShowPin<kPin>;
    functions.ShowPinDialogEx = ShowPinEx<kPinEx>;
    functions.ShowLegalPinDialog = ShowPin<kLegal>;
    functions.ShowLegalPinDialogEx = ShowPinEx<kLegalEx>;
    functions.ShowChangePinDialog = ShowChange<kChange>;
    functions.ShowChangeTransportPIN = ShowChange<kPuk>;
    functions.ShowChangePolicedPinDialog_func = ShowPoliced;
    functions.ShowTokenSelectionDialog = ShowTokens;
    functions.ShowLockedDialog = [](const char* label) {
        return Record((std::string("locked ") + label).c_str());
    };
    functions.ShowConfirmDeleteCertificate = [](const char* application, const char* label,
                                                const char* to, const char* by, const char* from,
                                                const char* until) {
        return Record((std::string(application) + label + to + by + from + until).c_str());
    };
    functions.ShowPUKIsLocked = [] { return Record("puk-locked"); };
    functions.AskChangeTransportPIN = [] { return Record("transport"); };
    functions.AskEarlyUnexpirePin = [](uint32_t days) {
        return Record(("days " + std::to_string(days)).c_str());
    };
    functions.ShowUnlockTokenDialog = [] { return Record("unlock"); };
    functions.ShowKeyGenerationProgressDialog = [] { return Record("progress"); };
    functions.HideKeyGenerationProgressDialog = [] { return Record("hide progress"); };
    functions.PinPadShowVerificationDialog = ShowPad<kVerify>;
    functions.PinPadShowModificationDialog = ShowPad<kModify>;
    functions.PinPadShowLegalVerificationDialog = ShowPad<kPadLegal>;
    functions.PinPadShowNoPinVerificationDialog = ShowPad<kNoPin>;
    functions.PinPadShowLegalNoPinVerificationDialog = ShowPad<kLegalNoPin>;
    functions.PinPadHideDialog = TellPad<kHide>;
    functions.PinPadKeyboardInputNextPin = TellPad<kNext>;
    functions.PinPadKeyboardInputAddChar = TellPad<kAdd>;
    functions.PinPadKeyboardInputDelChar = TellPad<kDelete>;
    functions.PinPadKeyboardInputClearChars = TellPad<kClear>;
    functions.PinPadKeyboardInputAccept = TellPad<kAccept>;
    functions.PinPadKeyboardInputCancel = TellPad<kCancel>;
    functions.PinPadKeyboardInputTimeout = TellPad<kTimeout>;
    functions.PinPadKeyboardInputShouldAbort = [](void*) -> uint32_t {
        return g_library.abort ? 1 : 0;
    };
    functions.Finalize = [] { g_library.calls.emplace_back("finalise"); };
    return functions;
}

const DLG_FunctionList kFunctions = Functions();

std::string Text(const Secret& secret) { return {secret.data(), secret.data() + secret.size()}; }

class HostWrapper : public testing::Test {
protected:
    void SetUp() override { g_library = {}; }

    Session dialogs{kFunctions};
};

static_assert(!std::is_copy_constructible_v<Secret> && !std::is_copy_assignable_v<Secret>);
static_assert(!std::is_copy_constructible_v<Session> && !std::is_move_constructible_v<Session>);
static_assert(!std::is_convertible_v<uint32_t, Result>, "a code is not taken for a result");

TEST(HostSecret, IsEmptyOnceItWasMoved) {
    Secret one(4);
    memcpy(one.data(), "2468", 4);
    Secret other = std::move(one);
    EXPECT_EQ("2468", Text(other));
    EXPECT_TRUE(one.empty());  // NOLINT(bugprone-use-after-move): what is left is stated
    EXPECT_EQ(nullptr, one.data());
}

TEST(HostSecret, OverwritesWhatIsCutOff) {
    Secret secret(6);
    memcpy(secret.data(), "246813", 6);
    secret.truncate(4);
    EXPECT_EQ("2468", Text(secret));
    EXPECT_EQ(std::string(2, '\0'), std::string(secret.data() + 4, secret.data() + 6));
    secret.truncate(5);
    EXPECT_EQ(4U, secret.size());
}

TEST(HostSession, TheLastOneEndsTheUserInterface) {
    g_library = {};
    {
        const Session first(kFunctions);
        {
            const Session second(kFunctions);  // ends at once
        }
        EXPECT_TRUE(g_library.calls.empty());
    }
    EXPECT_EQ(std::vector<std::string>{"finalise"}, g_library.calls);
}

TEST(HostSession, RefusesFunctionsOfAnotherVersion) {
    DLG_FunctionList functions = kFunctions;
    functions.version = 15;
    EXPECT_THROW(Session{functions}, std::runtime_error);
}

TEST(HostSession, SaysWhyALibraryCannotBeLoaded) {
    try {
        Session::load("no-such-library.so");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_NE(nullptr, strstr(error.what(), "no-such-library.so"));
    }
}

TEST_F(HostWrapper, AsksForAPinWithTheFunctionThatFitsWhatIsKnown) {
    zeldlg::PinRequest request{"Card", {4, 12}, {}, false};
    Secret pin;
    for (const auto& [of, legal, name] : {std::tuple(0U, false, kPin),
                                          {0U, true, kLegal},
                                          {3U, false, kPinEx},
                                          {3U, true, kLegalEx}}) {
        request.attempts.of = of;
        request.attempts.left = of;
        request.legal = legal;
        EXPECT_EQ(Result::Ok, dialogs.ask_pin(request, pin));
        EXPECT_EQ(name, g_library.calls.back());
        EXPECT_EQ("Card", g_library.label);
        EXPECT_EQ("2468", Text(pin));
    }
    EXPECT_EQ(4U, g_library.pin.minPinLength);
    EXPECT_EQ(12U, g_library.pin.maxPinLength);
    EXPECT_EQ(4U, g_library.pinEx.minPinLength);
    EXPECT_EQ(12U, g_library.pinEx.maxPinLength);
    EXPECT_EQ(3U, g_library.pinEx.maxTries);
    EXPECT_EQ(3U, g_library.pinEx.triesLeft);
}

TEST_F(HostWrapper, TellsOfWrongAttempts) {
    struct Case {
        Attempts attempts;
        int noFailure, finalTry, failedEarlier;
    };
    Secret pin;
    for (const Case& each : {Case{{Failure::None, false, 0, 0}, 1, 0, 1},
                             {{Failure::Now, false, 0, 0}, 0, 0, 0},
                             {{Failure::Earlier, false, 0, 0}, 0, 0, 1},
                             {{Failure::None, true, 0, 0}, 1, 1, 1},
                             {{Failure::Now, false, 1, 0}, 0, 1, 0}}) {
        ASSERT_EQ(Result::Ok, dialogs.ask_pin({"Card", {}, each.attempts, false}, pin));
        EXPECT_EQ(each.noFailure, g_library.pin.noFailure);
        EXPECT_EQ(each.finalTry, g_library.pin.finalTry);
        EXPECT_EQ(each.failedEarlier, g_library.pin.failedEarlier);
    }
}

TEST_F(HostWrapper, LeavesThePinAloneUnlessItWasConfirmed) {
    Secret pin(1);
    for (const auto& [code, result] : {std::pair(ZELDLG_CANCELLED, Result::Cancelled),
                                       {ZELDLG_FAILED, Result::Failed},
                                       {0x12345678U, Result::Failed}}) {
        g_library.code = code;
        EXPECT_EQ(result, dialogs.ask_pin({}, pin));
        EXPECT_EQ(1U, pin.size());
    }
}

TEST_F(HostWrapper, TellsAPinOfTooManyBytesFromACancelledOne) {
    Secret pin;
    g_library.typed = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";  // five letters, ten bytes
    EXPECT_EQ(Result::TooLong, dialogs.ask_pin({"Card", {4, 8}, {}, false}, pin));
    EXPECT_EQ(32U, g_library.capacity);
    EXPECT_TRUE(pin.empty());
    EXPECT_EQ(Result::Ok, dialogs.ask_pin({"Card", {4, 10}, {}, false}, pin));
    EXPECT_EQ(10U, pin.size());
}

TEST_F(HostWrapper, RefusesWhatNothingFits) {
    Secret pin;
    Secret other;
    for (const Bounds bounds : {Bounds{5, 4}, {0, 0}, {4, 65537}}) {
        EXPECT_THROW((void)dialogs.ask_pin({"Card", bounds, {}, false}, pin),
                     std::invalid_argument);
        EXPECT_THROW((void)dialogs.unblock({"Card", bounds, {}}, pin, other),
                     std::invalid_argument);
        EXPECT_THROW((void)dialogs.change_pin({"Card", bounds, {}, {}, {}, false}, pin, other),
                     std::invalid_argument);
        EXPECT_THROW((void)dialogs.change_pin({"Card", {}, bounds, {}, {}, false}, pin, other),
                     std::invalid_argument);
    }
    for (const uint32_t left : {0U, 4U}) {
        EXPECT_THROW(
            (void)dialogs.ask_pin({"Card", {}, {Failure::None, false, left, 3}, false}, pin),
            std::invalid_argument);
    }
    size_t index = 0;
    EXPECT_THROW((void)dialogs.select({}, index), std::invalid_argument);
    EXPECT_TRUE(g_library.calls.empty());
}

TEST_F(HostWrapper, ChangesAPinWithTheSmallerDialogWhenNothingNeedsTheLargerOne) {
    Secret oldPin;
    Secret newPin;
    zeldlg::ChangeRequest request;
    request.label = "Card";
    request.attempts.failure = Failure::Now;
    EXPECT_EQ(Result::Ok, dialogs.change_pin(request, oldPin, newPin));
    EXPECT_EQ(kChange, g_library.calls.back());
    EXPECT_EQ(0, g_library.change.noFailure);
    EXPECT_EQ(0, g_library.change.changePuk);
    EXPECT_EQ("2468", Text(oldPin));
    EXPECT_EQ("97531", Text(newPin));

    request.attempts = {Failure::None, false, 1, 3};
    request.puk = true;
    EXPECT_EQ(Result::Ok, dialogs.change_pin(request, oldPin, newPin));
    EXPECT_EQ("policed", g_library.calls.back());
    EXPECT_FALSE(g_library.hasPolicy);
    EXPECT_EQ(1, g_library.policed.noFailure);
    EXPECT_EQ(1, g_library.policed.finalTry);
    EXPECT_EQ(1U, g_library.policed.triesLeft);
    EXPECT_EQ(1, g_library.policed.changePuk);
}

TEST_F(HostWrapper, HandsAPolicyOverAsARecordThatCanBeRead) {
    Secret oldPin;
    Secret newPin;
    zeldlg::ChangeRequest request{"Card", {6, 16}, Bounds{4, 12}, {}, Policy(), false};
    request.policy->no_run(2).classes(2, 1, Policy::Lower | Policy::Digit).min_length(6);
    request.policy->history(5).without("01");
    EXPECT_EQ(Result::Ok, dialogs.change_pin(request, oldPin, newPin));
    EXPECT_EQ(4U, g_library.policed.oldMinLength);
    EXPECT_EQ(12U, g_library.policed.oldMaxLength);
    EXPECT_EQ(0U, g_library.descriptor.tag);
    EXPECT_EQ(32U, g_library.descriptor.size);
    const PinPolicyWire& wire = g_library.wire;
    EXPECT_EQ(15, wire.enabledMask);
    EXPECT_EQ(2, wire.p1Threshold);
    EXPECT_EQ(1, wire.p1FullPinCheck);
    EXPECT_EQ(2, wire.p2NbClass);
    EXPECT_EQ(1, wire.p2PopMin);
    EXPECT_EQ(6, wire.p2MinLen);
    EXPECT_EQ(5, wire.p2ClassMask);
    EXPECT_EQ(5, wire.p3HistorySize);
    EXPECT_EQ(1, wire.p3StrictOnly);
    EXPECT_EQ(0, wire.p4IsWhiteList);
    EXPECT_EQ("01", g_library.characters);

    request.policy = Policy().only("abc").no_near_neighbours();
    EXPECT_EQ(Result::Ok, dialogs.change_pin(request, oldPin, newPin));
    EXPECT_EQ(9, g_library.wire.enabledMask);
    EXPECT_EQ(1, g_library.wire.p4IsWhiteList);
    EXPECT_EQ(0, g_library.wire.p1FullPinCheck);
    EXPECT_EQ("abc", g_library.characters);
}

TEST_F(HostWrapper, BuildsNoPolicyThatNoPinKeeps) {
    EXPECT_THROW(Policy().classes(3, 1, Policy::Lower | Policy::Digit), std::invalid_argument);
    EXPECT_THROW(Policy().classes(1, 1, 32), std::invalid_argument);
    EXPECT_THROW(Policy().only(""), std::invalid_argument);
    EXPECT_THROW(Policy().without(""), std::invalid_argument);
    Secret oldPin;
    Secret newPin;
    EXPECT_THROW((void)dialogs.change_pin({"Card", {4, 8}, {}, {}, Policy().min_length(9), false},
                                          oldPin, newPin),
                 std::invalid_argument);
    EXPECT_TRUE(g_library.calls.empty());
}

TEST_F(HostWrapper, UnblocksWithTheFunctionThatAsksForThePuk) {
    Secret puk;
    Secret newPin;
    EXPECT_EQ(Result::Ok, dialogs.unblock({"Card", {4, 8}, {}}, puk, newPin));
    EXPECT_EQ(kPuk, g_library.calls.back());
    EXPECT_EQ("2468", Text(puk));
    EXPECT_EQ("97531", Text(newPin));
}

TEST_F(HostWrapper, GivesTheNumberOfTheChosenLine) {
    size_t index = 7;
    g_library.chosen = 1;
    EXPECT_EQ(Result::Ok, dialogs.select({{"One", "A"}, {"Two", "B"}}, index));
    EXPECT_EQ(1U, index);
    EXPECT_EQ((std::vector<std::string>{"One|A", "Two|B"}), g_library.rows);
    g_library.code = ZELDLG_CANCELLED;
    g_library.chosen = 0;
    EXPECT_EQ(Result::Cancelled, dialogs.select({{"One", "A"}}, index));
    EXPECT_EQ(1U, index);
}

TEST_F(HostWrapper, OnlyTheSecondLineOfAConfirmationIsAYes) {
    EXPECT_EQ(Result::Cancelled, dialogs.confirm("Keep", "Delete", "it"));
    EXPECT_EQ((std::vector<std::string>{"Keep|it", "Delete|it"}), g_library.rows);
    g_library.chosen = 1;
    EXPECT_EQ(Result::Ok, dialogs.confirm("Keep", "Delete", "it"));
    g_library.code = ZELDLG_CANCELLED;
    EXPECT_EQ(Result::Cancelled, dialogs.confirm("Keep", "Delete", "it"));
    g_library.code = ZELDLG_FAILED;
    EXPECT_EQ(Result::Failed, dialogs.confirm("Keep", "Delete", "it"));
}

TEST_F(HostWrapper, SaysOfABoxOnlyWhetherItWasShown) {
    const auto showAll = [this] {
        return std::vector<bool>{dialogs.show_locked("Card"),
                                 dialogs.show_puk_locked(),
                                 dialogs.show_change_transport_pin(),
                                 dialogs.show_expiry(3),
                                 dialogs.show_unlock(),
                                 dialogs.show_delete_certificate({"1", "2", "3", "4", "5", "6"})};
    };
    g_library.code = ZELDLG_CANCELLED;  // what a question answers that was shown
    EXPECT_EQ(std::vector<bool>(6, true), showAll());
    EXPECT_EQ((std::vector<std::string>{"locked Card", "puk-locked", "transport", "days 3",
                                        "unlock", "123456"}),
              g_library.calls);
    g_library.code = ZELDLG_FAILED;
    EXPECT_EQ(std::vector<bool>(6, false), showAll());
}

TEST_F(HostWrapper, HidesTheProgressWhateverHappens) {
    try {
        const zeldlg::Progress progress(dialogs);
        EXPECT_TRUE(progress.shown());
        throw std::runtime_error("the token is gone");
    } catch (const std::runtime_error&) {
        EXPECT_EQ((std::vector<std::string>{"progress", "hide progress"}), g_library.calls);
    }
}

TEST_F(HostWrapper, APinPadStartsWithItsFirstPinAndIsHidden) {
    {
        const PinPad pad(dialogs, PinPad::Kind::Modification, true);
        EXPECT_TRUE(pad.shown());
        EXPECT_FALSE(pad.aborted());
        pad.add_char();
        pad.delete_char();
        pad.clear_chars();
        pad.next_pin();
        pad.accept();
        pad.cancel();
        pad.time_out();
        g_library.abort = true;
        EXPECT_TRUE(pad.aborted());
    }
    EXPECT_EQ((std::vector<std::string>{"modify with Abort", kNext, kAdd, kDelete, kClear, kNext,
                                        kAccept, kCancel, kTimeout, kHide}),
              g_library.calls);
}

TEST_F(HostWrapper, EveryKindOfPinPadHasItsWindow) {
    for (const auto& [kind, name] : {std::pair(PinPad::Kind::Verification, kVerify),
                                     {PinPad::Kind::Modification, kModify},
                                     {PinPad::Kind::Legal, kPadLegal},
                                     {PinPad::Kind::VerificationNoPin, kNoPin},
                                     {PinPad::Kind::LegalNoPin, kLegalNoPin}}) {
        g_library.calls.clear();
        const PinPad pad(dialogs, kind, false);
        EXPECT_EQ(name, g_library.calls.front());
    }
}

TEST_F(HostWrapper, APinPadThatIsNotShownIsLeftAlone) {
    g_library.code = ZELDLG_FAILED;
    {
        const PinPad pad(dialogs, PinPad::Kind::Verification, true);
        EXPECT_FALSE(pad.shown());
        g_library.abort = true;
        EXPECT_FALSE(pad.aborted());
    }
    EXPECT_EQ(std::vector<std::string>{"verify with Abort"}, g_library.calls);
}

}  // namespace
