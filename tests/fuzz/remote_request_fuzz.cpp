// What a helper reads of its host: any bytes, as any request. What can be read is written to where
// the request has room for it, and what is written anew of it is read as the same.
#include <array>
#include <tuple>

#include "fuzz_target.h"
#include "remote_requests.h"

namespace zeldlg::fuzz {

namespace {

using remote::Reader;
using remote::WireBytes;
using remote::WireError;

template <typename Record, typename Reply>
struct Taken {
    Record record{};
    Reply reply{};
};

template <typename Record, typename Reply>
WireBytes WrittenAnew(const Taken<Record, Reply>& taken) {
    remote::Writer writer;
    remote::kWireForm<Record, Reply>.write(writer, Packed(taken.record), Packed(taken.reply));
    return writer.Bytes();
}

template <typename Record, typename Reply>
WireBytes ReadAndWritten(const Request<Record, Reply>&, const WireBytes& bytes) {
    remote::Handles handles;
    Reader reader(bytes, &handles);
    Taken<Record, Reply> taken;
    remote::DescribeParameter(reader, taken.record);
    remote::DescribeParameter(reader, taken.reply);
    reader.ExpectEnd();
    if constexpr (!std::is_same_v<Reply, Nothing>) {
        FillRooms(*taken.reply);
    }
    return WrittenAnew(taken);
}

}  // namespace

FUZZ_TARGET(remote_request) {
    FuzzInput input(bytes);
    const unsigned wanted = input.Byte();
    const std::string text = input.Rest();
    const WireBytes request(text.begin(), text.end());
    WithRequest(wanted, [&request](const auto& kind) {
        try {
            const WireBytes once = ReadAndWritten(kind, request);
            REQUIRE(ReadAndWritten(kind, once) == once);
        } catch (const WireError&) {
        }
    });
}

}  // namespace zeldlg::fuzz
