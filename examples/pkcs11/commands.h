// The commands of zeldlg-p11. Each throws what keeps it from being done.
#pragma once

#include <string>
#include <zeldlg/zeldlg.hpp>

#include "token.h"

namespace p11 {

// The user did not want to.
struct Cancelled {};

struct Options {
    std::string module = "p11-kit-proxy.so";  // all modules that p11-kit is configured for
    std::string token;                        // label; empty = the user chooses
    std::string label;                        // of the key or the certificate; empty = likewise
    std::string type = "rsa";
    std::string input = "/dev/stdin";
    std::string output = "/dev/stdout";
};

struct Host {
    const Options& options;
    const Module& module;
    const zeldlg::Session& dialogs;
};

void List(const Host& host);
void LogIn(const Host& host);
void ChangePin(const Host& host);
void Unblock(const Host& host);
void GenerateKeyPair(const Host& host);
void Sign(const Host& host);
void DeleteCertificate(const Host& host);

// Throw Cancelled for what the user did not want, and what a failure is otherwise.
void Require(zeldlg::Result result);
void RequireDone(CK_RV code);

// The token that is named, the only one, or the one that the user chooses.
Token ChooseToken(const Host& host);

}  // namespace p11
