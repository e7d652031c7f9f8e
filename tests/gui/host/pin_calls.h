/// Calls of the exports that ask for PINs, PUKs and responses.
#pragma once

#include <zeldlg/zeldlg.h>

#include "call_export.h"
#include "guarded_buffer.h"

namespace testhost {

// ---------------------------------------------------------------- PIN entry
inline PinDialogRequest ReadPinRequest(Arguments& arguments, const Text& label, PinDialogRequest*) {
    return {label.Pointer(),
            arguments.TakeNumber<uint32_t>("min", 4),
            arguments.TakeNumber<uint32_t>("max", 8),
            arguments.TakeNumber<uint8_t>("noFailure", 1),
            arguments.TakeNumber<uint8_t>("finalTry", 0),
            arguments.TakeNumber<uint8_t>("failedEarlier", 0)};
}

inline PinDialogRequestEx ReadPinRequest(Arguments& arguments, const Text& label,
                                         PinDialogRequestEx*) {
    return {label.Pointer(),
            arguments.TakeNumber<uint32_t>("min", 4),
            arguments.TakeNumber<uint32_t>("max", 8),
            arguments.TakeNumber<uint8_t>("failedEarlier", 0),
            arguments.TakeNumber<uint32_t>("maxTries", 3),
            arguments.TakeNumber<uint32_t>("triesLeft", 3)};
}

template <typename Request>
struct Pin {
    explicit Pin(Arguments& arguments)
        : label(arguments.TakeText("label", "Token")),
          request(ReadPinRequest(arguments, label, static_cast<Request*>(nullptr))),
          nullRequest(arguments.TakeNull("record")),
          nullOutput(arguments.TakeNull("out")),
          buffer(arguments, "pin"),
          output{buffer.Pointer(), buffer.Capacity()} {}
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<uint32_t (*)(const Request*, PinBuffer*)>(function),
                   nullRequest ? nullptr : &request, nullOutput ? nullptr : &output);
        line.Unsigned("pinLength", output.pinLength);
        buffer.Report(line);
    }

    Text label;
    Request request;
    bool nullRequest;
    bool nullOutput;
    GuardedBuffer<uint8_t> buffer;
    PinBuffer output;
};

// ---------------------------------------------------------------- change of PIN
/// A policy in its wire form: `policy` is the block's 32 bytes (the 8 of the list pointer are
/// replaced), `policyList` its characters. Without `policy` there is none.
struct Policy {
    explicit Policy(Arguments& arguments)
        : wire(arguments.TakeBytes("policy", "null")),
          characters(arguments.TakeBytes("policyList", "")),
          list{arguments.TakeNumber<uint32_t>("policyListLength",
                                              static_cast<uint32_t>(characters.Size())),
               0, reinterpret_cast<const char*>(characters.Pointer())},
          nullList(arguments.TakeNull("policyListDescriptor")),
          nullBlock(arguments.TakeNull("policyBlock")),
          descriptor{arguments.TakeNumber<uint32_t>("policyTag", 0),
                     arguments.TakeNumber<uint32_t>("policySize", sizeof(PinPolicyWire)), &block} {
        if (wire.value) {
            if (wire.Size() != sizeof(block)) {
                throw ProtocolError("policy takes 32 bytes");
            }
            memcpy(&block, wire.Pointer(), sizeof(block));
            block.charList = nullList ? nullptr : &list;
        }
        descriptor.block = nullBlock ? nullptr : &block;
    }
    const PinPolicyDescriptor* Pointer() const { return wire.value ? &descriptor : nullptr; }

    Bytes wire;
    Bytes characters;
    PinPolicyCharList list;
    bool nullList;
    bool nullBlock;
    PinPolicyWire block{};
    PinPolicyDescriptor descriptor;
};

/// The policy that goes with a request: only one kind of request carries one.
template <typename Request>
struct PolicyOf {
    explicit PolicyOf(Arguments&) {}
};
template <>
struct PolicyOf<PolicedPinChangeRequest> : Policy {
    using Policy::Policy;
};

inline PinChangeRequest ReadChangeRequest(Arguments& arguments, const Text& label,
                                          const PolicyOf<PinChangeRequest>&) {
    return {label.Pointer(),
            arguments.TakeNumber<uint32_t>("min", 4),
            arguments.TakeNumber<uint32_t>("max", 8),
            arguments.TakeNumber<uint8_t>("noFailure", 1),
            arguments.TakeNumber<uint8_t>("finalTry", 0),
            arguments.TakeNumber<uint8_t>("changePuk", 0)};
}

inline PolicedPinChangeRequest ReadChangeRequest(Arguments& arguments, const Text& label,
                                                 const PolicyOf<PolicedPinChangeRequest>& policy) {
    return {label.Pointer(),
            arguments.TakeNumber<uint32_t>("min", 4),
            arguments.TakeNumber<uint32_t>("max", 8),
            arguments.TakeNumber<uint8_t>("noFailure", 1),
            arguments.TakeNumber<uint8_t>("finalTry", 0),
            arguments.TakeNumber<uint8_t>("changePuk", 0),
            arguments.TakeNumber<uint8_t>("initialise", 0),
            arguments.TakeNumber<uint32_t>("triesLeft", 0),
            policy.Pointer(),
            arguments.TakeNumber<uint32_t>("oldMin", 0),
            arguments.TakeNumber<uint32_t>("oldMax", 0)};
}

template <typename Request>
struct Change {
    explicit Change(Arguments& arguments)
        : label(arguments.TakeText("label", "Token")),
          policy(arguments),
          request(ReadChangeRequest(arguments, label, policy)),
          nullRequest(arguments.TakeNull("record")),
          nullOutput(arguments.TakeNull("out")),
          oldValue(arguments, "old"),
          newValue(arguments, "new"),
          output{oldValue.Pointer(), oldValue.Capacity(), newValue.Pointer(), newValue.Capacity()} {
    }
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<uint32_t (*)(const Request*, PinChangeBuffers*)>(function),
                   nullRequest ? nullptr : &request, nullOutput ? nullptr : &output);
        line.Unsigned("oldLength", output.oldLength);
        line.Unsigned("newLength", output.newLength);
        oldValue.Report(line);
        newValue.Report(line);
    }

    Text label;
    PolicyOf<Request> policy;
    Request request;
    bool nullRequest;
    bool nullOutput;
    GuardedBuffer<uint8_t> oldValue;
    GuardedBuffer<uint8_t> newValue;
    PinChangeBuffers output;
};

struct ChallengeResponse {
    explicit ChallengeResponse(Arguments& arguments)
        : label(arguments.TakeText("label", "Token")),
          challenge(arguments.TakeBytes("challenge", "0123456789abcdef")),
          bytes{arguments.TakeNull("challengeData") ? nullptr : challenge.Pointer(),
                arguments.TakeNumber<uint64_t>("challengeLength", challenge.Size())},
          serial(arguments.TakeText("serial", "SN-1")),
          request{label.Pointer(),
                  challenge.value ? &bytes : nullptr,
                  serial.Pointer(),
                  arguments.TakeNumber<int32_t>("responseLength", 8),
                  arguments.TakeNumber<int32_t>("min", 4),
                  arguments.TakeNumber<int32_t>("max", 8),
                  arguments.TakeNumber<int32_t>("askNewPin", 0)},
          nullRequest(arguments.TakeNull("record")),
          nullOutput(arguments.TakeNull("out")),
          response(arguments, "response"),
          newPin(arguments, "newPin"),
          output{response.Pointer(), response.Capacity(), newPin.Pointer(), newPin.Capacity()} {}
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<decltype(&DLG_ShowUnblockThroughCR)>(function),
                   nullRequest ? nullptr : &request, nullOutput ? nullptr : &output);
        line.Unsigned("responseLength", output.responseLength);
        line.Unsigned("newPinLength", output.newPinLength);
        response.Report(line);
        newPin.Report(line);
    }

    Text label;
    Bytes challenge;
    ByteBuffer bytes;
    Text serial;
    ChallengeResponseRequest request;
    bool nullRequest;
    bool nullOutput;
    GuardedBuffer<uint8_t> response;
    GuardedBuffer<uint8_t> newPin;
    ChallengeResponseBuffers output;
};

}  // namespace testhost
