// The command that asks whether a dialog could be shown, as a host in C++ does.
#include <cstdio>
#include <string>
#include <zeldlg/probe.hpp>

extern "C" {
#define _Noreturn [[noreturn]]  // of C
#include "command.h"
#undef _Noreturn
}

namespace {

void Say(const char* what, const std::string& problem) {
    printf("%s: %s\n", what, problem.empty() ? "good" : problem.c_str());
}

}  // namespace

extern "C" int RunProbe(const DLG_FunctionList*, const Options*) {
    const zeldlg::Probe found = zeldlg::probe();
    Say("display", found.display);
    Say("fonts", found.fonts);
    Say("settings", found.settings);
    return found ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}
