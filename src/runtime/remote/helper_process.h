// The helper process: where its program is, and its start, of which the host's process notices
// nothing.
#pragma once

#include <string>

namespace zeldlg::remote {

/// The program's name from the folder of the library: it belongs to this very file of the library,
/// wherever that was installed.
inline constexpr const char* kHelperName = "zeldlg/zeldlg-helper";

/// The descriptor that the helper is given.
inline constexpr int kHelperSocket = 3;

/// Empty when the library does not know its own place.
std::string HelperPath();

/// Starts a program with kHelperSocket, this process's environment and standard error, and nothing
/// else of it: default signals, no other descriptors, a session of its own. It is no child of this
/// process, so that no wait for children and no SIGCHLD of the host ever meets it. Its one argument
/// is the id of this process, for people to see.
/// @return This process's end of the connection; -1 when the program could not be started.
int StartHelper(const std::string& path);

}  // namespace zeldlg::remote
