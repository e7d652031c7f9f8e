// The wire form of a policy, byte by byte, in both directions, and what is refused.
#include "runtime/handlers/policy_wire.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace zeldlg {
namespace {

using Bytes = std::array<uint8_t, sizeof(PinPolicyWire)>;

/// Each field has a value of its own; the header bytes are 0xA0 and 3.
PinPolicy DistinctPolicy() {
    PinPolicy policy;
    policy.headerByte = 0xA0;
    policy.formatTag = 3;
    policy.enabledMask = 0xA1;
    policy.p1Threshold = 0xA2;
    policy.p1CaseSensitive = 0xA3;
    policy.p1FullPinCheck = 0xA4;
    policy.p2NbClass = 0xA5;
    policy.p2PopMin = 0xA6;
    policy.p2MinLen = 0xA7;
    policy.p2ClassMask = 0xA8;
    policy.p3Threshold = 0xA9;
    policy.p3HistorySize = 0xAA;
    policy.p3CaseInsensitive = 0xAB;
    policy.p3LengthNormalize = 0xAC;
    policy.p3StrictOnly = 0xAD;
    policy.p4CharList = std::string("x\0\xFFy", 4);
    policy.lastRefusedCharacter = 0xB8;
    policy.p4IsWhiteList = 0xB9;
    policy.source = PolicySource::Card;
    return policy;
}

/// A block of a host whose bytes are known by their offset: byte n is 0xA0 + n.
class HostWire {
public:
    HostWire() {
        Bytes bytes;
        for (size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<uint8_t>(0xA0 + i);
        }
        memcpy(&block, bytes.data(), bytes.size());
        block.charList = &list;
    }

    std::string characters = std::string("x\0\xFFy", 4);
    PinPolicyCharList list = {4, 0xDEADBEEF, characters.data()};
    PinPolicyWire block = {};
    PinPolicyDescriptor descriptor = {0, sizeof(PinPolicyWire), &block};
};

void ExpectNoPolicy(const PinPolicyDescriptor* descriptor) {
    PinPolicy policy = DistinctPolicy();
    EXPECT_FALSE(FillPinPolicy(policy, descriptor));
    EXPECT_EQ(policy, DistinctPolicy()) << "the record is left untouched";
}

void ExpectUnusable(const PinPolicyDescriptor* descriptor) {
    PinPolicy policy = DistinctPolicy();
    EXPECT_THROW(FillPinPolicy(policy, descriptor), std::invalid_argument);
    EXPECT_EQ(policy, DistinctPolicy()) << "the record is left untouched";
}

TEST(PinPolicyWire, BuiltBlockHasEveryFieldAtItsPlace) {
    const PinPolicy policy = DistinctPolicy();
    const PinPolicyFlatCopy copy(policy);
    const PinPolicyDescriptor descriptor = copy.Descriptor();
    EXPECT_EQ(descriptor.tag, 3U);
    EXPECT_EQ(descriptor.size, 32U);
    Bytes bytes;
    memcpy(bytes.data(), descriptor.block, bytes.size());
    for (size_t offset = 0; offset < 14; ++offset) {
        EXPECT_EQ(bytes[offset], 0xA0 + offset) << offset;
    }
    EXPECT_EQ(bytes[24], 0xB8);
    EXPECT_EQ(bytes[25], 0xB9);
    EXPECT_EQ(bytes[28], 0xFC);
    EXPECT_EQ(bytes[29], 0xFF);
    EXPECT_EQ(bytes[30], 0xFF);
    EXPECT_EQ(bytes[31], 0xFF);
    const PinPolicyCharList* list = nullptr;
    memcpy(&list, bytes.data() + 16, sizeof list);
    EXPECT_EQ(list->length, 4U);
    EXPECT_EQ(list->characters, policy.p4CharList.data()) << "the characters stay the policy's";
}

TEST(PinPolicyWire, BytesThatAreNotWrittenTellNothing) {
    const PinPolicy policy = DistinctPolicy();
    const PinPolicyFlatCopy copy(policy);
    const PinPolicyWire& block = *copy.Descriptor().block;
    EXPECT_EQ(block.reserved1[0] | block.reserved1[1] | block.reserved2[0] | block.reserved2[1], 0);
    EXPECT_EQ(block.charList->reserved, 0U);
}

TEST(PinPolicyWire, EmptyCharacterListIsBuiltWithLengthZero) {
    const PinPolicy policy;
    const PinPolicyFlatCopy copy(policy);
    ASSERT_NE(copy.Descriptor().block->charList, nullptr);
    EXPECT_EQ(copy.Descriptor().block->charList->length, 0U);
}

TEST(PinPolicyWire, ReleasingLeavesThePolicyAsItWas) {
    const PinPolicy policy = DistinctPolicy();
    {
        const PinPolicyFlatCopy copy(policy);  // released at once
    }
    EXPECT_EQ(policy, DistinctPolicy());
}

TEST(PinPolicyWire, FilledRecordTakesEachByteFromItsPlace) {
    const HostWire wire;
    PinPolicy policy;
    ASSERT_TRUE(FillPinPolicy(policy, &wire.descriptor));
    PinPolicy expected = DistinctPolicy();
    expected.formatTag = 0;
    // The bytes BC BD BE BF as a signed number.
    expected.source = static_cast<PolicySource>(-0x40414244);
    EXPECT_EQ(policy, expected);
}

TEST(PinPolicyWire, TagIsNeverTakenOver) {
    HostWire wire;
    wire.descriptor.tag = 2;
    PinPolicy fresh;
    ASSERT_TRUE(FillPinPolicy(fresh, &wire.descriptor));
    EXPECT_EQ(fresh.formatTag, 0);
    PinPolicy used = DistinctPolicy();
    ASSERT_TRUE(FillPinPolicy(used, &wire.descriptor));
    EXPECT_EQ(used.formatTag, 3);
}

TEST(PinPolicyWire, TagsUpToThreeAreReadAndAllOthersMeanNoPolicy) {
    HostWire wire;
    for (uint32_t tag = 0; tag <= 255; ++tag) {
        wire.descriptor.tag = tag;
        PinPolicy policy;
        EXPECT_EQ(FillPinPolicy(policy, &wire.descriptor), tag <= 3) << "tag " << tag;
    }
    for (const uint32_t tag : {4U, 255U, 0x100U, 0x10000U, 0x80000000U, 0xFFFFFFFFU}) {
        wire.descriptor.tag = tag;
        ExpectNoPolicy(&wire.descriptor);
    }
}

TEST(PinPolicyWire, NothingBehindATagAboveThreeIsLookedAt) {
    ExpectNoPolicy(nullptr);
    const PinPolicyDescriptor descriptor{4, 0, nullptr};
    ExpectNoPolicy(&descriptor);
}

TEST(PinPolicyWire, RoundTripsWithEveryTag) {
    for (unsigned tag = 0; tag <= 255; ++tag) {
        PinPolicy policy = DistinctPolicy();
        policy.formatTag = static_cast<uint8_t>(tag);
        const PinPolicyFlatCopy copy(policy);
        const PinPolicyDescriptor descriptor = copy.Descriptor();
        EXPECT_EQ(descriptor.tag, tag);
        PinPolicy read;
        ASSERT_EQ(FillPinPolicy(read, &descriptor), tag <= 3) << "tag " << tag;
        PinPolicy expected = tag <= 3 ? policy : PinPolicy();
        expected.formatTag = 0;
        EXPECT_EQ(read, expected) << "tag " << tag;
    }
}

TEST(PinPolicyWire, SourceIsCarriedWhateverItsValue) {
    HostWire wire;
    for (const int32_t source :
         {-4, -3, -2, -1, 0, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        wire.block.source = source;
        PinPolicy policy;
        ASSERT_TRUE(FillPinPolicy(policy, &wire.descriptor));
        EXPECT_EQ(static_cast<int32_t>(policy.source), source);
        EXPECT_EQ(PinPolicyFlatCopy(policy).Descriptor().block->source, source);
    }
}

TEST(PinPolicyWire, BlockSmallerThanTheRecordIsUnusable) {
    HostWire wire;
    for (uint32_t size = 0; size < 32; ++size) {
        wire.descriptor.size = size;
        ExpectUnusable(&wire.descriptor);
    }
}

TEST(PinPolicyWire, LargerBlockIsReadUpToTheRecordsSize) {
    HostWire wire;
    for (const uint32_t size : {33U, 40U, 64U, 0xFFFFFFFFU}) {
        wire.descriptor.size = size;
        PinPolicy policy;
        EXPECT_TRUE(FillPinPolicy(policy, &wire.descriptor)) << size;
        EXPECT_EQ(policy.p4IsWhiteList, 0xB9);
    }
}

TEST(PinPolicyWire, NullBlockIsUnusable) {
    HostWire wire;
    wire.descriptor.block = nullptr;
    ExpectUnusable(&wire.descriptor);
}

TEST(PinPolicyWire, NullListIsEmptyUnlessTheCharacterRestrictionIsEnabled) {
    HostWire wire;
    wire.block.charList = nullptr;
    for (unsigned enabled = 0; enabled <= 0xFF; ++enabled) {
        wire.block.enabledMask = static_cast<uint8_t>(enabled);
        if ((enabled & 0x08U) != 0) {
            ExpectUnusable(&wire.descriptor);
            continue;
        }
        PinPolicy policy = DistinctPolicy();
        EXPECT_TRUE(FillPinPolicy(policy, &wire.descriptor)) << enabled;
        EXPECT_EQ(policy.p4CharList, "");
        EXPECT_EQ(policy.enabledMask, enabled);
        EXPECT_EQ(policy.p2MinLen, 0xA7);
    }
}

TEST(PinPolicyWire, NullCharactersAreUnusableUnlessTheLengthIsZero) {
    HostWire wire;
    wire.list.characters = nullptr;
    for (const uint32_t length : {1U, 64U, 0xFFFFFFFFU}) {
        wire.list.length = length;
        for (const uint8_t enabled : std::initializer_list<uint8_t>{0x00, 0x08, 0xFF}) {
            wire.block.enabledMask = enabled;
            ExpectUnusable(&wire.descriptor);
        }
    }
    wire.list.length = 0;
    PinPolicy policy = DistinctPolicy();
    EXPECT_TRUE(FillPinPolicy(policy, &wire.descriptor));
    EXPECT_EQ(policy.p4CharList, "");
}

TEST(PinPolicyWire, ListOfLengthZeroIsNotRead) {
    HostWire wire;
    wire.list.length = 0;
    // An address at which nothing can be read.
    memset(&wire.list.characters, 0x01, sizeof wire.list.characters);
    PinPolicy policy;
    EXPECT_TRUE(FillPinPolicy(policy, &wire.descriptor));
    EXPECT_EQ(policy.p4CharList, "");
}

TEST(PinPolicyWire, ListIsReadToExactlyItsLength) {
    HostWire wire;
    for (const size_t length : {size_t{1}, size_t{64}, size_t{65}, size_t{1} << 20}) {
        // On the heap without a terminator: an address sanitizer sees a byte read too many.
        const auto characters = std::make_unique<char[]>(length);
        memset(characters.get(), 'q', length);
        wire.list = {static_cast<uint32_t>(length), 0, characters.get()};
        PinPolicy policy;
        ASSERT_TRUE(FillPinPolicy(policy, &wire.descriptor));
        EXPECT_EQ(policy.p4CharList, std::string(length, 'q'));
    }
}

TEST(PinPolicyWire, RecordCanBeFilledFromItsOwnFlatCopy) {
    PinPolicy policy = DistinctPolicy();
    policy.p4CharList.assign(200, 'z');
    const PinPolicy before = policy;
    const PinPolicyFlatCopy copy(policy);
    const PinPolicyDescriptor descriptor = copy.Descriptor();
    ASSERT_TRUE(FillPinPolicy(policy, &descriptor));
    EXPECT_EQ(policy, before);
}

}  // namespace
}  // namespace zeldlg
