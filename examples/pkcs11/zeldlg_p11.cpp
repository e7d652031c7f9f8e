// zeldlg-p11: a host over any PKCS#11 module. Its dialogs are the library's, its tokens the
// module's.
#include <getopt.h>
#include <sys/prctl.h>

#include <cstdio>
#include <cstring>
#include <iostream>

#include "commands.h"
#include "pin_dialogs.h"
#include "token.h"

namespace {

enum ExitCode { kDone = 0, kCancelled = 1, kFailed = 2 };

struct Command {
    const char* name;
    const char* summary;
    void (*run)(const p11::Host& host);
};

constexpr Command kCommands[] = {
    {"list", "list the tokens", p11::List},
    {"login", "log in; have the PIN changed when it has to be", p11::LogIn},
    {"change-pin", "change the PIN", p11::ChangePin},
    {"unblock", "set a new PIN with the SO PIN", p11::Unblock},
    {"keygen", "generate a key pair: --label NAME [--type rsa|ec]", p11::GenerateKeyPair},
    {"sign", "sign with a key: [--label NAME] [--input FILE] [--output FILE]", p11::Sign},
    {"delete-certificate", "delete a certificate: [--label NAME]", p11::DeleteCertificate},
};

void PrintHelp(std::ostream& out) {
    out << "Usage: zeldlg-p11 [OPTION...] COMMAND\n"
           "\n"
           "Works with the tokens of a PKCS#11 module. PINs are asked for in dialogs.\n"
           "\n"
           "  --module FILE   the module (default: p11-kit's, with all its modules)\n"
           "  --token LABEL   the token (default: the only one, or chosen in a dialog)\n"
           "  --help          print this help\n"
           "\n"
           "Commands:\n";
    for (const Command& command : kCommands) {
        out << "  " << command.name << std::string(20 - std::strlen(command.name), ' ')
            << command.summary << '\n';
    }
    out << "\nExit codes: 0 done, 1 cancelled, 2 failed.\n";
}

[[noreturn]] void Refuse(const std::string& why) {
    std::cerr << "zeldlg-p11: " << why << " (see --help)\n";
    std::exit(kFailed);
}

p11::Options ParseOptions(int argc, char** argv) {
    static const struct option kKnown[] = {
        {"module", required_argument, nullptr, 'm'}, {"token", required_argument, nullptr, 't'},
        {"label", required_argument, nullptr, 'l'},  {"type", required_argument, nullptr, 'k'},
        {"input", required_argument, nullptr, 'i'},  {"output", required_argument, nullptr, 'o'},
        {"help", no_argument, nullptr, 'h'},         {nullptr, 0, nullptr, 0}};
    p11::Options options;
    for (int option = 0; (option = getopt_long(argc, argv, "", kKnown, nullptr)) != -1;) {
        switch (option) {
            case 'm':
                options.module = optarg;
                break;
            case 't':
                options.token = optarg;
                break;
            case 'l':
                options.label = optarg;
                break;
            case 'k':
                options.type = optarg;
                break;
            case 'i':
                options.input = optarg;
                break;
            case 'o':
                options.output = optarg;
                break;
            case 'h':
                PrintHelp(std::cout);
                std::exit(kDone);
            default:
                std::exit(kFailed);  // getopt_long has said why
        }
    }
    if (options.type != "rsa" && options.type != "ec") {
        Refuse("unknown type '" + options.type + "'");
    }
    return options;
}

const Command& FindCommand(int argc, char** argv) {
    if (optind + 1 != argc) {
        Refuse("one command is needed");
    }
    for (const Command& command : kCommands) {
        if (std::strcmp(command.name, argv[optind]) == 0) {
            return command;
        }
    }
    Refuse(std::string("unknown command '") + argv[optind] + "'");
}

}  // namespace

int main(int argc, char** argv) {
    // PINs are in our memory: it must not end in a core file, nor be read by other programs.
    prctl(PR_SET_DUMPABLE, 0);
    const p11::Options options = ParseOptions(argc, argv);
    const Command& command = FindCommand(argc, argv);
    if (command.run == p11::GenerateKeyPair && options.label.empty()) {
        Refuse("keygen needs a --label");
    }
    try {
        const p11::Module module(options.module);
        const zeldlg::Session dialogs = zeldlg::Session::load();
        if (command.run != p11::List) {
            p11::RequireDisplay();
        }
        command.run({options, module, dialogs});
        return kDone;
    } catch (const p11::Cancelled&) {
        std::cerr << "cancelled\n";
        return kCancelled;
    } catch (const p11::TokenError& error) {
        std::cerr << "zeldlg-p11: " << p11::Describe(error.Code()) << '\n';
        return kFailed;
    } catch (const std::exception& error) {
        std::cerr << "zeldlg-p11: " << error.what() << '\n';
        return kFailed;
    }
}
