// What travels between the library and its helper: every request and its answer, as they were sent,
// and nothing that was not.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>

#include "runtime/handlers/handlers.h"
#include "runtime/remote/records.h"

namespace zeldlg::remote {
namespace {

template <typename Record, typename Reply>
WireBytes Written(const Request<Record, Reply>&, std::type_identity_t<Record> record = {},
                  std::type_identity_t<Reply> reply = {}) {
    Writer writer;
    kWireForm<Record, Reply>.write(writer, Packed(record), Packed(reply));
    return writer.Bytes();
}

// What the helper makes of those bytes: calls `body` as a handler is called. @return Its answer.
template <typename Record, typename Reply, typename Body>
WireBytes Served(const Request<Record, Reply>& request, const WireBytes& bytes, const Body& body,
                 Handles* handles = nullptr) {
    WireCall call{.request = Reader(bytes, handles), .answer = Writer(handles)};
    CMessage message(request, call);
    EXPECT_TRUE(Serve(request, message, body));
    EXPECT_TRUE(call.isTaken);
    return call.answer.Bytes();
}

// The answer as the host takes it: looked at first, then written.
template <typename Record, typename Reply>
void ReadAnswer(const Request<Record, Reply>&, const WireBytes& bytes,
                std::type_identity_t<Record> record, std::type_identity_t<Reply> reply) {
    Reader reader(bytes);
    const auto read = [&] {
        kWireForm<Record, Reply>.readAnswer(reader, Packed(record), Packed(reply));
    };
    read();
    reader.ExpectEnd();
    reader.Commit(bytes);
    read();
}

template <typename Record, typename Reply, typename Body>
void Travel(const Request<Record, Reply>& request, std::type_identity_t<Record> record,
            std::type_identity_t<Reply> reply, const Body& body) {
    ReadAnswer(request, Served(request, Written(request, record, reply), body), record, reply);
}

constexpr std::array<uint8_t, 8> kUnwritten{0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5};

TEST(RemoteRecords, APinComesBackAndNothingBehindIt) {
    const PinDialogRequest record{"Karte \xc3\xa4", 4, 8, 1, 2, 3};
    auto bytes = kUnwritten;
    PinBuffer output{bytes.data(), 8};
    PinReply<PinBuffer> reply{&output, 0};
    Travel(kShowPin, &record, &reply, [&](const PinDialogRequest* seen, PinReply<PinBuffer>* its) {
        EXPECT_STREQ(seen->tokenLabel, record.tokenLabel);
        EXPECT_NE(seen->tokenLabel, record.tokenLabel);
        EXPECT_EQ(seen->minPinLength, 4U);
        EXPECT_EQ(seen->maxPinLength, 8U);
        EXPECT_EQ(seen->noFailure, 1);
        EXPECT_EQ(seen->finalTry, 2);
        EXPECT_EQ(seen->failedEarlier, 3);
        EXPECT_EQ(its->output->pinLength, 8U);
        memcpy(its->output->pin, "2468", 4);
        its->output->pinLength = 4;
        its->returnCode = wxID_OK;
    });
    EXPECT_EQ(reply.returnCode, wxID_OK);
    EXPECT_EQ(output.pinLength, 4U);
    EXPECT_EQ(bytes, (std::array<uint8_t, 8>{'2', '4', '6', '8', 0xa5, 0xa5, 0xa5, 0xa5}));
}

TEST(RemoteRecords, OfACancelledDialogOnlyTheReturnCodeComesBack) {
    const PinDialogRequestEx record{"x", 4, 8, 1, 5, 6};
    auto bytes = kUnwritten;
    PinBuffer output{bytes.data(), 8};
    PinReply<PinBuffer> reply{&output, 0};
    Travel(kShowPinEx, &record, &reply, [](const PinDialogRequestEx* seen, auto* its) {
        EXPECT_EQ(seen->maxTries, 5U);
        EXPECT_EQ(seen->triesLeft, 6U);
        EXPECT_EQ(seen->failedEarlier, 1);
        memcpy(its->output->pin, "2468", 4);
        its->output->pinLength = 4;
        its->returnCode = kNotDelivered;
    });
    EXPECT_EQ(reply.returnCode, kNotDelivered);
    EXPECT_EQ(output.pinLength, 8U);
    EXPECT_EQ(bytes, kUnwritten);
}

TEST(RemoteRecords, ARoomOfNothingStaysNull) {
    const PinDialogRequest record{nullptr, 0, 0, 0, 0, 0};
    PinBuffer output{nullptr, 0};
    PinReply<PinBuffer> reply{&output, 0};
    Travel(kShowPin, &record, &reply, [](const PinDialogRequest* seen, PinReply<PinBuffer>* its) {
        EXPECT_EQ(seen->tokenLabel, nullptr);
        EXPECT_EQ(its->output->pin, nullptr);
        EXPECT_EQ(its->output->pinLength, 0U);
        its->returnCode = wxID_OK;
    });
    EXPECT_EQ(reply.returnCode, wxID_OK);
    EXPECT_EQ(output.pinLength, 0U);
}

TEST(RemoteRecords, OldAndNewValueComeBackTogether) {
    const PinChangeRequest record{"x", 4, 8, 1, 2, 3};
    auto oldBytes = kUnwritten;
    auto newBytes = kUnwritten;
    PinChangeBuffers output{oldBytes.data(), 8, newBytes.data(), 7};
    ChangeReply<PinChangeBuffers> reply{0, &output};
    Travel(kChangePin, &record, &reply, [](const PinChangeRequest* seen, auto* its) {
        EXPECT_EQ(seen->minLength, 4U);
        EXPECT_EQ(seen->maxLength, 8U);
        EXPECT_EQ(seen->noFailure, 1);
        EXPECT_EQ(seen->finalTry, 2);
        EXPECT_EQ(seen->changePuk, 3);
        EXPECT_EQ(its->output->oldLength, 8U);
        EXPECT_EQ(its->output->newLength, 7U);
        memcpy(its->output->oldValue, "12", 2);
        memcpy(its->output->newValue, "345", 3);
        its->output->oldLength = 2;
        its->output->newLength = 3;
        its->returnCode = wxID_OK;
    });
    EXPECT_EQ(output.oldLength, 2U);
    EXPECT_EQ(output.newLength, 3U);
    EXPECT_EQ(memcmp(oldBytes.data(), "12\xa5", 3), 0);
    EXPECT_EQ(memcmp(newBytes.data(), "345\xa5", 4), 0);
}

TEST(RemoteRecords, AnAnswerThatFitsInPartWritesNothing) {
    const PinChangeRequest record{"x", 4, 8, 1, 2, 3};
    auto oldBytes = kUnwritten;
    auto newBytes = kUnwritten;
    PinChangeBuffers output{oldBytes.data(), 8, newBytes.data(), 2};
    ChangeReply<PinChangeBuffers> reply{7, &output};
    Writer answer;
    answer.Number<int32_t>(wxID_OK);
    answer.Results("12", 2U);
    answer.Results("345", 3U);
    EXPECT_THROW(ReadAnswer(kChangePin, answer.Bytes(), &record, &reply), WireError);
    EXPECT_EQ(reply.returnCode, 7);
    EXPECT_EQ(output.oldLength, 8U);
    EXPECT_EQ(oldBytes, kUnwritten);
    EXPECT_EQ(newBytes, kUnwritten);
}

TEST(RemoteRecords, ANewPinThatWasNotAskedForIsLeftAlone) {
    for (const int32_t askNewPin : {0, 1}) {
        const ByteBuffer challenge{reinterpret_cast<const uint8_t*>("\0\1\2"), 3};
        const ChallengeResponseRequest record{"x", &challenge, "SN", 8, 4, 6, askNewPin};
        auto response = kUnwritten;
        auto newPin = kUnwritten;
        ChallengeResponseBuffers output{response.data(), 8, newPin.data(), 8};
        ChangeReply<ChallengeResponseBuffers> reply{0, &output};
        Travel(kUnblockThroughCr, &record, &reply,
               [&](const ChallengeResponseRequest* seen, auto* its) {
                   EXPECT_EQ(seen->challenge->length, 3U);
                   EXPECT_EQ(memcmp(seen->challenge->data, "\0\1\2", 3), 0);
                   EXPECT_STREQ(seen->serialNumber, "SN");
                   EXPECT_EQ(seen->responseLength, 8);
                   EXPECT_EQ(seen->minPinLength, 4);
                   EXPECT_EQ(seen->maxPinLength, 6);
                   EXPECT_EQ(seen->askNewPin, askNewPin);
                   memset(its->output->response, 1, 8);
                   if (askNewPin != 0) {
                       its->output->newPin[0] = '9';
                       its->output->newPinLength = 1;
                   }
                   its->returnCode = wxID_OK;
               });
        EXPECT_EQ(response, (std::array<uint8_t, 8>{1, 1, 1, 1, 1, 1, 1, 1}));
        EXPECT_EQ(output.newPinLength, askNewPin != 0 ? 1U : 8U);
        EXPECT_EQ(newPin[0], askNewPin != 0 ? '9' : 0xa5);
        EXPECT_EQ(newPin[1], 0xa5);
    }
}

using PolicyLook = std::function<void(const PinPolicyDescriptor*)>;

void SendPolicy(const PinPolicyDescriptor* policy, const PolicyLook& look) {
    const PolicedPinChangeRequest record{"x", 1, 2, 3, 4, 5, 6, 7, policy, 8, 9};
    PinChangeBuffers output{nullptr, 0, nullptr, 0};
    ChangeReply<PinChangeBuffers> reply{0, &output};
    Travel(kChangePolicedPin, &record, &reply, [&](const PolicedPinChangeRequest* seen, auto*) {
        EXPECT_EQ(seen->initialisePin, 6);
        EXPECT_EQ(seen->triesLeft, 7U);
        EXPECT_EQ(seen->oldMinLength, 8U);
        EXPECT_EQ(seen->oldMaxLength, 9U);
        look(seen->policy);
    });
}

TEST(RemoteRecords, APolicyTravelsByValue) {
    const PinPolicyCharList list{3, 0, "a\0b"};
    const PinPolicyWire block{1,  2,  3,  4,  5,  6,     7,  8,  9,  10,
                              11, 12, 13, 14, {}, &list, 15, 16, {}, -3};
    const PinPolicyDescriptor policy{3, sizeof block, &block};
    SendPolicy(&policy, [&](const PinPolicyDescriptor* seen) {
        EXPECT_EQ(seen->tag, 3U);
        EXPECT_EQ(seen->size, sizeof block);
        EXPECT_EQ(memcmp(seen->block, &block, offsetof(PinPolicyWire, reserved1)), 0);
        EXPECT_EQ(seen->block->lastRefusedCharacter, 15);
        EXPECT_EQ(seen->block->p4IsWhiteList, 16);
        EXPECT_EQ(seen->block->source, -3);
        EXPECT_EQ(std::string(seen->block->charList->characters, 3), std::string("a\0b", 3));
    });
}

// Whoever follows one of these dies: they are no addresses of this process.
template <typename T>
const T* Nowhere() {
    return reinterpret_cast<const T*>(uintptr_t{1});
}

TEST(RemoteRecords, WhatAHandlerDoesNotReadOfAPolicyIsNotReadHereEither) {
    SendPolicy(nullptr, [](const PinPolicyDescriptor* seen) { EXPECT_EQ(seen, nullptr); });
    const PinPolicyDescriptor newer{4, 32, Nowhere<PinPolicyWire>()};
    SendPolicy(&newer, [](const PinPolicyDescriptor* seen) { EXPECT_EQ(seen->tag, 4U); });
    const PinPolicyDescriptor small{0, 31, Nowhere<PinPolicyWire>()};
    SendPolicy(&small, [](const PinPolicyDescriptor* seen) { EXPECT_EQ(seen->size, 31U); });
    const PinPolicyDescriptor empty{0, 32, nullptr};
    SendPolicy(&empty, [](const PinPolicyDescriptor* seen) { EXPECT_EQ(seen->block, nullptr); });
    PinPolicyWire block{};
    const PinPolicyDescriptor listless{0, 32, &block};
    SendPolicy(&listless,
               [](const PinPolicyDescriptor* seen) { EXPECT_EQ(seen->block->charList, nullptr); });
    const PinPolicyCharList list{5, 0, nullptr};
    block.charList = &list;
    SendPolicy(&listless, [](const PinPolicyDescriptor* seen) {
        EXPECT_EQ(seen->block->charList->length, 5U);
        EXPECT_EQ(seen->block->charList->characters, nullptr);
    });
}

TEST(RemoteRecords, ATokenListTravelsWithItsOddities) {
    const TokenChoiceEntry entries[] = {{"a", nullptr, 1}, {"", "b", UINT64_MAX}};
    const TokenChoiceList list{entries, 2};
    TokenChoiceReply reply{};
    Travel(kSelectToken, &list, &reply, [](const TokenChoiceList* seen, TokenChoiceReply* its) {
        EXPECT_EQ(seen->count, 2U);
        EXPECT_STREQ(seen->entries[0].name, "a");
        EXPECT_EQ(seen->entries[0].detail, nullptr);
        EXPECT_STREQ(seen->entries[1].name, "");
        EXPECT_EQ(seen->entries[1].identifier, UINT64_MAX);
        *its = {.identifier = 77, .returnCode = wxID_OK};
    });
    EXPECT_EQ(reply.identifier, 77U);
    EXPECT_EQ(reply.returnCode, wxID_OK);
    const TokenChoiceList none{nullptr, 3};
    Travel(kSelectToken, &none, &reply, [](const TokenChoiceList* seen, TokenChoiceReply*) {
        EXPECT_EQ(seen->count, 3U);
        EXPECT_EQ(seen->entries, nullptr);
    });
}

TEST(RemoteRecords, TheValueOfADigitalIdIsTheHosts) {
    const DigitalIdTexts texts{"n", "f", "t", reinterpret_cast<void*>(uintptr_t{0x1234})};
    const DigitalIdChoice choice{&texts, 1, 2, "d", 3, 4};
    DigitalIdResult output{};
    PinReply<DigitalIdResult> reply{&output, 0};
    Travel(kSelectDigitalId, &choice, &reply, [](const DigitalIdChoice* seen, auto* its) {
        EXPECT_STREQ(seen->texts->validTo, "t");
        EXPECT_STREQ(seen->directory, "d");
        EXPECT_EQ(seen->count, 1U);
        EXPECT_EQ(seen->defaultIndex, 2U);
        EXPECT_EQ(seen->presetAlwaysUse, 3U);
        EXPECT_EQ(seen->autoSelect, 4U);
        its->output->value = reinterpret_cast<uint64_t>(seen->texts->value);
        its->output->alwaysUse = 1;
        its->returnCode = wxID_OK;
    });
    EXPECT_EQ(output.value, 0x1234U);
    EXPECT_EQ(output.alwaysUse, 1);
    const DigitalIdChoice none{};
    Travel(kSelectDigitalId, &none, &reply,
           [](const DigitalIdChoice* seen, auto*) { EXPECT_EQ(seen->texts, nullptr); });
}

TEST(RemoteRecords, MethodsAndAlgorithmsOfAnUnblocking) {
    const uint32_t algorithms[] = {7, 8};
    const UnblockMethodRequest record{1, algorithms, 2};
    UnblockMethodReply reply{};
    Travel(kSelectUnblockMethod, &record, &reply, [](const UnblockMethodRequest* seen, auto* its) {
        EXPECT_EQ(seen->pukOffered, 1);
        EXPECT_EQ(seen->algorithms[1], 8U);
        *its = {.method = 2, .algorithm = 1, .returnCode = wxID_OK};
    });
    EXPECT_EQ(reply.method, 2U);
    EXPECT_EQ(reply.algorithm, 1U);
    EXPECT_EQ(reply.returnCode, static_cast<uint32_t>(wxID_OK));
}

TEST(RemoteRecords, ATranslationKeepsToItsRoom) {
    struct {
        uint32_t capacity;
        uint32_t result;
        uint32_t size;
        std::string text;
    } const cases[] = {{8, ZELDLG_OK, 4, "Pin"},
                       {3, ZELDLG_BUFFER_TOO_SMALL, 4, "\xa5\xa5\xa5"},
                       {8, ZELDLG_FAILED, 8, "\xa5\xa5\xa5"}};
    for (const auto& row : cases) {
        auto bytes = kUnwritten;
        uint32_t size = row.capacity;
        TranslationReply<char> reply{&size, reinterpret_cast<char*>(bytes.data()), 1};
        Travel(kTranslateUtf8, "PIN", &reply, [&](const char* source, auto* its) {
            EXPECT_STREQ(source, "PIN");
            EXPECT_EQ(*its->size, row.capacity);
            its->result = row.result;
            if (row.result == ZELDLG_OK) {
                memcpy(its->buffer, "Pin", 4);
            }
            *its->size = 4;
        });
        EXPECT_EQ(reply.result, row.result);
        EXPECT_EQ(size, row.size);
        EXPECT_EQ(std::string(reply.buffer, 3), row.text);
    }
}

TEST(RemoteRecords, WideTextsAndNone) {
    std::array<wchar_t, 4> buffer{};
    uint32_t size = 4;
    TranslationReply<wchar_t> reply{&size, buffer.data(), 1};
    for (const wchar_t* const text : {L"\u00e4\U0001d7d9", static_cast<const wchar_t*>(nullptr)}) {
        Travel(kTranslateUtf16, text, &reply, [text](const wchar_t* seen, auto*) {
            EXPECT_EQ(std::wstring(seen != nullptr ? seen : L"null"),
                      std::wstring(text != nullptr ? text : L"null"));
        });
    }
    bool answer = false;
    Travel(kQuestionBox, L"Why?", &answer, [](const wchar_t* seen, bool* its) {
        EXPECT_STREQ(seen, L"Why?");
        *its = true;
    });
    EXPECT_TRUE(answer);
}

TEST(RemoteRecords, SmallParametersAndNone) {
    const uint64_t code = 0x6983;
    bool answer = false;
    Travel(kBiometricError, &code, &answer,
           [](const uint64_t* seen, bool*) { EXPECT_EQ(*seen, 0x6983U); });
    int served = 0;
    Travel(kShowKeyGeneration, {}, {}, [&served] { ++served; });
    EXPECT_EQ(served, 1);
    const PromptRequest prompt{.kind = PromptRequest::EarlyUnexpirePin, .days = 3};
    Travel(kPrompt, &prompt, &answer, [](const PromptRequest* seen, bool*) {
        EXPECT_EQ(seen->kind, PromptRequest::EarlyUnexpirePin);
        EXPECT_EQ(seen->days, 3U);
        EXPECT_EQ(seen->texts[5], nullptr);
    });
    const PromptRequest deletion{.kind = PromptRequest::ConfirmDeleteCertificate,
                                 .texts = {"0", "1", "2", "3", "4", "5"}};
    Travel(kPrompt, &deletion, &answer, [&deletion](const PromptRequest* seen, bool*) {
        for (size_t text = 0; text < std::size(deletion.texts); ++text) {
            EXPECT_STREQ(seen->texts[text], deletion.texts[text]);
        }
    });
}

TEST(RemoteRecords, AWindowIsANumberToItsHost) {
    Handles handles;
    int window = 0;
    void* handle = nullptr;
    ReadAnswer(kPinPadShowModification,
               Served(
                   kPinPadShowModification, Written(kPinPadShowModification, true, &handle),
                   [&window](bool allowAbort, void** its) {
                       EXPECT_TRUE(allowAbort);
                       *its = &window;
                   },
                   &handles),
               true, &handle);
    EXPECT_NE(handle, nullptr);
    EXPECT_NE(handle, static_cast<void*>(&window));
    const auto seenFor = [&handles](const void* given) {
        const void* seen = nullptr;
        Served(
            kPinPadHide, Written(kPinPadHide, given), [&seen](const void* its) { seen = its; },
            &handles);
        return seen;
    };
    EXPECT_EQ(seenFor(handle), &window);
    EXPECT_EQ(seenFor(nullptr), nullptr);
    EXPECT_EQ(seenFor(&window), nullptr);
}

TEST(RemoteRecords, TheNumberOfAWindowThatIsGoneMeansNothingToTheNextInItsPlace) {
    Handles handles;
    int place = 0;
    const uint64_t first = handles.Add(&place);
    const uint64_t second = handles.Add(&place);
    EXPECT_NE(first, second);
    EXPECT_EQ(handles.Find(first), nullptr);
    EXPECT_EQ(handles.Find(second), &place);
}

TEST(RemoteRecords, ARequestThatIsCutAnywhereOrGoesOnIsNone) {
    const PinPolicyCharList list{2, 0, "ab"};
    PinPolicyWire block{};
    block.charList = &list;
    const PinPolicyDescriptor policy{0, 32, &block};
    const PolicedPinChangeRequest record{"x", 1, 2, 3, 4, 5, 6, 7, &policy, 8, 9};
    PinChangeBuffers output{nullptr, 0, nullptr, 0};
    ChangeReply<PinChangeBuffers> reply{0, &output};
    WireBytes bytes = Written(kChangePolicedPin, &record, &reply);
    const auto serve = [](const WireBytes& given) {
        Served(kChangePolicedPin, given, [](const auto*, auto*) { FAIL() << "it was served"; });
    };
    for (size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_THROW(
            serve(WireBytes(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(length))),
            WireError)
            << length;
    }
    bytes.push_back(0);
    EXPECT_THROW(serve(bytes), WireError);
}

// Of a helper that went wrong, or of somebody in its place.
TEST(RemoteRecords, WhatNoWriterWritesIsNoPartOfARecord) {
    const auto expectNone = [](const Writer& written, const auto& read) {
        Reader reader(written.Bytes());
        EXPECT_THROW(read(reader), WireError);
    };
    const char* text = nullptr;
    Writer zeroInside;
    zeroInside.Units("a\0b", 3);
    expectNone(zeroInside, [&](Reader& reader) { reader.Text(text); });
    Writer tooFew;
    tooFew.Units("ab", 2);
    expectNone(tooFew, [&](Reader& reader) { reader.Units(text, 3U); });
    Writer noRecords;
    noRecords.Number(true);
    const uint64_t* records = nullptr;
    expectNone(noRecords, [&](Reader& reader) { reader.Records(records, UINT64_MAX); });
    Writer vastRoom;
    vastRoom.Room("", uint64_t{UINT32_MAX} + 1);
    char* room = nullptr;
    uint32_t capacity = 0;
    expectNone(vastRoom, [&](Reader& reader) { reader.Room(room, capacity); });
    EXPECT_THROW(Writer().Units("", kLargestMessage + 1), WireError);
}

TEST(RemoteRecords, ATextThatIsTooLongDoesNotTravel) {
    const std::string text(kLargestMessage, 'x');
    EXPECT_THROW(Written(kTokenLocked, text.c_str()), WireError);
}

TEST(RemoteRecords, AVastRoomIsAsLargeAsAMessage) {
    const PinDialogRequest record{"x", 4, 8, 1, 0, 0};
    uint8_t byte = 0;
    PinBuffer output{&byte, UINT32_MAX};
    PinReply<PinBuffer> reply{&output, 0};
    Travel(kShowPin, &record, &reply, [](const PinDialogRequest*, PinReply<PinBuffer>* its) {
        EXPECT_EQ(its->output->pinLength, kLargestMessage);
        its->output->pin[its->output->pinLength - 1] = 1;
    });
    EXPECT_EQ(output.pinLength, UINT32_MAX);
}

}  // namespace
}  // namespace zeldlg::remote
