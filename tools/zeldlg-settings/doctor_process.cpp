// The doctor on which process shows the windows.
#include <cstdlib>
#include <optional>
#include <string>

#include "doctor.h"
#include "registry/process_wish.h"
#include "registry/registry_encoding.h"
#include "registry/settings.h"

namespace admin {

using namespace zeldlg::registry;

namespace {

const char* WordsFor(ProcessWish wish) {
    switch (wish) {
        case ProcessWish::Own:
            return "the host's process, or none";
        case ProcessWish::Helper:
            return "always a helper process";
        case ProcessWish::Auto:
            break;
    }
    return "the host's process; a helper where that cannot";
}

std::optional<std::string> WordInSettings(const FoundSettings& settings) {
    if (settings.text == nullptr) {
        return std::nullopt;
    }
    const std::string path = "HKEY_LOCAL_MACHINE\\" + ToNarrow(kSettingsKey);
    KeyNode* const key = settings.text->Find(FoldedName(path));
    const auto value =
        key != nullptr ? settings.text->Value(*key, ToNarrow(kProcessValue)) : std::nullopt;
    return value && value->type == kTypeString ? std::optional(value->bytes) : std::nullopt;
}

// What the word says, or nothing when it is not to be used.
std::optional<ProcessWish> Judge(Report& report, const std::string& name, const std::string& word) {
    const auto wish = ProcessWishOf(word);
    if (!wish) {
        report.Problem(name + " has an unknown value and counts as missing.",
                       "It may be auto, own or helper.");
    }
    return wish;
}

}  // namespace

void ReportProcess(Report& report, const FoundSettings& settings) {
    report.Section("Process");
    const std::string setting = ToNarrow(kProcessValue);
    const char* const variable = getenv(kProcessVariable);
    report.Line(kProcessVariable, Variable(kProcessVariable));
    if (variable != nullptr) {
        if (const auto wish = Judge(report, kProcessVariable, variable); wish) {
            report.Line("windows are shown by", WordsFor(*wish));
            report.Line("because", std::string(kProcessVariable) + " says so");
            return;
        }
    }
    const auto word = WordInSettings(settings);
    const auto wish = word ? Judge(report, setting, *word) : std::nullopt;
    report.Line("windows are shown by", WordsFor(wish.value_or(ProcessWish::Auto)));
    report.Line("because", wish ? "the setting " + setting + " says so" : "that is the default");
}

}  // namespace admin
