// The stamps of two files and what the refresh makes of them. The bytes: what is there, then the
// shipped file, a byte 0xFF and the user's file.
#include "registry/registry_refresh.h"

#include <algorithm>

#include "fuzz_target.h"
#include "plain/plain_store.h"
#include "scratch_places.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

using registry::ReadStamp;
using registry::RegistryStamp;

void RequireStamp(const std::string& path, const std::string& content) {
    const RegistryStamp stamp = ReadStamp(path);
    REQUIRE(stamp.readable);
    const std::optional<std::string> plain = PlainStamp(content);
    REQUIRE_EQ(stamp.text.has_value(), plain.has_value());
    REQUIRE_EQ(stamp.text.value_or(""), plain.value_or(""));
}

}  // namespace

FUZZ_TARGET(registry_stamp) {
    static ScratchPlaces places;
    FuzzInput input(bytes);
    const unsigned what = input.Byte();
    const bool hasShipped = (what & 3U) != 0;
    const bool hasUser = (what & 12U) != 0;
    // Now and then longer than what is read at once.
    const size_t longer = what == 0xFF ? 65536 - size_t{input.Below(64)} : 0;
    const std::string padding(longer, 'p');
    const std::string both = input.Rest();
    const size_t split = std::min(both.find('\xFF'), both.size());
    const std::string shipped = padding + both.substr(0, split);
    const std::string user = both.substr(std::min(split + 1, both.size()));

    places.PutShipped(hasShipped ? std::optional(shipped) : std::nullopt);
    places.PutUser(hasUser ? std::optional(user) : std::nullopt);
    if (hasShipped) {
        RequireStamp(places.ShippedFile(), shipped);
    }
    if (hasUser) {
        RequireStamp(places.UserFile(), user);
    }

    registry::RefreshUserFile(places.Places());
    const std::optional<std::string> after = places.User();
    const bool copied =
        hasShipped &&
        (!hasUser || (PlainStamp(shipped) && PlainStamp(user) != PlainStamp(shipped)));
    REQUIRE_EQ(after.has_value(), hasUser || copied);
    if (copied) {
        REQUIRE(*after == OverwrittenWith(shipped, hasUser ? user : ""));
    } else if (hasUser) {
        REQUIRE_EQ(*after, user);
    }
    if (hasShipped) {
        REQUIRE(places.Shipped() == shipped);
    }
    // A second refresh finds nothing to do, unless the old tail holds the stamp that counts.
    registry::RefreshUserFile(places.Places());
    REQUIRE(places.User() == after);
}

}  // namespace zeldlg::fuzz
