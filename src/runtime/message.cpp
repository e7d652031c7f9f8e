#include "runtime/message.h"

#include <utility>

namespace zeldlg {

using platform::EventHandle;

CMessage::CMessage(uint64_t code, uint64_t param1, uint64_t param2, const remote::WireForm* form)
    : m_code(code),
      m_param1(param1),
      m_param2(param2),
      m_form(form),
      m_doneEvent(EventHandle::Create()) {}

CMessage::CMessage(uint64_t code, remote::WireCall& call)
    : m_code(code), m_param1(0), m_param2(0), m_call(&call), m_doneEvent(EventHandle::Create()) {}

CMessage::CMessage(const CMessage& other)
    : m_code(other.m_code),
      m_param1(other.m_param1),
      m_param2(other.m_param2),
      m_form(other.m_form),
      m_call(other.m_call),
      m_doneEvent(EventHandle::Share(other.m_doneEvent)) {}

CMessage::~CMessage() = default;

void CMessage::Complete(std::exception_ptr error) {
    m_error = std::move(error);
    // The last access: the caller's frame, and this message with it, may be gone afterwards.
    m_doneEvent->Set();
}

void CMessage::WaitDone() {
    platform::WaitForEvent(*m_doneEvent, platform::kNoTimeout);
    m_doneEvent->Reset();
    if (m_error != nullptr) {
        std::rethrow_exception(std::exchange(m_error, nullptr));
    }
}

}  // namespace zeldlg
