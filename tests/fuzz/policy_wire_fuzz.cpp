// Policies of a host: any bytes for tag, size and block, pointers null or not. What is taken is
// compared with the bytes at their offsets; what is built again must be the block that came.
#include "runtime/handlers/policy_wire.h"

#include <cstring>
#include <memory>
#include <stdexcept>

#include "fuzz_target.h"

namespace zeldlg::fuzz {

namespace {

constexpr size_t kBlockSize = 32;

enum class Verdict { Read, NoPolicy, Unusable };

/// A block with exact bounds, so that reading past it is seen.
struct HostPolicy {
    std::unique_ptr<unsigned char[]> block = std::make_unique<unsigned char[]>(kBlockSize);
    std::unique_ptr<unsigned char[]> list = std::make_unique<unsigned char[]>(16);
    std::unique_ptr<char[]> characters;
    PinPolicyDescriptor descriptor{};
    Verdict verdict = Verdict::Read;
};

template <typename Value>
void Put(unsigned char* place, Value value) {
    memcpy(place, &value, sizeof value);
}

HostPolicy MakeHostPolicy(FuzzInput& input, std::string& charList) {
    HostPolicy host;
    const unsigned nulls = input.Byte();
    const uint32_t tag = input.Flag() ? input.Word() : input.Below(6);
    const uint32_t size = input.Flag() ? input.Word() : 24 + input.Below(16);
    for (size_t i = 0; i < kBlockSize; ++i) {
        host.block[i] = input.Byte();
    }
    charList = input.Rest();
    host.characters = std::make_unique<char[]>(charList.size());
    memcpy(host.characters.get(), charList.data(), charList.size());
    const bool hasBlock = nulls % 16 != 0;
    const bool hasList = nulls / 16 != 0;
    const bool hasCharacters = nulls % 16 != 1 && !(charList.empty() && nulls % 2 == 0);
    Put(host.list.get(), static_cast<uint32_t>(charList.size()));
    Put(host.list.get() + 8, hasCharacters ? host.characters.get() : nullptr);
    Put(host.block.get() + 16, hasList ? host.list.get() : nullptr);
    host.descriptor.tag = tag;
    host.descriptor.size = size;
    host.descriptor.block = hasBlock ? reinterpret_cast<PinPolicyWire*>(host.block.get()) : nullptr;
    const bool listIsNeeded = (host.block[1] & 8) != 0;
    const bool listIsSound = hasList ? hasCharacters || charList.empty() : !listIsNeeded;
    if (tag > 3) {
        host.verdict = Verdict::NoPolicy;
    } else if (size < kBlockSize || !hasBlock || !listIsSound) {
        host.verdict = Verdict::Unusable;
    }
    if (!hasList) {
        charList.clear();
    }
    return host;
}

Verdict Fill(PinPolicy& policy, const PinPolicyDescriptor& descriptor) {
    try {
        return FillPinPolicy(policy, &descriptor) ? Verdict::Read : Verdict::NoPolicy;
    } catch (const std::invalid_argument&) {
        return Verdict::Unusable;
    }
}

/// The fields as the offsets have them.
PinPolicy PlainPolicy(const unsigned char* block, const std::string& charList) {
    PinPolicy policy;
    uint8_t* const fields[] = {
        &policy.headerByte,        &policy.enabledMask,    &policy.p1Threshold,
        &policy.p1CaseSensitive,   &policy.p1FullPinCheck, &policy.p2NbClass,
        &policy.p2PopMin,          &policy.p2MinLen,       &policy.p2ClassMask,
        &policy.p3Threshold,       &policy.p3HistorySize,  &policy.p3CaseInsensitive,
        &policy.p3LengthNormalize, &policy.p3StrictOnly};
    for (size_t i = 0; i < std::size(fields); ++i) {
        *fields[i] = block[i];
    }
    policy.lastRefusedCharacter = block[24];
    policy.p4IsWhiteList = block[25];
    int32_t source = 0;
    memcpy(&source, block + 28, sizeof source);
    policy.source = static_cast<PolicySource>(source);
    policy.p4CharList = charList;
    return policy;
}

void RequireSameBlock(const PinPolicy& policy, const unsigned char* original) {
    const PinPolicyFlatCopy copy(policy);
    const PinPolicyDescriptor descriptor = copy.Descriptor();
    REQUIRE_EQ(descriptor.tag, uint32_t{policy.formatTag});
    REQUIRE_EQ(descriptor.size, uint32_t{kBlockSize});
    const auto* const block = reinterpret_cast<const unsigned char*>(descriptor.block);
    // All but what is never written, and the pointer.
    REQUIRE(memcmp(block, original, 14) == 0);
    REQUIRE(memcmp(block + 24, original + 24, 2) == 0);
    REQUIRE(memcmp(block + 28, original + 28, 4) == 0);
    for (const size_t unwritten : {14U, 15U, 26U, 27U}) {
        REQUIRE(block[unwritten] == 0);
    }
    REQUIRE(descriptor.block->charList->characters == policy.p4CharList.data());
    PinPolicy again;
    again.formatTag = policy.formatTag;
    // A policy may carry a tag that the library itself would not read.
    REQUIRE_EQ(FillPinPolicy(again, &descriptor), policy.formatTag <= 3);
    if (policy.formatTag > 3) {
        return;
    }
    REQUIRE(again == policy);
    // The characters may be the policy's own.
    REQUIRE(FillPinPolicy(again, &descriptor) && again == policy);
}

}  // namespace

FUZZ_TARGET(policy_wire) {
    FuzzInput input(bytes);
    std::string charList;
    PinPolicy before;
    before.formatTag = input.Byte();
    before.p4CharList = "before";
    before.p3HistorySize = 77;
    const HostPolicy host = MakeHostPolicy(input, charList);
    PinPolicy policy = before;
    REQUIRE(Fill(policy, host.descriptor) == host.verdict);
    if (host.verdict != Verdict::Read) {
        REQUIRE(policy == before);
        return;
    }
    PinPolicy expected = PlainPolicy(host.block.get(), charList);
    expected.formatTag = before.formatTag;
    REQUIRE(policy == expected);
    RequireSameBlock(policy, host.block.get());
}

}  // namespace zeldlg::fuzz
