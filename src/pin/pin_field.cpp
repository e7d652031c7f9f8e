#include "pin/pin_field.h"

#include "dialogs/common/accessible.h"
#include "pin/secure_text_control.h"
#include "registry/settings.h"

namespace zeldlg {

namespace {

constexpr int kFieldHeight = 24;

}  // namespace

wxTextCtrl* NewPinField(wxWindow* parent, wxStaticText& label) {
    auto* const field =
        new wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition,
                       wxSize(CSecureTextControl::GetFieldWidth(), kFieldHeight), wxTE_PASSWORD);
    SetLabelFor(label, *field);
    MarkAsSecretField(*field);
    return field;
}

bool IsPinLimitedToAscii() {
    return registry::ReadDword(registry::kSettingsKey, L"LimitPinToAscii", 1) != 0;
}

}  // namespace zeldlg
