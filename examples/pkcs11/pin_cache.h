// PINs of users, kept for some seconds.
#pragma once

#include <p11-kit/pkcs11.h>

#include <chrono>
#include <functional>
#include <memory>
#include <zeldlg/zeldlg.hpp>

namespace p11 {

// They are overwritten when their time has passed, whether anybody asks for them or not: by a
// thread that lives as long as there are any. For several threads.
class PinCache {
public:
    // With 0 seconds nothing is kept.
    explicit PinCache(std::chrono::seconds lifetime);
    ~PinCache();
    PinCache(const PinCache&) = delete;
    PinCache& operator=(const PinCache&) = delete;

    void Keep(CK_SLOT_ID slot, zeldlg::Secret pin);
    void Forget(CK_SLOT_ID slot);

    // Calls `use` with the slot's PIN and gives its answer; without a PIN, CKR_PIN_INCORRECT.
    CK_RV Use(CK_SLOT_ID slot, const std::function<CK_RV(const zeldlg::Secret&)>& use);

private:
    struct State;
    const std::chrono::seconds m_lifetime;
    const std::shared_ptr<State> m_state;
};

}  // namespace p11
