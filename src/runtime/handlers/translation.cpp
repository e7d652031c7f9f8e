#include <string>

#include "platform/utf8.h"
#include "resources/texts.h"
#include "runtime/dll_app.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"

namespace zeldlg {

namespace {

template <typename Unit>
void Reply(const CMessage& message, const std::basic_string<Unit>& text) {
    auto& reply = *message.Param2As<TranslationReply>();
    reply.result = StoreSizedText<Unit>(text, static_cast<Unit*>(reply.buffer), *reply.size);
}

}  // namespace

bool HandleTranslation(CMessage* message) {
    switch (message->Code()) {
        case kTranslateUtf8:
            Reply(*message,
                  ToUtf8(TranslateText(platform::DecodeUtf8(message->Param1As<const char>()))));
            return true;
        case kTranslateUtf16: {
            const auto* const source = message->Param1As<const wchar_t>();
            Reply(*message, TranslateText(source != nullptr ? source : L"").ToStdWstring());
            return true;
        }
        case kGetLocale:
            Reply(*message, dynamic_cast<CDllApp&>(*wxTheApp).LocaleName().ToStdWstring());
            return true;
        default:
            return false;
    }
}

}  // namespace zeldlg
