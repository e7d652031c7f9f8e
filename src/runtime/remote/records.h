// How the record and the reply of each request travel to the helper process and back: one
// description for both directions and both ends. A request whose types have none does not compile,
// neither where it is sent nor where it is served.
//
// What a handler makes of a record that is odd (a null text, a policy that cannot be read) is
// decided by the handler, in the helper as in the host's process: so oddities travel as they are,
// and no more of a record is read here than a handler reads.
#pragma once

#include <wx/defs.h>
#include <zeldlg/zeldlg.h>

#include <algorithm>
#include <cstdint>
#include <tuple>

#include "resources/texts.h"
#include "runtime/handlers/policy_wire.h"
#include "runtime/remote/wire.h"
#include "runtime/requests.h"

namespace zeldlg::remote {

static_assert(kLongestShownText == 4 * kHostTextLimit);

// Records. `archive` is a Writer or a Reader.

template <typename Archive, typename... Numbers>
void DescribeNumbers(Archive& archive, Numbers&... numbers) {
    (archive.Number(numbers), ...);
}

template <typename Archive>
void Describe(Archive& archive, uint32_t& number) {
    archive.Number(number);
}

template <typename Archive>
void Describe(Archive& archive, uint64_t& number) {
    archive.Number(number);
}

template <typename Archive>
void Describe(Archive& archive, PinDialogRequest& record) {
    archive.ShownText(record.tokenLabel);
    DescribeNumbers(archive, record.minPinLength, record.maxPinLength, record.noFailure,
                    record.finalTry, record.failedEarlier);
}

template <typename Archive>
void Describe(Archive& archive, PinDialogRequestEx& record) {
    archive.ShownText(record.tokenLabel);
    DescribeNumbers(archive, record.minPinLength, record.maxPinLength, record.failedEarlier,
                    record.maxTries, record.triesLeft);
}

template <typename Archive>
void Describe(Archive& archive, PinChangeRequest& record) {
    archive.ShownText(record.tokenLabel);
    DescribeNumbers(archive, record.minLength, record.maxLength, record.noFailure, record.finalTry,
                    record.changePuk);
}

template <typename Archive>
void Describe(Archive& archive, PinPolicyCharList& list) {
    archive.Number(list.length);
    archive.Units(list.characters, list.length);
}

template <typename Archive>
void Describe(Archive& archive, PinPolicyWire& block) {
    DescribeNumbers(archive, block.headerByte, block.enabledMask, block.p1Threshold,
                    block.p1CaseSensitive, block.p1FullPinCheck, block.p2NbClass, block.p2PopMin,
                    block.p2MinLen, block.p2ClassMask, block.p3Threshold, block.p3HistorySize,
                    block.p3CaseInsensitive, block.p3LengthNormalize, block.p3StrictOnly,
                    block.lastRefusedCharacter, block.p4IsWhiteList, block.source);
    archive.Record(block.charList);
}

/// The block is only there to be read where the tag and the size say so.
template <typename Archive>
void Describe(Archive& archive, PinPolicyDescriptor& descriptor) {
    DescribeNumbers(archive, descriptor.tag, descriptor.size);
    if (descriptor.tag <= kNewestPolicyTag && descriptor.size >= sizeof(PinPolicyWire)) {
        archive.Record(descriptor.block);
    }
}

template <typename Archive>
void Describe(Archive& archive, PolicedPinChangeRequest& record) {
    archive.ShownText(record.tokenLabel);
    DescribeNumbers(archive, record.minLength, record.maxLength, record.noFailure, record.finalTry,
                    record.changePuk, record.initialisePin, record.triesLeft, record.oldMinLength,
                    record.oldMaxLength);
    archive.Record(record.policy);
}

template <typename Archive>
void Describe(Archive& archive, ByteBuffer& bytes) {
    archive.Number(bytes.length);
    archive.Units(bytes.data, bytes.length);
}

template <typename Archive>
void Describe(Archive& archive, ChallengeResponseRequest& record) {
    archive.ShownText(record.tokenLabel);
    archive.Record(record.challenge);
    archive.ShownText(record.serialNumber);
    DescribeNumbers(archive, record.responseLength, record.minPinLength, record.maxPinLength,
                    record.askNewPin);
}

template <typename Archive>
void Describe(Archive& archive, TokenChoiceEntry& entry) {
    archive.ShownText(entry.name);
    archive.ShownText(entry.detail);
    archive.Number(entry.identifier);
}

template <typename Archive>
void Describe(Archive& archive, TokenChoiceList& list) {
    archive.Number(list.count);
    archive.Records(list.entries, list.count);
}

/// The value is the host's, and means nothing to anybody else.
template <typename Archive>
void Describe(Archive& archive, DigitalIdTexts& texts) {
    archive.ShownText(texts.name);
    archive.ShownText(texts.validFrom);
    archive.ShownText(texts.validTo);
    auto value = reinterpret_cast<uint64_t>(texts.value);
    archive.Number(value);
    texts.value = reinterpret_cast<void*>(value);
}

template <typename Archive>
void Describe(Archive& archive, DigitalIdChoice& choice) {
    archive.Record(choice.texts);
    DescribeNumbers(archive, choice.count, choice.defaultIndex, choice.presetAlwaysUse,
                    choice.autoSelect);
    archive.ShownText(choice.directory);
}

template <typename Archive>
void Describe(Archive& archive, UnblockMethodRequest& record) {
    DescribeNumbers(archive, record.pukOffered, record.algorithmCount);
    archive.Records(record.algorithms, record.algorithmCount);
}

/// What becomes of the first two is decided by all of them: HostTextOrLocale().
template <typename Archive>
void Describe(Archive& archive, PromptRequest& prompt) {
    DescribeNumbers(archive, prompt.kind, prompt.days);
    archive.Text(prompt.texts[0]);
    archive.Text(prompt.texts[1]);
    for (size_t i = 2; i < std::size(prompt.texts); ++i) {
        archive.ShownText(prompt.texts[i]);
    }
}

// The outputs of hosts: on the way there the room that they have, on the way back what was written.

template <typename Archive>
void Describe(Archive& archive, PinBuffer& output) {
    archive.Room(output.pin, output.pinLength);
}

template <typename Archive>
void Describe(Archive& archive, PinChangeBuffers& output) {
    archive.Room(output.oldValue, output.oldLength);
    archive.Room(output.newValue, output.newLength);
}

template <typename Archive>
void Describe(Archive& archive, ChallengeResponseBuffers& output) {
    archive.Room(output.response, output.responseLength);
    archive.Room(output.newPin, output.newPinLength);
}

template <typename Archive>
void Describe(Archive&, DigitalIdResult&) {}

template <typename Archive>
void DescribeWritten(Archive& archive, PinBuffer& output) {
    archive.Results(output.pin, output.pinLength);
}

template <typename Archive>
void DescribeWritten(Archive& archive, PinChangeBuffers& output) {
    archive.Results(output.oldValue, output.oldLength);
    archive.Results(output.newValue, output.newLength);
}

template <typename Archive>
void DescribeWritten(Archive& archive, DigitalIdResult& output) {
    archive.Result(output.value);
    archive.Result(output.alwaysUse);
}

/// What exports have made sure of.
inline void Require(const void* pointer) {
    if (pointer == nullptr) {
        throw WireError("null where there must be something");
    }
}

// Replies: Describe() before the request is served, DescribeResult() afterwards.

template <typename Archive, typename Output>
void Describe(Archive& archive, PinReply<Output>& reply) {
    archive.Record(reply.output);
    Require(reply.output);
}

template <typename Archive, typename Record, typename Output>
void DescribeResult(Archive& archive, const Record&, PinReply<Output>& reply) {
    if (archive.Result(reply.returnCode) == wxID_OK) {
        DescribeWritten(archive, *reply.output);
    }
}

template <typename Archive, typename Output>
void Describe(Archive& archive, ChangeReply<Output>& reply) {
    archive.Record(reply.output);
    Require(reply.output);
}

template <typename Archive, typename Record>
void DescribeResult(Archive& archive, const Record&, ChangeReply<PinChangeBuffers>& reply) {
    if (archive.Result(reply.returnCode) == wxID_OK) {
        DescribeWritten(archive, *reply.output);
    }
}

template <typename Archive>
void DescribeResult(Archive& archive, const ChallengeResponseRequest* record,
                    ChangeReply<ChallengeResponseBuffers>& reply) {
    if (archive.Result(reply.returnCode) != wxID_OK) {
        return;
    }
    archive.Results(reply.output->response, reply.output->responseLength);
    if (record->askNewPin != 0) {
        archive.Results(reply.output->newPin, reply.output->newPinLength);
    }
}

template <typename Archive, typename Unit>
void Describe(Archive& archive, TranslationReply<Unit>& reply) {
    archive.Record(reply.size);
    Require(reply.size);
    archive.Room(reply.buffer, *reply.size);
}

template <typename Archive, typename Record, typename Unit>
void DescribeResult(Archive& archive, const Record&, TranslationReply<Unit>& reply) {
    switch (archive.Result(reply.result)) {
        case ZELDLG_OK:
            archive.Results(reply.buffer, *reply.size);
            break;
        case ZELDLG_BUFFER_TOO_SMALL:
            archive.Result(*reply.size);
            break;
        default:
            break;
    }
}

template <typename Archive>
void Describe(Archive&, TokenChoiceReply&) {}

template <typename Archive>
void DescribeResult(Archive& archive, const TokenChoiceList*, TokenChoiceReply& reply) {
    archive.Result(reply.identifier);
    archive.Result(reply.returnCode);
}

template <typename Archive>
void Describe(Archive&, UnblockMethodReply&) {}

template <typename Archive>
void DescribeResult(Archive& archive, const UnblockMethodRequest*, UnblockMethodReply& reply) {
    archive.Result(reply.method);
    archive.Result(reply.algorithm);
    archive.Result(reply.returnCode);
}

template <typename Archive>
void Describe(Archive&, bool&) {}

template <typename Archive, typename Record>
void DescribeResult(Archive& archive, const Record&, bool& answer) {
    archive.Result(answer);
}

template <typename Archive>
void Describe(Archive&, void*&) {}

template <typename Archive, typename Record>
void DescribeResult(Archive& archive, const Record&, void*& handle) {
    archive.HandleResult(handle);
}

// The two parameters of a request.

template <typename Archive>
void DescribeParameter(Archive&, Nothing&) {}
template <typename Archive>
void DescribeParameter(Archive& archive, bool& value) {
    archive.Number(value);
}
template <typename Archive>
void DescribeParameter(Archive& archive, const char*& text) {
    archive.Text(text);
}
template <typename Archive>
void DescribeParameter(Archive& archive, const wchar_t*& text) {
    archive.Text(text);
}
template <typename Archive>
void DescribeParameter(Archive& archive, const void*& handle) {
    archive.Handle(handle);
}
/// Of a record or a reply.
template <typename Archive, typename T>
void DescribeParameter(Archive& archive, T*& record) {
    archive.Record(record);
    Require(record);
}

template <typename Archive, typename Record, typename Reply>
void DescribeAnswer([[maybe_unused]] Archive& archive, [[maybe_unused]] const Record& record,
                    [[maybe_unused]] const Reply& reply) {
    if constexpr (!std::is_same_v<Reply, Nothing>) {
        DescribeResult(archive, record, *reply);
    }
}

/// The host's end: how what a message points at travels.
struct WireForm {
    void (*write)(Writer& writer, uint64_t param1, uint64_t param2);
    void (*readAnswer)(Reader& reader, uint64_t param1, uint64_t param2);
};

template <typename T>
T FromPacked(uint64_t number) {
    if constexpr (std::is_same_v<T, Nothing>) {
        return {};
    } else {
        return std::get<0>(Unpacked<T>(number));
    }
}

template <typename Record, typename Reply>
inline constexpr WireForm kWireForm{.write =
                                        [](Writer& writer, uint64_t param1, uint64_t param2) {
                                            auto record = FromPacked<Record>(param1);
                                            auto reply = FromPacked<Reply>(param2);
                                            DescribeParameter(writer, record);
                                            DescribeParameter(writer, reply);
                                        },
                                    .readAnswer =
                                        [](Reader& reader, uint64_t param1, uint64_t param2) {
                                            DescribeAnswer(reader, FromPacked<Record>(param1),
                                                           FromPacked<Reply>(param2));
                                        }};

/// The helper's end: a request as it has arrived, and the answer to it.
struct WireCall {
    Reader request;
    Writer answer;
    bool isTaken = false;
};

/// The parameters of a request that has arrived; as long as its WireCall. Throws WireError.
template <typename Record, typename Reply>
class WireParameters {
public:
    explicit WireParameters(WireCall& call) : m_call(call) {
        DescribeParameter(call.request, m_record);
        DescribeParameter(call.request, m_reply);
        call.request.ExpectEnd();
    }

    template <typename Body>
    void Serve(const Body& body) {
        m_call.isTaken = true;
        std::apply(body, std::tuple_cat(AsTuple(m_record), AsTuple(m_reply)));
        DescribeAnswer(m_call.answer, m_record, m_reply);
    }

private:
    template <typename T>
    static auto AsTuple(const T& value) {
        if constexpr (std::is_same_v<T, Nothing>) {
            return std::tuple();
        } else {
            return std::tuple(value);
        }
    }

    WireCall& m_call;
    Record m_record{};
    Reply m_reply{};
};

}  // namespace zeldlg::remote
