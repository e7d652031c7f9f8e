// Requests of every kind that travels to a helper, and the outputs that go with them.
#pragma once

#include <algorithm>
#include <tuple>

#include "runtime/remote/records.h"

namespace zeldlg::fuzz {

/// Calls `body` with the request of that number; each type of record and reply is there.
template <typename Body>
void WithRequest(unsigned number, const Body& body) {
    const std::tuple requests(
        kShowPin, kShowPinEx, kChangePin, kChangePolicedPin, kUnblockThroughCr, kSelectToken,
        kSelectDigitalId, kSelectUnblockMethod, kTranslateUtf8, kTranslateUtf16, kGetLocale,
        kErrorBox, kBiometricError, kAuthenticationRetry, kTokenLocked, kShowEnrolment,
        kPinPadShowModification, kPinPadHide, kPinPadShouldAbort, kPrompt);
    std::apply(
        [&](const auto&... each) {
            unsigned next = 0;
            ((next++ == number % sizeof...(each) ? body(each) : void()), ...);
        },
        requests);
}

/// Writes to all of a room, as far as anybody ever types.
template <typename Unit, typename Size>
void FillRoom(Unit* buffer, Size size) {
    if (buffer != nullptr) {
        std::fill_n(buffer, std::min<uint64_t>(size, 4096), static_cast<Unit>('9'));
        if (size != 0) {
            buffer[size - 1] = 0;
        }
    }
}

inline void FillRooms(PinReply<PinBuffer>& reply) {
    FillRoom(reply.output->pin, reply.output->pinLength);
}
inline void FillRooms(ChangeReply<PinChangeBuffers>& reply) {
    FillRoom(reply.output->oldValue, reply.output->oldLength);
    FillRoom(reply.output->newValue, reply.output->newLength);
}
inline void FillRooms(ChangeReply<ChallengeResponseBuffers>& reply) {
    FillRoom(reply.output->response, reply.output->responseLength);
    FillRoom(reply.output->newPin, reply.output->newPinLength);
}
template <typename Unit>
void FillRooms(TranslationReply<Unit>& reply) {
    FillRoom(reply.buffer, *reply.size);
}
template <typename Other>
void FillRooms(Other& reply) {
    reply = {};
}

}  // namespace zeldlg::fuzz
