#include "runtime/handlers/policy_wire.h"

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

namespace zeldlg {

namespace {

template <typename Record>
using ByteOf = uint8_t Record::*;

struct ByteField {
    ByteOf<PinPolicyWire> wire;
    ByteOf<PinPolicy> policy;
};

// Everything that is one byte on both sides, in the order of the block.
constexpr ByteField kByteFields[] = {
    {&PinPolicyWire::headerByte, &PinPolicy::headerByte},
    {&PinPolicyWire::enabledMask, &PinPolicy::enabledMask},
    {&PinPolicyWire::p1Threshold, &PinPolicy::p1Threshold},
    {&PinPolicyWire::p1CaseSensitive, &PinPolicy::p1CaseSensitive},
    {&PinPolicyWire::p1FullPinCheck, &PinPolicy::p1FullPinCheck},
    {&PinPolicyWire::p2NbClass, &PinPolicy::p2NbClass},
    {&PinPolicyWire::p2PopMin, &PinPolicy::p2PopMin},
    {&PinPolicyWire::p2MinLen, &PinPolicy::p2MinLen},
    {&PinPolicyWire::p2ClassMask, &PinPolicy::p2ClassMask},
    {&PinPolicyWire::p3Threshold, &PinPolicy::p3Threshold},
    {&PinPolicyWire::p3HistorySize, &PinPolicy::p3HistorySize},
    {&PinPolicyWire::p3CaseInsensitive, &PinPolicy::p3CaseInsensitive},
    {&PinPolicyWire::p3LengthNormalize, &PinPolicy::p3LengthNormalize},
    {&PinPolicyWire::p3StrictOnly, &PinPolicy::p3StrictOnly},
    {&PinPolicyWire::lastRefusedCharacter, &PinPolicy::lastRefusedCharacter},
    {&PinPolicyWire::p4IsWhiteList, &PinPolicy::p4IsWhiteList},
};

void Require(bool holds, const char* what) {
    if (!holds) {
        throw std::invalid_argument(what);
    }
}

std::string ReadCharList(const PinPolicyWire& block) {
    const PinPolicyCharList* const list = block.charList;
    if (list == nullptr) {
        Require((block.enabledMask & kPolicyCharacterRestriction) == 0,
                "the enabled character list is missing");
        return {};
    }
    Require(list->length == 0 || list->characters != nullptr, "the characters are missing");
    return list->length == 0 ? std::string() : std::string(list->characters, list->length);
}

uint32_t WireLength(const std::string& charList) {
    if (charList.size() > std::numeric_limits<uint32_t>::max()) {
        throw std::length_error("character list too long for the wire form");
    }
    return static_cast<uint32_t>(charList.size());
}

}  // namespace

// The records start out zeroed, so that what is not written tells a host nothing of the heap.
PinPolicyFlatCopy::PinPolicyFlatCopy(const PinPolicy& policy)
    : m_tag(policy.formatTag),
      m_block(std::make_unique<PinPolicyWire>()),
      m_charList(std::make_unique<PinPolicyCharList>()) {
    m_charList->length = WireLength(policy.p4CharList);
    m_charList->characters = policy.p4CharList.data();
    for (const ByteField& field : kByteFields) {
        (*m_block).*field.wire = policy.*field.policy;
    }
    m_block->charList = m_charList.get();
    m_block->source = static_cast<int32_t>(policy.source);
}

PinPolicyDescriptor PinPolicyFlatCopy::Descriptor() const {
    return {.tag = m_tag, .size = sizeof(PinPolicyWire), .block = m_block.get()};
}

bool FillPinPolicy(PinPolicy& policy, const PinPolicyDescriptor* descriptor) {
    if (descriptor == nullptr || descriptor->tag > kNewestPolicyTag) {
        return false;
    }
    Require(descriptor->size >= sizeof(PinPolicyWire), "the policy's block is too small");
    Require(descriptor->block != nullptr, "the policy's block is missing");
    const PinPolicyWire& block = *descriptor->block;
    // First, because it may throw; and the characters may be those of `policy` itself.
    std::string charList = ReadCharList(block);
    for (const ByteField& field : kByteFields) {
        policy.*field.policy = block.*field.wire;
    }
    policy.source = static_cast<PolicySource>(block.source);
    policy.p4CharList = std::move(charList);
    return true;
}

}  // namespace zeldlg
