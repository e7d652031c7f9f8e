/**
 * @file zeldlg.hpp
 * @brief The dialogs of libzeldlglib.so.3 for hosts in C++17, on top of zeldlg.h.
 *
 * Header only. A host that has a zeldlg::Session asks with its functions:
 *
 * @code
 * const zeldlg::Session dialogs;
 * zeldlg::PinRequest request;
 * request.label = "Identity card";
 * zeldlg::Secret pin;
 * if (dialogs.ask_pin(request, pin) == zeldlg::Result::Ok) {
 *     // pin.data(), pin.size(): overwritten when `pin` goes
 * }
 * @endcode
 *
 * What a user does, and a display that is not there, is a zeldlg::Result. What a program does wrong
 * (bounds that nothing fits, a policy that nothing satisfies) throws std::invalid_argument before
 * anything is shown. All texts are UTF-8 and end at their first zero byte. All lengths are bytes.
 * Every function may be called from any thread and waits for the user; see zeldlg.h.
 *
 * The Python package `zeldlg` has the same names.
 */
#ifndef ZELDLG_ZELDLG_HPP
#define ZELDLG_ZELDLG_HPP

#include <dlfcn.h>
#include <string.h>  // explicit_bzero
#include <zeldlg/zeldlg.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/** What hosts in C++ use. */
namespace zeldlg {

/** What came of a dialog. Outputs are written on Result::Ok only. */
enum class Result : uint32_t {
    Ok = ZELDLG_OK,                    /**< The user confirmed. */
    Cancelled = ZELDLG_CANCELLED,      /**< The user cancelled or closed the dialog. */
    Failed = ZELDLG_FAILED,            /**< It could not be shown: no display, as a rule. */
    TooLong = ZELDLG_BUFFER_TOO_SMALL, /**< Session::ask_pin only: what was typed has more bytes
                                            than the token takes. It is wrong, and costs no try as
                                            long as the token does not see it. */
};

/** Bytes of a PIN, a PUK or a response, without a terminating zero. They are overwritten before
 *  their memory is released; so they can be moved, but not copied. */
class Secret {
public:
    Secret() = default;
    /** Zeroes, to be written to. @param size Their number. */
    explicit Secret(size_t size) : m_bytes(new uint8_t[size]()), m_capacity(size), m_size(size) {}
    ~Secret() { wipe(); }
    /** @param other Is empty afterwards. */
    Secret(Secret&& other) noexcept { swap(other); }
    /** @param other Is empty afterwards. @return This. */
    Secret& operator=(Secret&& other) noexcept {
        Secret(std::move(other)).swap(*this);
        return *this;
    }
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;

    /** @return The bytes; null when there is room for none. */
    uint8_t* data() noexcept { return m_bytes.get(); }
    /** @return The bytes; null when there is room for none. */
    const uint8_t* data() const noexcept { return m_bytes.get(); }
    /** @return Their number. */
    size_t size() const noexcept { return m_size; }
    /** @return Whether there are none. */
    bool empty() const noexcept { return m_size == 0; }

    /** Keeps the first bytes, and overwrites the others. @param size How many are kept. */
    void truncate(size_t size) noexcept {
        if (size < m_size) {
            explicit_bzero(m_bytes.get() + size, m_size - size);
            m_size = size;
        }
    }

    /** Overwrites all and is empty. */
    void wipe() noexcept {
        if (m_bytes != nullptr) {
            explicit_bzero(m_bytes.get(), m_capacity);
        }
        m_bytes.reset();
        m_capacity = m_size = 0;
    }

private:
    void swap(Secret& other) noexcept {
        std::swap(m_bytes, other.m_bytes);
        std::swap(m_capacity, other.m_capacity);
        std::swap(m_size, other.m_size);
    }

    std::unique_ptr<uint8_t[]> m_bytes;
    size_t m_capacity = 0;
    size_t m_size = 0;
};

/** How long a value may be, in UTF-8 bytes: at least one, at most 65,536. The dialogs that ask for
 *  a PIN take Bounds::min characters, which are as many bytes at least. */
struct Bounds {
    uint32_t min = 4; /**< Fewest bytes. */
    uint32_t max = 8; /**< Most bytes. */
};

/** Whether a wrong value was entered. */
enum class Failure {
    None,    /**< None is on record. */
    Earlier, /**< Before this dialog, by somebody else maybe. */
    Now,     /**< The answer to the dialog before this one was wrong. */
};

/** What is known of the attempts; the dialogs warn of it in red. */
struct Attempts {
    Failure failure = Failure::None; /**< Whether there was a wrong one. */
    bool final_try = false;          /**< The next wrong value locks; also when #left is 1. */
    uint32_t left = 0;               /**< Tries that are left; 0 = not known. */
    uint32_t of = 0;                 /**< The full counter of tries; 0 = not known. */
};

/** What Session::ask_pin asks for. */
struct PinRequest {
    std::string label;  /**< Label of the token. */
    Bounds pin;         /**< Length of the PIN. */
    Attempts attempts;  /**< With both numbers known the dialog tells how many tries are left. */
    bool legal = false; /**< The PIN authorises a legally binding signature. */
};

/** What Session::unblock asks for. */
struct UnblockRequest {
    std::string label; /**< Label of the token. */
    Bounds pin;        /**< Length of the PUK and of the new PIN. */
    Attempts attempts; /**< Those with the PUK; as for a change, without a number of tries. */
};

/**
 * The rules that a new PIN has to keep, beside its length. A new policy has none.
 *
 * What is built here can be read by the library and be kept by some PIN: what could not throws
 * std::invalid_argument.
 */
class Policy {
public:
    /** Classes of characters, to be combined. A byte of 128 and above is an other character. */
    enum Class : uint8_t {
        Lower = 1,       /**< a to z */
        Upper = 2,       /**< A to Z */
        Digit = 4,       /**< 0 to 9 */
        Punctuation = 8, /**< what else there is on a keyboard, but the dollar sign */
        Other = 16,      /**< the rest */
        Any = 31,        /**< all of them */
    };

    /** Refuse PINs that are one run, such as 123456 or 975310. @param step Largest step of a run.
     *  @return This. */
    Policy& no_run(uint8_t step = 1) { return distance(step, true); }

    /** Refuse PINs in which any two neighbours are near each other: 11, or 12.
     *  @param step Distance that is still refused. @return This. */
    Policy& no_near_neighbours(uint8_t step = 0) { return distance(step, false); }

    /** Ask for several classes of characters.
     *  @param count How many of them. @param each Characters of each class that is used.
     *  @param of Those that count, of #Class. @return This. */
    Policy& classes(uint8_t count, uint8_t each = 1, uint8_t of = Any) {
        unsigned offered = 0;
        for (unsigned bit = Lower; bit <= Other; bit <<= 1U) {
            offered += (of & bit) != 0 ? 1 : 0;
        }
        require(count <= offered && of <= Any, "a policy asks for more classes than there are");
        enable(kClasses);
        m_wire.p2NbClass = count;
        m_wire.p2PopMin = each;
        m_wire.p2ClassMask = of;
        return *this;
    }

    /** Ask for a length. @param bytes Fewest bytes. @return This. */
    Policy& min_length(uint8_t bytes) {
        enable(kClasses);
        m_wire.p2MinLen = bytes;
        return *this;
    }

    /** Say that the token refuses PINs that it has had. The token has to check that: this is told
     *  to the user. @param size How many it remembers. @return This. */
    Policy& history(uint8_t size) {
        enable(kHistory);
        m_wire.p3HistorySize = size;
        m_wire.p3StrictOnly = 1;
        return *this;
    }

    /** Allow some characters only. @param characters ASCII, not empty. @return This. */
    Policy& only(std::string_view characters) { return restrict_to(characters, true); }

    /** Refuse some characters. @param characters ASCII, not empty. @return This. */
    Policy& without(std::string_view characters) { return restrict_to(characters, false); }

private:
    friend class Session;
    enum : unsigned { kDistance = 1, kClasses = 2, kHistory = 4, kCharacters = 8 };

    static void require(bool holds, const char* what) {
        if (!holds) {
            throw std::invalid_argument(what);
        }
    }

    void enable(unsigned rule) {
        m_wire.enabledMask = static_cast<uint8_t>(m_wire.enabledMask | rule);
    }

    Policy& distance(uint8_t step, bool whole) {
        enable(kDistance);
        m_wire.p1Threshold = step;
        m_wire.p1FullPinCheck = whole ? 1 : 0;
        return *this;
    }

    Policy& restrict_to(std::string_view characters, bool allowed) {
        // An empty list would be no restriction at all.
        require(!characters.empty(), "a policy restricts characters and names none");
        enable(kCharacters);
        m_characters = characters;
        m_wire.p4IsWhiteList = allowed ? 1 : 0;
        return *this;
    }

    PinPolicyWire m_wire{};
    std::string m_characters;
};

/** What Session::change_pin asks for. */
struct ChangeRequest {
    std::string label;             /**< Label of the token. */
    Bounds new_pin;                /**< Length of the new value. */
    std::optional<Bounds> old_pin; /**< Length of the old value; none = that of the new one. */
    Attempts attempts;             /**< Those with the old value. Failure::Earlier is shown only
                                        when the next try is the last. */
    std::optional<Policy> policy;  /**< What the new value has to keep; none = its length alone. */
    bool puk = false;              /**< It is the PUK that is changed. */
};

/** One line of Session::select. */
struct Choice {
    std::string name;   /**< What is chosen. */
    std::string detail; /**< What tells it apart; stands behind the name, in brackets. */
};

/** What Session::show_delete_certificate shows. Dates are shown as they are. */
struct Certificate {
    std::string application; /**< Who wants to delete it. */
    std::string label;       /**< Label of its token. */
    std::string issued_to;   /**< Its subject. */
    std::string issued_by;   /**< Its issuer. */
    std::string valid_from;  /**< First date. */
    std::string valid_to;    /**< Last date. */
};

/**
 * The library, for as long as a host wants to use it.
 *
 * Making one starts nothing: the user interface starts at the first dialog, and ends with the
 * program's last session. A failed start (Result::Failed) can be tried again after that.
 */
class Session {
public:
    /** For hosts that are linked with the library.
     *  @param functions Its functions, or others in their place.
     *  @throws std::runtime_error The library's table of functions is of another version. */
    explicit Session(const DLG_FunctionList& functions = *DLG_GetFunctionList())
        : m_functions(functions) {
        if (functions.version != ZELDLG_FUNCTION_LIST_VERSION) {
            throw std::runtime_error("libzeldlglib has another version of its functions");
        }
        ++s_count;
    }

    /** For hosts that are not: finds the library at run time. It stays loaded.
     *  @param path Its file, or a name that the loader looks up.
     *  @return A session. @throws std::runtime_error It cannot be loaded; in the loader's words. */
    static Session load(const char* path = "libzeldlglib.so.3") {
        void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        void* const symbol = library != nullptr ? dlsym(library, "DLG_GetFunctionList") : nullptr;
        if (symbol == nullptr) {
            throw std::runtime_error(dlerror());
        }
        return Session(*reinterpret_cast<decltype(&DLG_GetFunctionList)>(symbol)());
    }

    ~Session() {
        if (--s_count == 0) {
            m_functions.Finalize();
        }
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /** @return The library's own functions, for what this class has not. */
    const DLG_FunctionList& functions() const { return m_functions; }

    /** Ask for a PIN: for a login, or for a legally binding signature.
     *  @param request What is asked. @param pin Receives it. @return Any Result. */
    [[nodiscard]] Result ask_pin(const PinRequest& request, Secret& pin) const {
        check(request.pin);
        check(request.attempts);
        // Bounds count characters there, of up to four bytes each. A buffer of just the bytes that
        // the token takes would make a longer PIN look like one that was cancelled.
        Secret typed(size_t{4} * request.pin.max);
        PinBuffer buffer{typed.data(), static_cast<uint32_t>(typed.size())};
        const Result result = resulting(request.attempts.of != 0 ? ask_with_counter(request, buffer)
                                                                 : ask(request, buffer));
        if (result != Result::Ok) {
            return result;
        }
        if (buffer.pinLength > request.pin.max) {
            return Result::TooLong;
        }
        typed.truncate(buffer.pinLength);
        pin = std::move(typed);
        return Result::Ok;
    }

    /** Ask for the old PIN (or PUK) and, twice, for a new one. The title says "Change transport
     *  PIN". @param request What is asked. @param old_pin Receives the one.
     *  @param new_pin Receives the other. @return Ok, Cancelled or Failed. */
    [[nodiscard]] Result change_pin(const ChangeRequest& request, Secret& old_pin,
                                    Secret& new_pin) const {
        const Bounds old_bounds = request.old_pin.value_or(request.new_pin);
        check(request.new_pin);
        check(old_bounds);
        check(request.attempts);
        if (!request.policy && !request.old_pin && request.attempts.left == 0) {
            PinChangeRequest plain{};
            fill(plain, request.label, request.new_pin, request.attempts);
            plain.changePuk = request.puk ? 1 : 0;
            return change(m_functions.ShowChangePinDialog, plain, old_bounds, old_pin,
                          request.new_pin, new_pin);
        }
        const Policy policy = request.policy.value_or(Policy());
        Policy::require(policy.m_wire.p2MinLen <= request.new_pin.max,
                        "a policy asks for a longer PIN than fits");
        const PinPolicyCharList characters{static_cast<uint32_t>(policy.m_characters.size()), 0,
                                           policy.m_characters.data()};
        PinPolicyWire wire = policy.m_wire;
        wire.charList = &characters;
        wire.source = -4;  // the card: whoever asks got it from there
        const PinPolicyDescriptor descriptor{0, sizeof wire, &wire};

        PolicedPinChangeRequest record{};
        fill(record, request.label, request.new_pin, request.attempts);
        record.changePuk = request.puk ? 1 : 0;
        record.triesLeft = request.attempts.left;
        record.policy = request.policy ? &descriptor : nullptr;
        record.oldMinLength = old_bounds.min;
        record.oldMaxLength = old_bounds.max;
        return change(m_functions.ShowChangePolicedPinDialog_func, record, old_bounds, old_pin,
                      request.new_pin, new_pin);
    }

    /** Ask for the PUK and, twice, for a new PIN. (The function of the C interface that does so is
     *  called DLG_ShowChangeTransportPIN; this one is not DLG_ShowUnblockThroughPUK.)
     *  @param request What is asked. @param puk Receives the one.
     *  @param new_pin Receives the other. @return Ok, Cancelled or Failed. */
    [[nodiscard]] Result unblock(const UnblockRequest& request, Secret& puk,
                                 Secret& new_pin) const {
        check(request.pin);
        check(request.attempts);
        PinChangeRequest record{};
        fill(record, request.label, request.pin, request.attempts);
        return change(m_functions.ShowChangeTransportPIN, record, request.pin, puk, request.pin,
                      new_pin);
    }

    /** Let the user choose a line of a list. The title says "Select a token".
     *  @param choices The lines, at least one. @param index Receives the number of the chosen one,
     *  from 0. @return Ok, Cancelled or Failed. */
    [[nodiscard]] Result select(const std::vector<Choice>& choices, size_t& index) const {
        Policy::require(!choices.empty(), "nothing to choose from");
        std::vector<TokenChoiceEntry> entries;
        for (const Choice& choice : choices) {
            entries.push_back({choice.name.c_str(), choice.detail.c_str(), entries.size()});
        }
        const TokenChoiceList list{entries.data(), static_cast<uint32_t>(entries.size())};
        uint64_t chosen = 0;
        const Result result = resulting(m_functions.ShowTokenSelectionDialog(&list, &chosen));
        if (result == Result::Ok) {
            index = static_cast<size_t>(chosen);
        }
        return result;
    }

    /** Ask a question whose answer is reported: a list of both answers, with the harmless one
     *  selected. The questions of the library (show_...) do not report theirs.
     *  @param no What is done when the user does not want it, for example "Keep the certificate".
     *  @param yes What is done otherwise. @param detail What both are about.
     *  @return Ok when the user chose @p yes, Cancelled when not, Failed. */
    [[nodiscard]] Result confirm(const std::string& no, const std::string& yes,
                                 const std::string& detail) const {
        size_t answer = 0;
        const Result result = select({{no, detail}, {yes, detail}}, answer);
        return result == Result::Ok && answer == 0 ? Result::Cancelled : result;
    }

    /** @name Boxes
     *  They wait until the user has closed them. Which button was pressed is not reported, also
     *  where there is a Yes and a No: such a box asks nothing, it tells. See confirm().
     *  @return Whether the box was shown.
     *  @{ */
    /** The token is locked. @param label Its label. */
    bool show_locked(const std::string& label) const {
        return m_functions.ShowLockedDialog(label.c_str()) != ZELDLG_FAILED;
    }
    /** The PUK is locked. */
    bool show_puk_locked() const { return m_functions.ShowPUKIsLocked() != ZELDLG_FAILED; }
    /** The PIN that was set for the user has to be changed. */
    bool show_change_transport_pin() const {
        return m_functions.AskChangeTransportPIN() != ZELDLG_FAILED;
    }
    /** The PIN expires. @param days In so many days. */
    bool show_expiry(uint32_t days) const {
        return m_functions.AskEarlyUnexpirePin(days) != ZELDLG_FAILED;
    }
    /** The token is locked and could be unlocked. */
    bool show_unlock() const { return m_functions.ShowUnlockTokenDialog() != ZELDLG_FAILED; }
    /** A certificate is about to be deleted. @param certificate Which. */
    bool show_delete_certificate(const Certificate& certificate) const {
        return m_functions.ShowConfirmDeleteCertificate(
                   certificate.application.c_str(), certificate.label.c_str(),
                   certificate.issued_to.c_str(), certificate.issued_by.c_str(),
                   certificate.valid_from.c_str(), certificate.valid_to.c_str()) != ZELDLG_FAILED;
    }
    /** @} */

private:
    static void check(const Bounds& bounds) {
        Policy::require(bounds.min <= bounds.max, "no length is within the bounds");
        Policy::require(bounds.max >= 1 && bounds.max <= 65536, "bounds of no or too many bytes");
    }

    static void check(const Attempts& attempts) {
        Policy::require(attempts.of == 0 || (attempts.left >= 1 && attempts.left <= attempts.of),
                        "not a number of tries; what is locked is not asked for");
    }

    static Result resulting(uint32_t code) {
        return code == ZELDLG_OK          ? Result::Ok
               : code == ZELDLG_CANCELLED ? Result::Cancelled
                                          : Result::Failed;
    }

    static bool is_final(const Attempts& attempts) {
        return attempts.final_try || attempts.left == 1;
    }

    // A final try counts as failed for the library; without a failure now, it was earlier.
    static uint8_t failed_earlier(const Attempts& attempts) {
        return attempts.failure == Failure::Now ? 0 : 1;
    }

    uint32_t ask(const PinRequest& request, PinBuffer& buffer) const {
        PinDialogRequest record{};
        record.tokenLabel = request.label.c_str();
        record.minPinLength = request.pin.min;
        record.maxPinLength = request.pin.max;
        record.noFailure = request.attempts.failure == Failure::None ? 1 : 0;
        record.finalTry = is_final(request.attempts) ? 1 : 0;
        record.failedEarlier = failed_earlier(request.attempts);
        return (request.legal ? m_functions.ShowLegalPinDialog : m_functions.ShowPinDialog)(
            &record, &buffer);
    }

    uint32_t ask_with_counter(const PinRequest& request, PinBuffer& buffer) const {
        PinDialogRequestEx record{};
        record.tokenLabel = request.label.c_str();
        record.minPinLength = request.pin.min;
        record.maxPinLength = request.pin.max;
        record.failedEarlier = failed_earlier(request.attempts);
        record.maxTries = request.attempts.of;
        record.triesLeft = request.attempts.left;
        return (request.legal ? m_functions.ShowLegalPinDialogEx : m_functions.ShowPinDialogEx)(
            &record, &buffer);
    }

    template <typename Record>
    static void fill(Record& record, const std::string& label, const Bounds& bounds,
                     const Attempts& attempts) {
        record.tokenLabel = label.c_str();
        record.minLength = bounds.min;
        record.maxLength = bounds.max;
        record.noFailure = attempts.failure == Failure::Now ? 0 : 1;
        record.finalTry = is_final(attempts) ? 1 : 0;
    }

    template <typename Record>
    static Result change(uint32_t (*show)(const Record*, PinChangeBuffers*), const Record& record,
                         const Bounds& old_bounds, Secret& old_value, const Bounds& new_bounds,
                         Secret& new_value) {
        // These dialogs count bytes: whatever they take fits.
        Secret old_typed(old_bounds.max);
        Secret new_typed(new_bounds.max);
        PinChangeBuffers buffers{old_typed.data(), old_typed.size(), new_typed.data(),
                                 new_typed.size()};
        const Result result = resulting(show(&record, &buffers));
        if (result == Result::Ok) {
            old_typed.truncate(buffers.oldLength);
            new_typed.truncate(buffers.newLength);
            old_value = std::move(old_typed);
            new_value = std::move(new_typed);
        }
        return result;
    }

    const DLG_FunctionList& m_functions;
    // Of this program: the user interface ends with the last.
    inline static std::atomic<unsigned> s_count{0};
};

/** Shows that a key pair is being generated, as long as it lives. One at a time. */
class Progress {
public:
    /** @param session Has to live as long. */
    explicit Progress(const Session& session)
        : m_session(session),
          m_shown(session.functions().ShowKeyGenerationProgressDialog() == ZELDLG_OK) {}
    ~Progress() { m_session.functions().HideKeyGenerationProgressDialog(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /** @return Whether the window could be shown. */
    bool shown() const { return m_shown; }

private:
    const Session& m_session;
    bool m_shown;
};

/** The window beside a reader with keys of its own, as long as it lives. The PIN never comes here.
 *  Its functions do nothing when the window could not be shown. */
class PinPad {
public:
    /** What the user enters on the reader. */
    enum class Kind {
        Verification,      /**< The PIN. */
        Modification,      /**< The PIN, the new PIN and its confirmation. */
        Legal,             /**< The PIN of a legally binding signature. */
        VerificationNoPin, /**< As Verification, for a reader that does not tell of its keys. */
        LegalNoPin,        /**< As Legal, for such a reader. */
    };

    /** @param session Has to live as long. @param kind What is entered.
     *  @param allow_abort Whether the window has an Abort button, which aborted() tells of. */
    PinPad(const Session& session, Kind kind, bool allow_abort)
        : m_functions(session.functions()),
          m_shown(show(kind)(&m_handle, allow_abort ? 1 : 0) == 1) {
        if (m_shown) {
            next_pin();
        }
    }
    ~PinPad() {
        if (m_shown) {
            m_functions.PinPadHideDialog(m_handle);
        }
    }
    PinPad(const PinPad&) = delete;
    PinPad& operator=(const PinPad&) = delete;

    /** @return Whether the window could be shown. */
    bool shown() const { return m_shown; }
    /** @return Whether the user has pressed Abort. To be asked some ten times a second. */
    bool aborted() const {
        return m_shown && m_functions.PinPadKeyboardInputShouldAbort(m_handle) == 1;
    }
    /** The next PIN of a modification is expected; the first is from the start. */
    void next_pin() const { m_functions.PinPadKeyboardInputNextPin(m_handle); }
    /** A digit was typed. */
    void add_char() const { m_functions.PinPadKeyboardInputAddChar(m_handle); }
    /** The last digit was deleted. */
    void delete_char() const { m_functions.PinPadKeyboardInputDelChar(m_handle); }
    /** All digits were deleted. */
    void clear_chars() const { m_functions.PinPadKeyboardInputClearChars(m_handle); }
    /** The user confirmed on the reader. */
    void accept() const { m_functions.PinPadKeyboardInputAccept(m_handle); }
    /** The user cancelled on the reader. */
    void cancel() const { m_functions.PinPadKeyboardInputCancel(m_handle); }
    /** The reader gave up waiting. */
    void time_out() const { m_functions.PinPadKeyboardInputTimeout(m_handle); }

private:
    decltype(DLG_FunctionList::PinPadShowVerificationDialog) show(Kind kind) const {
        switch (kind) {
            case Kind::Modification:
                return m_functions.PinPadShowModificationDialog;
            case Kind::Legal:
                return m_functions.PinPadShowLegalVerificationDialog;
            case Kind::VerificationNoPin:
                return m_functions.PinPadShowNoPinVerificationDialog;
            case Kind::LegalNoPin:
                return m_functions.PinPadShowLegalNoPinVerificationDialog;
            case Kind::Verification:
                break;
        }
        return m_functions.PinPadShowVerificationDialog;
    }

    const DLG_FunctionList& m_functions;
    void* m_handle = nullptr;
    bool m_shown;
};

}  // namespace zeldlg

#endif  // ZELDLG_ZELDLG_HPP
