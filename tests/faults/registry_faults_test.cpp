// The configuration store with every system call and every allocation on its way failing once, one
// at a time: a defined result, nothing left open or allocated, and of the user's file nothing lost
// but what the order of writing (over the old text, from its beginning) allows.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fault_injection.h"
#include "registry/registry_store.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using faults::Fault;
using faults::FaultScope;
using faults::FaultyCall;
using test::Key;
using test::ReadFile;
using test::SetNumber;
using test::SmallRegistry;
using test::WriteFile;

const std::string kOneStamp = "\"RegistryHash\"=\"one\"\r\n";
const std::string kTwoStamp = "\"RegistryHash\"=\"two\"\r\n";

/// Values enough for a text that is written in several pieces.
std::string ManyValues() {
    std::string lines;
    for (int i = 0; i < 2000; ++i) {
        lines += "\"value" + std::to_string(i) + "\"=dword:0000000a\r\n";
    }
    return lines;
}

/// The results of a scenario's operations. Collecting them allocates nothing, as everything that
/// runs under a fault.
class Outcome {
public:
    RegistryError Add(RegistryError error) {
        m_errors.at(m_count++) = error;
        return error;
    }

    bool AllSucceeded() const {
        return std::all_of(m_errors.begin(), m_errors.begin() + m_count,
                           [](RegistryError error) { return error == kSuccess; });
    }

    bool AllDefined() const {
        return std::all_of(m_errors.begin(), m_errors.begin() + m_count, [](RegistryError error) {
            return error == kSuccess || error == kNotFound || error == kNoMemory ||
                   error == kFileError;
        });
    }

    /// 0: could not be read.
    uint32_t number = 0;

private:
    std::array<RegistryError, 12> m_errors{};
    unsigned m_count = 0;
};

/// Every value of the registry, by key and name: what a user has to lose.
std::map<std::string, std::string> Values(const std::string& content) {
    std::map<std::string, std::string> values;
    std::string key;
    for (size_t at = 0; at < content.size();) {
        const size_t end = content.find("\r\n", at);
        const std::string line = content.substr(at, end - at);
        at = end == std::string::npos ? content.size() : end + 2;
        if (line.starts_with('[')) {
            key = line;
            values[key];
        } else if (line.starts_with('"')) {
            values[key + line.substr(0, line.find('='))] = line;
        }
    }
    return values;
}

class Faults : public test::RegistryTest {
protected:
    struct Scenario {
        std::function<void()> files;
        std::function<void(Outcome& outcome)> run;
        /// Looks at outcome and files after a fault.
        std::function<void(const Fault& fault, const Outcome& outcome)> check;
    };

    /// One run with a fault. @return whether the fault came up
    bool RunOnce(const Scenario& scenario, const Fault& fault) {
        SCOPED_TRACE(testing::PrintToString(fault));
        for (const char* directory :
             {"home", "shipped", "tmptmpregistry-tester", "tmptmpregistry-nobody"}) {
            std::filesystem::remove_all(scratch / directory);
        }
        std::filesystem::create_directories(scratch / "home");
        scenario.files();
        Outcome outcome;
        const size_t filesBefore = faults::OpenFiles();
        const size_t before = faults::LiveAllocations();
        bool fired = false;
        {
            const FaultScope scope(fault);
            scenario.run(outcome);
            fired = scope.Fired();
        }
        RegFlush();  // changes that could not be written for lack of memory
        EXPECT_EQ(faults::LiveAllocations(), before);
        EXPECT_EQ(faults::OpenFiles(), filesBefore);
        EXPECT_TRUE(outcome.AllDefined());
        EXPECT_TRUE(outcome.AllSucceeded() || (fired && !fault.IsHarmless()));
        scenario.check(fault, outcome);
        return fired && !HasFailure();
    }

    /// Every fault at every occurrence.
    void RunAll(const Scenario& scenario, const std::vector<FaultyCall>& expected) {
        static const std::vector<std::pair<FaultyCall, std::vector<int>>> kFaults = {
            {FaultyCall::kOpen, {EACCES, EMFILE, EIO, EINTR}},
            {FaultyCall::kFstat, {EIO}},
            {FaultyCall::kStat, {EACCES, EIO}},
            {FaultyCall::kRead, {EIO, EINTR, faults::kShort}},
            {FaultyCall::kWrite, {ENOSPC, EIO, EINTR, faults::kShort}},
            {FaultyCall::kFsync, {EIO, EINTR}},
            {FaultyCall::kSendfile, {EINVAL, ENOSPC, EINTR, faults::kShort}},
            {FaultyCall::kMkdir, {EACCES, ENOSPC}},
            {FaultyCall::kUnlink, {EACCES}},
            {FaultyCall::kClose, {EIO}},
            {FaultyCall::kNew, {ENOMEM}},
        };
        Outcome ignored;
        scenario.files();
        scenario.run(ignored);  // what is made once in a process is made
        for (const auto& [call, errors] : kFaults) {
            for (const int error : errors) {
                const unsigned occurrences = faults::ForEachOccurrence(
                    call, error, [&](const Fault& fault) { return RunOnce(scenario, fault); });
                if (HasFailure()) {
                    return;
                }
                EXPECT_EQ(occurrences > 0,
                          std::find(expected.begin(), expected.end(), call) != expected.end())
                    << testing::PrintToString(Fault{call, 1, error});
            }
        }
    }

    static void Read(Outcome& outcome) {
        HKEY key = 0;
        if (outcome.Add(RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Key", kAccessDefault, &key)) ==
            kSuccess) {
            uint32_t size = sizeof outcome.number;
            outcome.Add(RegQueryValueEx(key, L"Number", nullptr, &outcome.number, &size));
            outcome.Add(RegCloseKey(key));
        }
    }

    /// Sets the number to 7, makes and deletes keys and values, closes.
    static void Change(Outcome& outcome) {
        HKEY key = 0;
        if (outcome.Add(RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Key", kAccessDefault, &key)) !=
            kSuccess) {
            return;
        }
        outcome.Add(SetNumber(key, L"Number", 7));
        HKEY made = 0;
        if (outcome.Add(RegCreateKeyEx(key, L"New one\\Below it", 0, &made, nullptr)) == kSuccess) {
            static constexpr wchar_t kText[] = L"a rather long text";
            outcome.Add(
                RegSetValueEx(made, L"A rather long name", kTypeString, kText, sizeof kText));
            outcome.Add(RegCloseKey(made));
        }
        outcome.Add(RegDeleteTree(key, L"Doomed", 0));
        outcome.Add(RegDeleteValue(key, L"doomed \xE4"));
        outcome.Add(RegCloseKey(key));
    }

    static uint32_t NumberNow() {
        Outcome outcome;
        Read(outcome);
        return outcome.number;
    }

    static std::optional<std::string> Content(const std::string& path) {
        return std::filesystem::exists(path) ? std::optional(ReadFile(path)) : std::nullopt;
    }

    /// Whether `now` is what stands there while `fresh` is being written over `old`: the beginning
    /// of the one, then the rest of the other.
    static bool IsPartOf(const std::string& now, const std::string& fresh, const std::string& old) {
        const auto same = std::mismatch(now.begin(), now.end(), fresh.begin(), fresh.end());
        for (auto k = static_cast<size_t>(same.first - now.begin()) + 1; k-- > 0;) {
            if (std::string_view(now).substr(k) ==
                std::string_view(old).substr(std::min(k, old.size()))) {
                return true;
            }
        }
        return false;
    }
};

TEST_F(Faults, WhileReadingChangeNoFile) {
    const std::string user = SmallRegistry("00000006", kOneStamp);
    const std::string shipped = SmallRegistry("00000005", kOneStamp);
    RunAll({[&] {
                WriteFile(UserFile(), user);
                WriteFile(ShippedFile(), shipped);
            },
            Read,
            [&](const Fault&, const Outcome& outcome) {
                EXPECT_EQ(ReadFile(UserFile()), user);
                EXPECT_EQ(ReadFile(ShippedFile()), shipped);
                EXPECT_TRUE(outcome.number == 6 || outcome.number == 5 || !outcome.AllSucceeded());
                EXPECT_EQ(NumberNow(), 6U);
            }},
           {FaultyCall::kOpen, FaultyCall::kFstat, FaultyCall::kStat, FaultyCall::kRead,
            FaultyCall::kClose, FaultyCall::kNew});
}

TEST_F(Faults, WhileTheUsersFileIsReplacedLoseNoMoreThanTheCopyOverwrites) {
    const std::string user = SmallRegistry("00000006", kOneStamp + ManyValues());
    const std::string shipped = SmallRegistry("00000005", kTwoStamp);
    RunAll({[&] {
                WriteFile(UserFile(), user);
                WriteFile(ShippedFile(), shipped);
            },
            Read,
            [&](const Fault&, const Outcome&) {
                EXPECT_TRUE(IsPartOf(ReadFile(UserFile()), shipped, user));
                EXPECT_EQ(ReadFile(ShippedFile()), shipped);
                EXPECT_EQ(NumberNow(), 5U);
                EXPECT_EQ(ReadFile(UserFile()), shipped + user.substr(shipped.size()));
            }},
           {FaultyCall::kOpen, FaultyCall::kFstat, FaultyCall::kStat, FaultyCall::kRead,
            FaultyCall::kSendfile, FaultyCall::kClose, FaultyCall::kNew});
}

TEST_F(Faults, WhileTheFirstCopyIsMadeLeaveAllOfItOrNothing) {
    const std::string shipped = SmallRegistry("00000005", kTwoStamp);
    RunAll({[&] { WriteFile(ShippedFile(), shipped); }, Read,
            [&](const Fault& fault, const Outcome& outcome) {
                EXPECT_TRUE(Content(UserFile()).value_or(shipped) == shipped);
                if (fault.call != FaultyCall::kNew && fault.call != FaultyCall::kRead) {
                    EXPECT_TRUE(outcome.AllSucceeded());
                    EXPECT_EQ(outcome.number, 5U);
                }
                EXPECT_EQ(NumberNow(), 5U);
                EXPECT_EQ(ReadFile(UserFile()), shipped);
            }},
           {FaultyCall::kOpen, FaultyCall::kFstat, FaultyCall::kStat, FaultyCall::kRead,
            FaultyCall::kSendfile, FaultyCall::kMkdir, FaultyCall::kClose, FaultyCall::kNew});
}

TEST_F(Faults, WhileAFileIsMadeLeaveOneThatCanBeUsed) {
    const auto make = [](Outcome& outcome, uint32_t number) {
        HKEY key = 0;
        if (outcome.Add(RegCreateKeyEx(HKEY_LOCAL_MACHINE, L"Key", 0, &key, nullptr)) == kSuccess) {
            outcome.Add(SetNumber(key, L"Number", number));
            outcome.Add(RegCloseKey(key));
        }
    };
    RunAll(
        {[] {}, [&](Outcome& outcome) { make(outcome, 7); },
         [&](const Fault&, const Outcome& outcome) {
             if (outcome.AllSucceeded()) {
                 const std::string seven = SmallRegistry("00000007");
                 EXPECT_TRUE(Content(UserFile()) == seven || Content(UserTemporaryFile()) == seven);
             }
             Outcome again;
             make(again, 8);
             EXPECT_TRUE(again.AllSucceeded());
             EXPECT_EQ(NumberNow(), 8U);
         }},
        {FaultyCall::kOpen, FaultyCall::kFstat, FaultyCall::kStat, FaultyCall::kRead,
         FaultyCall::kWrite, FaultyCall::kFsync, FaultyCall::kMkdir, FaultyCall::kClose,
         FaultyCall::kNew});
}

TEST_F(Faults, WhileChangesAreWrittenLeaveTheNewBeginningAndTheOldRest) {
    const std::string user =
        SmallRegistry("00000006", kOneStamp + "\"Doomed \xE4\"=\"x\"\r\n" + ManyValues()) +
        "[HKEY_LOCAL_MACHINE\\Key\\Doomed\\Sub key]\r\n\r\n"
        "[HKEY_LOCAL_MACHINE\\Key\\Kept\\Sub key]\r\n\"x\"=\"y\"\r\n\r\n";
    const auto files = [&] {
        WriteFile(UserFile(), user);
        WriteFile(ShippedFile(), SmallRegistry("00000005", kOneStamp));
    };
    files();
    Outcome outcome;
    Change(outcome);
    ASSERT_TRUE(outcome.AllSucceeded());
    const std::string fresh = ReadFile(UserFile());
    ASSERT_GT(fresh.size(), user.size());  // or its tail would be the old one's
    std::map<std::string, std::string> kept = Values(user);
    std::erase_if(kept, [](const auto& value) {
        return value.first.find("oomed") != std::string::npos ||
               value.first.ends_with("\"Number\"");
    });
    RunAll(
        {files, Change,
         [&](const Fault& fault, const Outcome& faulted) {
             const std::string now = ReadFile(UserFile());
             if (fault.call == FaultyCall::kNew) {
                 // Operations that failed are missing; what nobody asked to change is there.
                 const std::map<std::string, std::string> values = Values(now);
                 EXPECT_TRUE(std::includes(values.begin(), values.end(), kept.begin(), kept.end()));
                 return;
             }
             EXPECT_TRUE(IsPartOf(now, fresh, user));
             if (faulted.AllSucceeded()) {
                 // Where the user's file cannot be written there is another place.
                 EXPECT_TRUE(now == fresh || Content(UserTemporaryFile()) == fresh);
             }
         }},
        {FaultyCall::kOpen, FaultyCall::kFstat, FaultyCall::kStat, FaultyCall::kRead,
         FaultyCall::kWrite, FaultyCall::kFsync, FaultyCall::kClose, FaultyCall::kNew});
}

}  // namespace
}  // namespace zeldlg::registry
