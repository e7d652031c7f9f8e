#include "widgets/secure_text_control.h"

#include <gtk/gtk.h>
#include <wx/dcclient.h>
#include <wx/settings.h>
#include <wx/utils.h>

#include <cstdlib>

#include "widgets/accessible.h"

namespace zeldlg {

namespace {

constexpr long kStyle = wxBORDER_SIMPLE | wxTE_RICH2 | wxTE_PASSWORD | wxTE_RICH;
static_assert(kStyle == 0x2008880);

constexpr size_t kFieldWidthCharacters = 18;

// Pixels. Written by MeasureFieldWidth() and read by the constructors of the PIN dialogs, both
// on the GUI thread only; a plain number, so it needs no destruction.
int g_fieldWidth = 130;

[[noreturn]] void AbortOnRemovalPastEnd() {
    // The caret and the secret have come apart: what the user sees is not what would be sent.
    abort();
}

bool IsNavigationKey(int keyCode) {
    switch (keyCode) {
        case WXK_END:
        case WXK_HOME:
        case WXK_LEFT:
        case WXK_UP:
        case WXK_RIGHT:
        case WXK_DOWN:
        case WXK_PAGEUP:
        case WXK_PAGEDOWN:
            return true;
        default:
            return false;
    }
}

bool IsDialogKey(int keyCode) {
    return keyCode == WXK_HELP || keyCode == WXK_TAB || keyCode == WXK_RETURN ||
           keyCode == WXK_ESCAPE;
}

bool IsDeleteKey(int keyCode) { return keyCode == WXK_BACK || keyCode == WXK_DELETE; }

// GTK runs its key bindings for these, or nothing: as typing they do not count.
bool HasCommandModifier(const wxKeyEvent& event) {
    return event.ControlDown() || event.AltDown() || event.MetaDown();
}

bool IsClipboardKey(const wxKeyEvent& event) {
    if (event.AltDown() || event.MetaDown()) {
        return false;
    }
    const int keyCode = event.GetKeyCode();
    if (event.ControlDown() && !event.ShiftDown()) {
        return keyCode == 'C' || keyCode == 'V' || keyCode == 'X' || keyCode == 'c' ||
               keyCode == 'v' || keyCode == 'x';
    }
    if (event.ShiftDown() && !event.ControlDown()) {
        return keyCode == WXK_INSERT || keyCode == WXK_DELETE;
    }
    return false;
}

// GTK selects behind the toolkit's back: all of the text when the focus comes by keyboard, a word
// on the second press of a double click, whatever an assistive tool asks for. The caret is then at
// the far end of the selection, which is where removing a selection must not find it.
void CollapseSelection(GtkEditable* editable, GParamSpec*, gpointer) {
    if (gtk_editable_get_selection_bounds(editable, nullptr, nullptr)) {
        gtk_editable_set_position(editable, gtk_editable_get_position(editable));
    }
}

// Lets a selection stand that code asked for.
class SelectionPermit {
public:
    explicit SelectionPermit(GtkWidget* entry) : m_entry(entry) {
        g_signal_handlers_block_by_func(m_entry, Guard(), nullptr);
    }
    ~SelectionPermit() { g_signal_handlers_unblock_by_func(m_entry, Guard(), nullptr); }
    SelectionPermit(const SelectionPermit&) = delete;
    SelectionPermit& operator=(const SelectionPermit&) = delete;

private:
    static gpointer Guard() { return reinterpret_cast<gpointer>(&CollapseSelection); }

    GtkWidget* m_entry;
};

// Shows the native menu with nothing in it to choose.
void DisableMenuItems(GtkEntry*, GtkWidget* menu, gpointer) {
    const auto disable = [](GtkWidget* item, gpointer) { gtk_widget_set_sensitive(item, FALSE); };
    gtk_container_foreach(GTK_CONTAINER(menu), disable, nullptr);
}

}  // namespace

CSecureTextControl::CSecureTextControl(wxWindow* parent, wxWindowID id, int minLength, int maxBytes,
                                       const wxSize& size, bool allowNonAscii, long style)
    : wxTextCtrl(parent, id, wxString(), wxDefaultPosition, size, style | kStyle,
                 wxDefaultValidator, wxTextCtrlNameStr),
      m_minLength(minLength),
      m_maxBytes(maxBytes),
      m_allowNonAscii(allowNonAscii) {
    SetDropTarget(nullptr);
    BlockNativeEditing();
}

CSecureTextControl::~CSecureTextControl() {
    // The widget outlives this object by the base destructors; its signals must not.
    g_signal_handlers_disconnect_by_data(GetHandle(), this);
    Forget(m_realText);
}

void CSecureTextControl::BlockNativeEditing() {
    GtkEntry* const entry = GTK_ENTRY(GetHandle());
    gtk_entry_set_invisible_char(entry, kMaskCharacter);
    MarkAsSecretField(*this);
    // SetDropTarget() knows nothing of the target that each GtkEntry has from birth.
    gtk_drag_dest_unset(GTK_WIDGET(entry));
    g_signal_connect(entry, "notify::cursor-position", G_CALLBACK(CollapseSelection), nullptr);
    g_signal_connect(entry, "notify::selection-bound", G_CALLBACK(CollapseSelection), nullptr);
    g_signal_connect(entry, "populate-popup", G_CALLBACK(DisableMenuItems), nullptr);
    const auto afterEvent = +[](GtkWidget*, GdkEvent* event, gpointer self) {
        if (event->type == GDK_KEY_PRESS) {
            static_cast<CSecureTextControl*>(self)->ShortenMask();
        }
    };
    g_signal_connect(entry, "event-after", G_CALLBACK(afterEvent), this);
}

wxString CSecureTextControl::GetValue() const { return m_realText; }

void CSecureTextControl::SetValue(const wxString& value) {
    Assign(m_realText, value);
    ShowMask(SetValue_SendEvent);
}

void CSecureTextControl::ChangeValue(const wxString& value) {
    Assign(m_realText, value);
    ShowMask(SetValue_NoEvent);
}

wxString CSecureTextControl::GetLineText(long line) const {
    return line == 0 ? m_realText : wxString();
}

void CSecureTextControl::AppendText(const wxString& text) {
    Append(m_realText, text);
    SetValue(m_realText);
    SetInsertionPointEnd();
}

void CSecureTextControl::Clear() {
    Forget(m_realText);
    Remove(0, -1);
}

void CSecureTextControl::SetSelection(long from, long to) {
    const SelectionPermit permit(GetHandle());
    wxTextCtrl::SetSelection(from, to);
}

void CSecureTextControl::MeasureFieldWidth(wxWindow* window) {
    wxClientDC dc(window);
    dc.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    g_fieldWidth = dc.GetTextExtent(MakeMask(kFieldWidthCharacters)).GetWidth();
}

int CSecureTextControl::GetFieldWidth() { return g_fieldWidth; }

void CSecureTextControl::ShowMask(int setValueFlag) {
    wxTextEntry::DoSetValue(MakeMask(m_realText.length()), setValueFlag);
}

void CSecureTextControl::NotifyParent() {
    wxCommandEvent event(wxEVT_TEXT, GetId());
    event.SetEventObject(this);
    GetParent()->GetEventHandler()->ProcessEvent(event);
}

TextCaret CSecureTextControl::GetCaret() const {
    TextCaret caret;
    caret.position = GetInsertionPoint();
    GetSelection(&caret.from, &caret.to);
    return caret;
}

void CSecureTextControl::OnText(wxCommandEvent& event) {
    const long caret = GetInsertionPoint();
    const wxString shown = DoGetValue();
    DropWhatIsNotShown(m_realText, shown.length(), caret);
    if (shown != MakeMask(m_realText.length())) {
        RestoreMask(caret);
    }
    event.Skip();
}

void CSecureTextControl::RestoreMask(long caret) {
    {
        // Without an event: its handler would find an empty field and drop the whole secret.
        const EventsSuppressor quiet(this);
        Remove(0, -1);
    }
    ShowMask(SetValue_SendEvent);
    SetInsertionPoint(caret);
}

void CSecureTextControl::ShortenMask() {
    // Alt+Back takes a character of the secret and no mask character; so does Back when an input
    // method keeps it for itself. No toolkit event tells of either.
    if (DoGetValue().length() > m_realText.length()) {
        RestoreMask(GetInsertionPoint());
    }
}

void CSecureTextControl::OnConsumedCommand(wxCommandEvent& event) { event.Skip(false); }

void CSecureTextControl::OnConsumedClipboard(wxClipboardTextEvent& event) { event.Skip(false); }

void CSecureTextControl::OnConsumedUpdate(wxUpdateUIEvent& event) { event.Skip(false); }

void CSecureTextControl::OnSetFocus(wxFocusEvent& event) {
    event.Skip();
    SetSelection(0, 0);
    SetInsertionPointEnd();
}

void CSecureTextControl::OnKillFocus(wxFocusEvent& event) { event.Skip(); }

void CSecureTextControl::OnContextMenu(wxContextMenuEvent& event) { event.Skip(); }

void CSecureTextControl::OnMouse(wxMouseEvent& event) {
    const bool dragging = event.Dragging();
    const bool doubleClick = event.ButtonDClick();
    const bool otherButton =
        event.RightDown() || event.RightUp() || event.MiddleDown() || event.MiddleUp();
    // kept: the x coordinate alone decides, so a click at any height of the leftmost column is
    // lost.
    const bool leftEdge = event.LeftDown() && event.GetX() == 0;
    event.Skip(!(dragging || doubleClick || otherButton || leftEdge));
}

void CSecureTextControl::OnKeyDown(wxKeyEvent& event) {
    // Before the delete keys: Shift+Delete cuts, so GTK removes no mask character for it.
    if (IsClipboardKey(event)) {
        return;
    }
    if (IsDeleteKey(event.GetKeyCode()) && IsEditable()) {
        DeleteAtCaret(event);
        return;
    }
    event.Skip();
}

void CSecureTextControl::DeleteAtCaret(wxKeyEvent& event) {
    const DeleteKey key = event.GetKeyCode() == WXK_BACK ? DeleteKey::Back : DeleteKey::Delete;
    switch (zeldlg::DeleteAtCaret(m_realText, GetCaret(), key)) {
        case DeleteOutcome::Ignored:
            return;
        case DeleteOutcome::PastEnd:
            AbortOnRemovalPastEnd();
        case DeleteOutcome::Done:
            event.Skip();
            NotifyParent();
            return;
    }
}

void CSecureTextControl::OnChar(wxKeyEvent& event) {
    const int keyCode = event.GetKeyCode();
    if ((IsDeleteKey(keyCode) && IsEditable()) || IsDialogKey(keyCode)) {
        event.Skip();
        return;
    }
    if (IsNavigationKey(keyCode)) {
        event.Skip(!event.ShiftDown());
        return;
    }
    const wchar_t character = event.GetUnicodeKey();
    if (!IsAcceptedCharacter(character, m_allowNonAscii)) {
        RefuseTyped();
        return;
    }
    if (IsEditable() && !HasCommandModifier(event)) {
        InsertTyped(character);
    }
}

void CSecureTextControl::RefuseTyped() {
    wxBell();
    wxString copy = m_realText;
    Clear();
    SetValue(copy);
    Forget(copy);
    SetInsertionPointEnd();
}

void CSecureTextControl::InsertTyped(wchar_t character) {
    const TextCaret caret = GetCaret();
    zeldlg::DeleteSelection(m_realText, caret);
    if (IsLimitReached(m_realText, m_maxBytes)) {
        wxBell();
    }
    InsertCharacter(m_realText, caret.position, character);
    WriteText(MakeMask(1));
    NotifyParent();
}

// clang-format off
wxBEGIN_EVENT_TABLE(CSecureTextControl, wxTextCtrl)
    EVT_TEXT(wxID_ANY, CSecureTextControl::OnText)
    EVT_MENU(wxID_CUT, CSecureTextControl::OnConsumedCommand)
    EVT_MENU(wxID_COPY, CSecureTextControl::OnConsumedCommand)
    EVT_MENU(wxID_PASTE, CSecureTextControl::OnConsumedCommand)
    EVT_MENU(wxID_UNDO, CSecureTextControl::OnConsumedCommand)
    EVT_MENU(wxID_REDO, CSecureTextControl::OnConsumedCommand)
    EVT_MENU(wxID_CLEAR, CSecureTextControl::OnConsumedCommand)
    EVT_MENU(wxID_SELECTALL, CSecureTextControl::OnConsumedCommand)
    // Any id: the toolkit sends these with the id of the control, not with wxID_PASTE and so on.
    EVT_TEXT_PASTE(wxID_ANY, CSecureTextControl::OnConsumedClipboard)
    EVT_TEXT_CUT(wxID_ANY, CSecureTextControl::OnConsumedClipboard)
    EVT_TEXT_COPY(wxID_ANY, CSecureTextControl::OnConsumedClipboard)
    EVT_UPDATE_UI(wxID_CUT, CSecureTextControl::OnConsumedUpdate)
    EVT_UPDATE_UI(wxID_COPY, CSecureTextControl::OnConsumedUpdate)
    EVT_UPDATE_UI(wxID_PASTE, CSecureTextControl::OnConsumedUpdate)
    EVT_UPDATE_UI(wxID_UNDO, CSecureTextControl::OnConsumedUpdate)
    EVT_UPDATE_UI(wxID_REDO, CSecureTextControl::OnConsumedUpdate)
    EVT_UPDATE_UI(wxID_CLEAR, CSecureTextControl::OnConsumedUpdate)
    EVT_UPDATE_UI(wxID_SELECTALL, CSecureTextControl::OnConsumedUpdate)
    EVT_SET_FOCUS(CSecureTextControl::OnSetFocus)
    EVT_KILL_FOCUS(CSecureTextControl::OnKillFocus)
    EVT_CONTEXT_MENU(CSecureTextControl::OnContextMenu)
    EVT_CHAR(CSecureTextControl::OnChar)
    EVT_KEY_DOWN(CSecureTextControl::OnKeyDown)
    EVT_MOUSE_EVENTS(CSecureTextControl::OnMouse)
wxEND_EVENT_TABLE()
// clang-format on

}  // namespace zeldlg
