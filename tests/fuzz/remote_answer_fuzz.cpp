// What a host reads of its helper: any bytes, as the answer to any request. Either the whole answer
// is taken, and nothing is written behind a buffer, or nothing is written at all.
#include <array>
#include <cstring>
#include <memory>

#include "fuzz_target.h"
#include "remote_requests.h"

namespace zeldlg::fuzz {

namespace {

using remote::Reader;
using remote::WireBytes;
using remote::WireError;

// The outputs of a host, of a size of their own each, so that writing past one is seen.
struct Outputs {
    explicit Outputs(unsigned room) {
        for (auto& buffer : buffers) {
            buffer = std::make_unique<uint8_t[]>(room);
            memset(buffer.get(), 0xa5, room);
        }
    }

    std::array<std::unique_ptr<uint8_t[]>, 2> buffers;
};

bool IsUntouched(const uint8_t* bytes, size_t size) {
    return std::all_of(bytes, bytes + size, [](uint8_t byte) { return byte == 0xa5; });
}

template <typename Record, typename Reply>
bool Take(const Request<Record, Reply>&, const WireBytes& bytes, Record record, Reply reply) {
    const auto read = [&](Reader& reader) {
        remote::kWireForm<Record, Reply>.readAnswer(reader, Packed(record), Packed(reply));
    };
    Reader reader(bytes);
    try {
        read(reader);
        reader.ExpectEnd();
    } catch (const WireError&) {
        return false;
    }
    reader.Commit(bytes);
    read(reader);
    return true;
}

template <typename Record>
void Try(const Request<const Record*, PinReply<PinBuffer>*>& request, const WireBytes& bytes,
         unsigned room) {
    Outputs outputs(room);
    PinBuffer output{outputs.buffers[0].get(), room};
    PinReply<PinBuffer> reply{&output, 0};
    const bool taken = Take<const Record*>(request, bytes, nullptr, &reply);
    const bool written = taken && reply.returnCode == wxID_OK;
    REQUIRE(output.pinLength <= room);
    REQUIRE(written || (output.pinLength == room && IsUntouched(output.pin, room)));
    REQUIRE(!written || IsUntouched(output.pin + output.pinLength, room - output.pinLength));
}

template <typename Record, typename Buffers>
void TryChange(const Request<const Record*, ChangeReply<Buffers>*>& request, const Record& record,
               const WireBytes& bytes, unsigned room) {
    Outputs outputs(room);
    Buffers output{outputs.buffers[0].get(), room, outputs.buffers[1].get(), room};
    ChangeReply<Buffers> reply{0, &output};
    const bool taken = Take<const Record*>(request, bytes, &record, &reply);
    if (!taken || reply.returnCode != wxID_OK) {
        for (const auto& buffer : outputs.buffers) {
            REQUIRE(IsUntouched(buffer.get(), room));
        }
    }
}

template <typename Record>
void Try(const Request<const Record*, ChangeReply<PinChangeBuffers>*>& request,
         const WireBytes& bytes, unsigned room) {
    TryChange(request, Record{}, bytes, room);
}

void Try(const decltype(kUnblockThroughCr)& request, const WireBytes& bytes, unsigned room) {
    ChallengeResponseRequest record{};
    record.askNewPin = static_cast<int32_t>(room % 2);
    TryChange(request, record, bytes, room);
}

template <typename Record, typename Unit>
void Try(const Request<Record, TranslationReply<Unit>*>& request, const WireBytes& bytes,
         unsigned room) {
    const auto buffer = std::make_unique<Unit[]>(room);
    uint32_t size = room;
    TranslationReply<Unit> reply{&size, buffer.get(), 1};
    const bool taken = Take<Record>(request, bytes, {}, &reply);
    REQUIRE(taken || (size == room && reply.result == 1));
    REQUIRE(reply.result != ZELDLG_OK || size <= room);
}

void Try(const decltype(kSelectDigitalId)& request, const WireBytes& bytes, unsigned) {
    DigitalIdResult output{1, 2};
    PinReply<DigitalIdResult> reply{&output, 0};
    const bool taken = Take<const DigitalIdChoice*>(request, bytes, nullptr, &reply);
    REQUIRE((taken && reply.returnCode == wxID_OK) || (output.value == 1 && output.alwaysUse == 2));
}

template <typename Record>
void Try(const Request<Record, Nothing>& request, const WireBytes& bytes, unsigned) {
    REQUIRE_EQ(Take<Record>(request, bytes, {}, {}), bytes.empty());
}

template <typename Record, typename Plain>
void Try(const Request<Record, Plain*>& request, const WireBytes& bytes, unsigned) {
    Plain reply{};
    if (!Take<Record>(request, bytes, {}, &reply)) {
        const Plain untouched{};
        REQUIRE(memcmp(&reply, &untouched, sizeof reply) == 0);
    }
}

}  // namespace

FUZZ_TARGET(remote_answer) {
    FuzzInput input(bytes);
    const unsigned wanted = input.Byte();
    const unsigned room = input.Below(20);
    const std::string text = input.Rest();
    const WireBytes answer(text.begin(), text.end());
    WithRequest(wanted, [&](const auto& request) { Try(request, answer, room); });
}

}  // namespace zeldlg::fuzz
