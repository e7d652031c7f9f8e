#include <string>

#include "platform/utf8.h"
#include "resources/texts.h"
#include "runtime/dll_app.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"

namespace zeldlg {

namespace {

template <typename Unit>
void Answer(TranslationReply<Unit>& reply, const std::basic_string<Unit>& text) {
    reply.result = StoreSizedText<Unit>(text, reply.buffer, *reply.size);
}

void TranslateUtf8(const char* source, TranslationReply<char>* reply) {
    Answer(*reply, ToUtf8(TranslateText(platform::DecodeUtf8(source))));
}

void TranslateUtf16(const wchar_t* source, TranslationReply<wchar_t>* reply) {
    Answer(*reply, TranslateText(source != nullptr ? source : L"").ToStdWstring());
}

void GetLocale(TranslationReply<wchar_t>* reply) {
    Answer(*reply, dynamic_cast<CDllApp&>(*wxTheApp).LocaleName().ToStdWstring());
}

}  // namespace

bool HandleTranslation(CMessage* message) {
    return Serve(kTranslateUtf8, *message, TranslateUtf8) ||
           Serve(kTranslateUtf16, *message, TranslateUtf16) ||
           Serve(kGetLocale, *message, GetLocale);
}

}  // namespace zeldlg
