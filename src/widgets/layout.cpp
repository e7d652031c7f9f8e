#include "widgets/layout.h"

#include <gtk/gtk.h>
#include <wx/arrstr.h>
#include <wx/dcclient.h>
#include <wx/fontutil.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/button.h"
#include "widgets/desktop.h"
#include "widgets/screen_fit.h"

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

constexpr int kTextLetters = 58;
constexpr size_t kAllLines = std::numeric_limits<size_t>::max();
constexpr size_t kWholeText = std::numeric_limits<size_t>::max();
constexpr float kHeadingScale = 1.2F;
constexpr size_t kFewestHeadingLines = 2;

}  // namespace

// Of English in every language: a line of the widest letters would be too long to read.
int TextWidth(const wxWindow& window) {
    PangoFontMetrics* const metrics = pango_context_get_metrics(
        gtk_widget_get_pango_context(window.GetHandle()),
        window.GetFont().GetNativeFontInfo()->description, pango_language_from_string("en"));
    const int letter = pango_font_metrics_get_approximate_char_width(metrics);
    pango_font_metrics_unref(metrics);
    return std::min(PANGO_PIXELS(kTextLetters * letter), RoomForLine(window));
}

wxString WrapText(wxWindow& window, const wxString& text) {
    return WrapText(window, text, TextWidth(window));
}

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

// Most texts fit one line, and the label has measured itself anyway.
TextLabel::TextLabel(wxWindow* parent, const wxString& text, size_t maxLines, Look look)
    : wxStaticText(parent, wxID_ANY, wxControl::EscapeMnemonics(text)),
      m_text(text),
      m_font(look == Look::Heading ? HeadingFont(*parent) : parent->GetFont()),
      m_maxLines(maxLines),
      m_width(TextWidth(*parent)) {
    if (look == Look::Heading) {
        MarkBeginning(*this, kWholeText, m_font);
    }
    if (text.find('\n') != wxString::npos || GetBestSize().x > m_width) {
        ShowWrapped();
    }
}

void TextLabel::WrapAt(int width) {
    if (m_lines > 1 && width != m_width) {
        m_width = width;
        ShowWrapped();
    }
}

bool TextLabel::DropLine() {
    if (m_maxLines == kAllLines || m_lines <= kFewestHeadingLines) {
        return false;
    }
    m_maxLines = m_lines - 1;
    ShowWrapped();
    return true;
}

void TextLabel::ShowWrapped() {
    const ElidedText elided = ElideText(*this, m_font, m_text, m_maxLines, m_width);
    m_lines = elided.lines;
    SetLabelText(elided.shown);
    if (elided.isCut) {
        TellWhole(*this, m_text);
    } else {
        UnsetToolTip();
        SetAccessibleName(*this, m_text);
    }
}

TextLabel* NewText(wxWindow* parent, const wxString& text) {
    return new TextLabel(parent, text, kAllLines, TextLabel::Look::Plain);
}

TextLabel* NewLimitedText(wxWindow* parent, const wxString& text, size_t maxLines) {
    return new TextLabel(parent, text, maxLines, TextLabel::Look::Plain);
}

TextLabel* NewHeading(wxWindow* parent, const wxString& text, size_t maxLines) {
    return new TextLabel(parent, text, maxLines, TextLabel::Look::Heading);
}

wxFont HeadingFont(const wxWindow& window) { return window.GetFont().Bold().Scaled(kHeadingScale); }

// The font of the label itself would count only once the window is shown.
void MarkBeginning(wxStaticText& label, size_t bytes, const wxFont& font) {
    const auto size = static_cast<int>(font.GetFractionalPointSize() * PANGO_SCALE);
    PangoAttrList* const attributes = pango_attr_list_new();
    for (PangoAttribute* const each :
         {pango_attr_weight_new(static_cast<PangoWeight>(font.GetNumericWeight())),
          pango_attr_size_new(size)}) {
        each->end_index = static_cast<guint>(std::min<size_t>(bytes, PANGO_ATTR_INDEX_TO_TEXT_END));
        pango_attr_list_insert(attributes, each);
    }
    gtk_label_set_attributes(GTK_LABEL(label.GetHandle()), attributes);
    pango_attr_list_unref(attributes);
    label.InvalidateBestSize();
    label.SetMinSize(wxDefaultSize);
    label.SetSize(label.GetBestSize());
}

void ShowWrapped(wxStaticText& label, const wxString& text, int width) {
    label.SetLabelText(WrapText(label, text, width));
    SetAccessibleName(label, text);
}

wxCheckBox* NewCheckBox(wxWindow* parent, wxWindowID id, const wxString& text) {
    const wxString wrapped = WrapText(*parent, text);
    auto* const box = new wxCheckBox(parent, id, wxControl::EscapeMnemonics(wrapped));
    if (wrapped != text) {
        SetAccessibleName(*box, text);
    }
    return box;
}

ElidedText ElideText(wxWindow& window, const wxFont& font, const wxString& text, size_t maxLines,
                     int width) {
    const wxString wrapped = WrapText(window, font, text, width);
    const wxArrayString lines = wxSplit(wrapped, '\n', '\0');
    if (lines.size() <= maxLines) {
        return {wrapped, lines.size(), false};
    }
    wxString shown;
    for (size_t line = 0; line < maxLines; ++line) {
        shown += lines[line] + (line + 1 < maxLines ? L"\n" : L"\u2026");
    }
    return {shown, maxLines, true};
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
        } else if (!child->HasFlag(wxALIGN_CENTRE_HORIZONTAL)) {
            GtkLabel* const label = GTK_LABEL(child->GetHandle());
            gtk_label_set_justify(label, GTK_JUSTIFY_LEFT);
            gtk_label_set_xalign(label, 0);
        }
    }
}

namespace {

GtkTextView* ViewOf(const wxTextCtrl& field) {
    return GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(field.GetHandle())));
}

// From the line that is at the top now.
void ScrollLines(const wxTextCtrl& field, int lines) {
    GtkTextView* const view = ViewOf(field);
    GtkAdjustment* const place = gtk_scrollable_get_vadjustment(GTK_SCROLLABLE(view));
    GtkTextIter top;
    gtk_text_view_get_iter_at_location(view, &top, 0,
                                       static_cast<int>(gtk_adjustment_get_value(place)));
    for (int line = 0; line < std::abs(lines); ++line) {
        if (lines > 0) {
            gtk_text_view_forward_display_line(view, &top);
        } else {
            gtk_text_view_backward_display_line(view, &top);
        }
    }
    GdkRectangle where;
    gtk_text_view_get_iter_location(view, &top, &where);
    gtk_adjustment_set_value(place, where.y);
}

}  // namespace

// The toolkit's own margins reach single-line fields only.
void PadText(const wxTextCtrl& field, int pixels) {
    GtkTextView* const view = ViewOf(field);
    gtk_text_view_set_left_margin(view, pixels);
    gtk_text_view_set_right_margin(view, pixels);
    gtk_text_view_set_top_margin(view, pixels);
    gtk_text_view_set_bottom_margin(view, pixels);
}

// What is above and below the lines belongs to the frame: margins of the text would scroll with it.
void ScrollByLines(wxTextCtrl& field, int lines, int padding) {
    GtkTextView* const view = ViewOf(field);
    gtk_text_view_set_left_margin(view, padding);
    gtk_text_view_set_right_margin(view, padding);
    gtk_widget_set_margin_top(GTK_WIDGET(view), padding);
    gtk_widget_set_margin_bottom(GTK_WIDGET(view), padding);
    GtkStyleContext* const frame = gtk_widget_get_style_context(field.GetHandle());
    gtk_style_context_add_class(frame, GTK_STYLE_CLASS_VIEW);
    GtkBorder border;
    gtk_style_context_get_border(frame, GTK_STATE_FLAG_NORMAL, &border);
    field.SetMinSize({field.GetMinSize().x,
                      lines * field.GetCharHeight() + 2 * padding + border.top + border.bottom});
    field.Bind(wxEVT_KEY_DOWN, [&field, page = lines - 1](wxKeyEvent& event) {
        const int key = event.HasAnyModifiers() ? WXK_NONE : event.GetKeyCode();
        switch (key) {
            case WXK_UP:
                return ScrollLines(field, -1);
            case WXK_DOWN:
                return ScrollLines(field, 1);
            case WXK_PAGEUP:
                return ScrollLines(field, -page);
            case WXK_PAGEDOWN:
                return ScrollLines(field, page);
            default:
                event.Skip();
        }
    });
    field.Bind(wxEVT_MOUSEWHEEL, [&field, turned = 0](wxMouseEvent& event) mutable {
        turned -= event.GetWheelRotation() * event.GetLinesPerAction();
        ScrollLines(field, turned / event.GetWheelDelta());
        turned %= event.GetWheelDelta();
    });
}

void LookReadOnly(wxTextCtrl& field) {
    field.SetBackgroundColour(field.GetParent()->GetBackgroundColour());
    gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(field.GetHandle()), GTK_SHADOW_NONE);
}

ButtonRow AddButtonRow(wxWindow* parent, wxSizer* sizer, const wxString& okLabel) {
    const ButtonRow buttons{new Button(parent, wxID_OK, okLabel),
                            new Button(parent, wxID_CANCEL, Translate("Cancel"))};
    MakeDefault(*buttons.ok);
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
    window.SetSizer(margin);
    FitScreen(window, *content);
    margin->SetSizeHints(&window);
    DescribeWindow(window, WindowRole::Dialog);
    SetWindowIcon(window, "dialog-password");
    window.Layout();
    CentreAtPointer(window);
}

}  // namespace zeldlg::layout
