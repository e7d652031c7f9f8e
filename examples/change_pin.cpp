// A host in C++: has a PIN changed under a policy. The dialog waits on a thread of its own, so that
// the main thread goes on serving whatever else the host does.
#include <zeldlg/probe.hpp>
#include <zeldlg/zeldlg.hpp>

#include <chrono>
#include <cstdio>
#include <future>

namespace {

zeldlg::ChangeRequest BadgeRequest() {
    zeldlg::ChangeRequest request;
    request.label = "Company badge";
    request.new_pin = {6, 16};
    request.old_pin = {4, 16};
    // At least six bytes, of two classes of characters, and no run such as 123456.
    request.policy = zeldlg::Policy().min_length(6).classes(2).no_run();
    return request;
}

int Report(zeldlg::Result result, const zeldlg::Secret& oldPin, const zeldlg::Secret& newPin) {
    switch (result) {
        case zeldlg::Result::Ok:
            std::printf("to be changed: %zu bytes to %zu bytes\n", oldPin.size(), newPin.size());
            return 0;
        case zeldlg::Result::Cancelled:
            std::puts("cancelled");
            return 1;
        default:
            std::fputs("The dialog cannot be shown. Is there a display?\n", stderr);
            return 2;
    }
}

}  // namespace

int main() {
    using namespace std::chrono_literals;
    const zeldlg::Session dialogs;
    zeldlg::Secret oldPin;
    zeldlg::Secret newPin;
    if (!zeldlg::probe()) {  // a start without a display may be slow to fail, and never return
        return Report(zeldlg::Result::Failed, oldPin, newPin);
    }
    auto answer = std::async(std::launch::async,
                             [&] { return dialogs.change_pin(BadgeRequest(), oldPin, newPin); });
    size_t turns = 0;
    while (answer.wait_for(50ms) != std::future_status::ready) {
        ++turns;  // here the host does its own work
    }
    const int exitCode = Report(answer.get(), oldPin, newPin);
    std::printf("turns of the main thread meanwhile: %zu\n", turns);
    return exitCode;
}
