/// Calls of the exports that take no PIN: prompts, choices, windows and translations.
#pragma once

#include <zeldlg/zeldlg.h>

#include <bit>
#include <map>
#include <mutex>

#include "call_export.h"
#include "guarded_buffer.h"

namespace testhost {

// ---------------------------------------------------------------- no or simple arguments
template <typename Result>
struct NoArguments {
    explicit NoArguments(Arguments&) {}
    void Call(void* function, JsonLine& line) const {
        CallExport(line, As<Result (*)()>(function));
    }
};

template <typename Number>
struct OneNumber {
    explicit OneNumber(Arguments& arguments) : number(arguments.TakeNumber<Number>("number", 0)) {}
    void Call(void* function, JsonLine& line) const {
        CallExport(line, As<uint32_t (*)(Number)>(function), number);
    }

    Number number;
};

struct Parameter {
    explicit Parameter(Arguments& arguments)
        : parameter(arguments.TakeNumber<uint64_t>("parameter", 0)),
          value(arguments.TakeNumber<uint64_t>("value", 0)) {}
    void Call(void* function, JsonLine& line) const {
        CallExport(line, As<decltype(&DLG_SetParameter)>(function), parameter, value);
    }

    uint64_t parameter;
    uint64_t value;
};

struct Label {
    explicit Label(Arguments& arguments) : label(arguments.TakeText("label", "Token")) {}
    void Call(void* function, JsonLine& line) const {
        CallExport(line, As<decltype(&DLG_ShowLockedDialog)>(function), label.Pointer());
    }

    Text label;
};

struct Shown {
    explicit Shown(Arguments& arguments) : shown(arguments, "shown") {}
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<decltype(&DLG_ShowSupertokenAuthDlg)>(function), shown.Pointer());
        shown.Report(line);
    }

    Slot<uint64_t> shown;
};

struct Certificate {
    explicit Certificate(Arguments& arguments)
        : application(arguments.TakeText("application", "Application")),
          label(arguments.TakeText("label", "Token")),
          issuedTo(arguments.TakeText("issuedTo", "Subject")),
          issuedBy(arguments.TakeText("issuedBy", "Issuer")),
          validFrom(arguments.TakeText("validFrom", "2024-01-01")),
          validTo(arguments.TakeText("validTo", "2034-01-01")) {}
    void Call(void* function, JsonLine& line) const {
        CallExport(line, As<decltype(&DLG_ShowConfirmDeleteCertificate)>(function),
                   application.Pointer(), label.Pointer(), issuedTo.Pointer(), issuedBy.Pointer(),
                   validFrom.Pointer(), validTo.Pointer());
    }

    Text application, label, issuedTo, issuedBy, validFrom, validTo;
};

// ---------------------------------------------------------------- selection
struct UnblockMethod {
    explicit UnblockMethod(Arguments& arguments)
        : pukOffered(arguments.TakeNumber<int32_t>("pukOffered", 1)),
          nullAlgorithms(arguments.TakeNull("algorithms")),
          method(arguments, "method"),
          algorithm(arguments, "algorithm") {
        for (const std::string& code : arguments.TakeAll("code")) {
            codes.push_back(static_cast<uint32_t>(ParseNumber(code, false, 0, UINT32_MAX)));
        }
        count = arguments.TakeNumber<uint32_t>("count", static_cast<uint32_t>(codes.size()));
    }
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<decltype(&DLG_ShowSelectUnblockMethod)>(function), pukOffered,
                   nullAlgorithms ? nullptr : codes.data(), count, method.Pointer(),
                   algorithm.Pointer());
        method.Report(line);
        algorithm.Report(line);
    }

    int32_t pukOffered;
    bool nullAlgorithms;
    std::vector<uint32_t> codes;
    uint32_t count = 0;
    Slot<uint32_t> method;
    Slot<uint32_t> algorithm;
};

/// Every `entry=NAME,DETAIL,IDENTIFIER` is one row.
struct TokenSelection {
    explicit TokenSelection(Arguments& arguments)
        : nullList(arguments.TakeNull("record")),
          nullEntries(arguments.TakeNull("entries")),
          identifier(arguments, "identifier") {
        const std::vector<std::string> rows = arguments.TakeAll("entry");
        texts.reserve(2 * rows.size());
        for (const std::string& row : rows) {
            const std::vector<std::string> parts = Split(row, ',');
            if (parts.size() != 3) {
                throw ProtocolError("not NAME,DETAIL,IDENTIFIER: " + row);
            }
            const char* name = texts.emplace_back(DecodeText(parts[0])).Pointer();
            const char* detail = texts.emplace_back(DecodeText(parts[1])).Pointer();
            entries.push_back({name, detail, ParseNumber(parts[2], false, 0, UINT64_MAX)});
        }
        const auto count = static_cast<uint32_t>(entries.size());
        list = {nullEntries ? nullptr : entries.data(),
                arguments.TakeNumber<uint32_t>("count", count)};
    }
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<decltype(&DLG_ShowTokenSelectionDialog)>(function),
                   nullList ? nullptr : &list, identifier.Pointer());
        identifier.Report(line);
    }

    bool nullList;
    bool nullEntries;
    Slot<uint64_t> identifier;
    std::vector<Text> texts;
    std::vector<TokenChoiceEntry> entries;
    TokenChoiceList list{};
};

struct DigitalId {
    explicit DigitalId(Arguments& arguments)
        : name(arguments.TakeText("name", "Digital ID")),
          validFrom(arguments.TakeText("validFrom", "2024-01-01")),
          validTo(arguments.TakeText("validTo", "2034-01-01")),
          directory(arguments.TakeText("directory", "")),
          texts{name.Pointer(), validFrom.Pointer(), validTo.Pointer(),
                std::bit_cast<void*>(arguments.TakeNumber<uintptr_t>("value", 0x1234))},
          choice{arguments.TakeNull("texts") ? nullptr : &texts,
                 arguments.TakeNumber<uint32_t>("count", 1),
                 arguments.TakeNumber<uint32_t>("defaultIndex", 0),
                 directory.Pointer(),
                 arguments.TakeNumber<uint32_t>("alwaysUse", 0),
                 arguments.TakeNumber<uint32_t>("autoSelect", 0)},
          nullChoice(arguments.TakeNull("record")),
          chosen(arguments, "chosen") {}
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<decltype(&DLG_ShowDigitalIDSelection)>(function),
                   nullChoice ? nullptr : &choice, chosen.Pointer());
        chosen.Report(line);
    }

    Text name, validFrom, validTo, directory;
    DigitalIdTexts texts;
    DigitalIdChoice choice;
    bool nullChoice;
    Slot<DigitalIdResult> chosen;
};

// ---------------------------------------------------------------- PIN pad
/// The handles of the pads by the names that the commands give them.
class Pads {
public:
    void Keep(const std::string& name, void* handle) {
        const std::lock_guard lock(m_mutex);
        m_handles[name] = handle;
    }
    void* Find(const std::string& name) {
        const std::lock_guard lock(m_mutex);
        const auto entry = m_handles.find(name);
        if (entry == m_handles.end()) {
            throw ProtocolError("no such pad: " + name);
        }
        return entry->second;
    }

private:
    std::mutex m_mutex;
    std::map<std::string, void*> m_handles;
};

// Never destroyed: a worker may still be in a call while the process exits.
inline Pads& AllPads() {
    static auto* const pads = new Pads;
    return *pads;
}

struct PadShow {
    explicit PadShow(Arguments& arguments)
        : name(arguments.TakeText("pad", "pad").value.value_or("null")),
          allowAbort(arguments.TakeNumber<uint8_t>("allowAbort", 0)),
          handle(arguments, "handle") {}
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<decltype(&DLG_PinPadShowVerificationDialog)>(function),
                   handle.Pointer(), allowAbort);
        AllPads().Keep(name, handle.Value());
        handle.Report(line);
    }

    std::string name;
    uint8_t allowAbort;
    Slot<void*> handle;
};

/// A call on the pad with the name `pad`, or on any number given as `handle`.
template <typename Result>
struct PadCall {
    explicit PadCall(Arguments& arguments) {
        const std::string name = arguments.TakeText("pad", "pad").value.value_or("null");
        const std::vector<std::string> number = arguments.TakeAll("handle");
        handle = number.empty()
                     ? AllPads().Find(name)
                     : std::bit_cast<void*>(ParseNumber(number.front(), false, 0, UINTPTR_MAX));
    }
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<Result (*)(void*)>(function), handle);
    }

    void* handle = nullptr;
};

// ---------------------------------------------------------------- translation
template <typename Unit>
struct Translation {
    explicit Translation(Arguments& arguments)
        : text(arguments.TakeText("source", "")), buffer(arguments, "buffer") {
        nullSize = arguments.TakeNull("size");
        size = buffer.Capacity();
        if (text.value) {
            source.resize(text.value->size() / sizeof(Unit));
            memcpy(source.data(), text.value->data(), source.size() * sizeof(Unit));
        }
    }
    void Call(void* function, JsonLine& line) {
        CallExport(line, As<uint32_t (*)(const Unit*, Unit*, uint32_t*)>(function),
                   text.value ? source.c_str() : nullptr, buffer.Pointer(),
                   nullSize ? nullptr : &size);
        line.Unsigned("size", size);
        buffer.Report(line);
    }

    Text text;
    std::basic_string<Unit> source;
    GuardedBuffer<Unit> buffer;
    bool nullSize = false;
    uint32_t size = 0;
};

struct Locale {
    explicit Locale(Arguments& arguments)
        : buffer(arguments, "buffer"), nullSize(arguments.TakeNull("size")) {}
    void Call(void* function, JsonLine& line) {
        uint32_t size = buffer.Capacity();
        CallExport(line, As<decltype(&DLG_GetLocale)>(function), buffer.Pointer(),
                   nullSize ? nullptr : &size);
        line.Unsigned("size", size);
        buffer.Report(line);
    }

    GuardedBuffer<wchar_t> buffer;
    bool nullSize;
};

}  // namespace testhost
