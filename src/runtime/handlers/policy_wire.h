// The wire form in which a PIN policy crosses the library's boundary: built, released and read.
#pragma once

#include <zeldlg/zeldlg.h>

#include <memory>

#include "policy/pin_policy.h"

namespace zeldlg {

/// Newest format of the wire form; blocks with a greater tag are not read.
inline constexpr uint32_t kNewestPolicyTag = 3;

/// The wire form of a policy. Releases its list descriptor, then its block, and nothing else: the
/// characters stay the policy's, which must outlive this and must not be changed meanwhile.
class PinPolicyFlatCopy {
public:
    /// Throws std::length_error for a character list of 4 GiB or more.
    explicit PinPolicyFlatCopy(const PinPolicy& policy);

    /// Valid as long as this object.
    PinPolicyDescriptor Descriptor() const;

private:
    uint32_t m_tag;
    std::unique_ptr<PinPolicyWire> m_block;
    std::unique_ptr<PinPolicyCharList> m_charList;
};

/// Takes over a host's policy, all but the format tag. Exactly the stated length of the character
/// list is read: that so many bytes are there is up to the host.
/// Throws std::invalid_argument for a policy that cannot be read: a size below that of the block, a
/// null block, a null list although the character restriction is enabled (it is an empty list
/// otherwise), or null characters with a length above 0. No PIN may be accepted under such a one.
/// @return false for null and for a tag above kNewestPolicyTag: there is no policy. `policy` is
///         unchanged then, as it is when this throws
bool FillPinPolicy(PinPolicy& policy, const PinPolicyDescriptor* descriptor);

}  // namespace zeldlg
