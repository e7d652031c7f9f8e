// One request on its way from a host thread to the GUI thread and back.
// It lives in the caller's frame; the caller waits until it is completed.
#pragma once

#include <cstdint>
#include <exception>

#include "platform/event.h"

namespace zeldlg {

namespace remote {
struct WireForm;
struct WireCall;
}  // namespace remote

class CMessage {
public:
    /// @param form How the parameters travel to another process; null: not at all.
    CMessage(uint64_t code, uint64_t param1, uint64_t param2,
             const remote::WireForm* form = nullptr);
    /// A request that has come from another process.
    CMessage(uint64_t code, remote::WireCall& call);
    /// Refers to the same completion event, which the original goes on owning.
    CMessage(const CMessage& other);
    CMessage& operator=(const CMessage&) = delete;
    virtual ~CMessage();

    uint64_t Code() const { return m_code; }
    /// What they are for which code: requests.h.
    uint64_t Param1() const { return m_param1; }
    uint64_t Param2() const { return m_param2; }

    const remote::WireForm* Form() const { return m_form; }
    /// Where the parameters are read from, and the answer goes to, instead; null as a rule.
    remote::WireCall* Call() const { return m_call; }

    /// GUI thread: the request is over. `error` is what its handler threw, or null; WaitDone
    /// raises it on the caller's thread.
    void Complete(std::exception_ptr error = nullptr);

    /// Caller: @return Whether the request is over, or is within the time-out. WaitDone follows.
    bool IsDone(uint32_t timeoutMs) const {
        return platform::WaitForEvent(*m_doneEvent, timeoutMs);
    }

    /// Caller: waits without a time limit, then makes the message ready to be sent again.
    void WaitDone();

    friend bool operator<(const CMessage& a, const CMessage& b) { return a.m_code < b.m_code; }
    friend bool operator>(const CMessage& a, const CMessage& b) { return b < a; }

private:
    uint64_t m_code;
    uint64_t m_param1;
    uint64_t m_param2;
    const remote::WireForm* m_form = nullptr;
    remote::WireCall* m_call = nullptr;
    platform::EventHandle m_doneEvent;
    std::exception_ptr m_error;
};

}  // namespace zeldlg
