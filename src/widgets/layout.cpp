#include "widgets/layout.h"

#include <gtk/gtk.h>
#include <wx/arrstr.h>
#include <wx/dcclient.h>
#include <wx/fontutil.h>

#include <memory>

#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/button.h"
#include "widgets/desktop.h"

namespace zeldlg::layout {

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};

using TextLayout = std::unique_ptr<PangoLayout, Unref>;

TextLayout NewLayout(const wxWindow& window, const wxScopedCharBuffer& utf8) {
    return TextLayout(gtk_widget_create_pango_layout(window.GetHandle(), utf8));
}

// A line that is broken off begins a paragraph of its own: a mark before it keeps the direction of
// the one that it comes from.
wxString DirectionMark(const wxWindow& window, const PangoLayoutLine& line, const wxString& piece) {
    const TextLayout alone = NewLayout(window, piece.utf8_str());
    if (pango_layout_get_line_readonly(alone.get(), 0)->resolved_dir == line.resolved_dir) {
        return {};
    }
    return line.resolved_dir == PANGO_DIRECTION_RTL ? L"\u200F" : L"\u200E";
}

wxStaticText* NewLabel(wxWindow* parent, const wxString& text) {
    return new wxStaticText(parent, wxID_ANY, wxControl::EscapeMnemonics(text));
}

// As most texts do. The label has measured itself anyway.
bool FitsOneLine(const wxStaticText& label, const wxString& text) {
    return text.find('\n') == wxString::npos && label.GetBestSize().x <= kTextWidth;
}

}  // namespace

wxString WrapText(wxWindow& window, const wxString& text, int width) {
    return WrapText(window, window.GetFont(), text, width);
}

wxString WrapText(wxWindow& window, const wxFont& font, const wxString& text, int width) {
    const wxScopedCharBuffer utf8 = text.utf8_str();
    const TextLayout layout = NewLayout(window, utf8);
    // The widget itself learns of a font that was set only when it is shown.
    pango_layout_set_font_description(layout.get(), font.GetNativeFontInfo()->description);
    pango_layout_set_width(layout.get(), width * PANGO_SCALE);
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    wxString wrapped;
    std::wstring open;
    for (const GSList* line = pango_layout_get_lines_readonly(layout.get()); line != nullptr;
         line = line->next) {
        const auto* const each = static_cast<const PangoLayoutLine*>(line->data);
        wxString piece =
            wxString::FromUTF8(utf8.data() + each->start_index, static_cast<size_t>(each->length));
        if (each->is_paragraph_start == 0) {
            wrapped += DirectionMark(window, *each, piece);
            piece = open + piece;
        }
        // What a line leaves enclosed stays so in the next one, though that is another paragraph.
        open = OpenIsolates(piece.ToStdWstring());
        if (line->next != nullptr) {
            piece = piece.Trim() + Closing(open) + "\n";
        }
        wrapped += piece;
    }
    return wrapped;
}

wxStaticText* NewText(wxWindow* parent, const wxString& text) {
    wxStaticText* const label = NewLabel(parent, text);
    if (FitsOneLine(*label, text)) {
        return label;
    }
    const wxString wrapped = WrapText(*parent, text);
    if (wrapped != text) {
        label->SetLabelText(wrapped);
        SetAccessibleName(*label, text);
    }
    return label;
}

void ShowWrapped(wxStaticText& label, const wxString& text, int width) {
    label.SetLabelText(WrapText(label, text, width));
    SetAccessibleName(label, text);
}

ElidedText ElideText(wxWindow& window, const wxString& text, size_t maxLines) {
    const wxString wrapped = WrapText(window, text);
    const wxArrayString lines = wxSplit(wrapped, '\n', '\0');
    if (lines.size() <= maxLines) {
        return {wrapped, false};
    }
    wxString shown;
    for (size_t line = 0; line < maxLines; ++line) {
        shown += lines[line] + (line + 1 < maxLines ? L"\n" : L"\u2026");
    }
    return {shown, true};
}

void TellWhole(wxWindow& window, const wxString& text) {
    window.SetToolTip(WrapText(window, text));  // the toolkit itself breaks it at blanks only
    SetAccessibleName(window, text);
}

void TellWholeIfCut(wxStaticText& label) {
    const wxSize room = label.GetSize();
    const wxSize text = label.GetBestSize();
    if (text.x > room.x || text.y > room.y) {
        TellWhole(label, label.GetLabelText());
    }
}

wxStaticText* NewHeading(wxWindow* parent, const wxString& text, size_t maxLines) {
    wxStaticText* const heading = NewLabel(parent, text);
    if (FitsOneLine(*heading, text)) {
        return heading;
    }
    const ElidedText elided = ElideText(*parent, text, maxLines);
    heading->SetLabelText(elided.shown);
    if (elided.isCut) {
        TellWhole(*heading, text);
    } else if (elided.shown != text) {
        SetAccessibleName(*heading, text);
    }
    return heading;
}

void ReserveRoom(wxStaticText& label) {
    wxClientDC context(&label);
    context.SetFont(label.GetFont());
    label.SetMinSize(context.GetMultiLineTextExtent(label.GetLabelText()));
}

// Both the toolkit and GTK below it turn left and right round for such scripts.
// NOLINTNEXTLINE(misc-no-recursion): windows are a tree of few levels
void AlignLabels(wxWindow& window) {
    for (wxWindow* const child : window.GetChildren()) {
        if (dynamic_cast<wxStaticText*>(child) == nullptr) {
            AlignLabels(*child);  // NOLINT(clang-analyzer-core.NonNullParamChecker): none is null
        } else if (!child->HasFlag(wxALIGN_CENTRE_HORIZONTAL | wxALIGN_RIGHT)) {
            GtkLabel* const label = GTK_LABEL(child->GetHandle());
            gtk_label_set_justify(label, GTK_JUSTIFY_LEFT);
            gtk_label_set_xalign(label, 0);
        }
    }
}

// The toolkit's own margins reach single-line fields only.
void PadText(const wxTextCtrl& field, int pixels) {
    GtkTextView* const view = GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(field.GetHandle())));
    gtk_text_view_set_left_margin(view, pixels);
    gtk_text_view_set_right_margin(view, pixels);
    gtk_text_view_set_top_margin(view, pixels);
    gtk_text_view_set_bottom_margin(view, pixels);
}

ButtonRow AddButtonRow(wxWindow* parent, wxSizer* sizer, const wxString& okLabel) {
    const ButtonRow buttons{new Button(parent, wxID_OK, okLabel),
                            new Button(parent, wxID_CANCEL, Translate("Cancel"))};
    buttons.ok->SetDefault();
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(buttons.ok);
    row->AddSpacer(kSectionGap);
    row->Add(buttons.cancel);
    sizer->Add(row, wxSizerFlags().Right().Border(wxTOP, kSectionGap));
    return buttons;
}

void Finish(wxTopLevelWindow& window, wxSizer* content) {
    content->SetMinSize(kMinContentWidth, wxDefaultCoord);
    auto* const margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(content, wxSizerFlags(1).Expand().Border(wxALL, kMargin));
    AlignLabels(window);
    window.SetSizerAndFit(margin);
    margin->SetSizeHints(&window);
    DescribeWindow(window, WindowRole::Dialog);
    window.Layout();
    CentreAtPointer(window);
}

}  // namespace zeldlg::layout
