// Undoes something at the end of a scope, however that is left.
#pragma once

namespace zeldlg::platform {

template <typename Body>
class ScopeExit {
public:
    explicit ScopeExit(const Body& body) : m_body(body) {}
    ~ScopeExit() { m_body(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

private:
    Body m_body;
};

}  // namespace zeldlg::platform
