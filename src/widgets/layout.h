// The look that all dialogs share: spacing, wrapped texts, rule lines, the row of buttons.
#pragma once

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/font.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>
#include <wx/window.h>

namespace zeldlg::layout {

/// Pixels: around a dialog's content, between its sections, between lines of one section.
inline constexpr int kMargin = 16;
inline constexpr int kSectionGap = 12;
inline constexpr int kLineGap = 4;

/// Pixels that the content of the smallest dialog is wide.
inline constexpr int kMinContentWidth = 280;

/// Pixels after which a text is broken, so that a long label does not widen its dialog: what some
/// 58 average letters take in the window's font, or less on a small screen.
int TextWidth(const wxWindow& window);

/// The text with line breaks where it would be wider than `width` pixels, or TextWidth(), in the
/// window's font; a word that is wider than that is broken as well.
wxString WrapText(wxWindow& window, const wxString& text);
wxString WrapText(wxWindow& window, const wxString& text, int width);
/// The same in a font that the window itself does not use.
wxString WrapText(wxWindow& window, const wxFont& font, const wxString& text, int width);

/// A wrapped text of a limited number of lines; an ellipsis ends one that was cut.
struct ElidedText {
    wxString shown;
    size_t lines;
    bool isCut;
};
ElidedText ElideText(wxWindow& window, const wxFont& font, const wxString& text, size_t maxLines,
                     int width);

/// Makes the whole of a text known that `window` shows cut: as tool tip and accessible name.
void TellWhole(wxWindow& window, const wxString& text);

/// The same for a label that ends what it has no room for with an ellipsis; does nothing where all
/// of its text is to be seen. Call it when the label has its size.
void TellWholeIfCut(wxStaticText& label);

/// What is broken into lines once more when its window turns out to be wider than its texts.
class WrappedRow {
public:
    virtual ~WrappedRow() = default;
    /// @param width In pixels.
    virtual void WrapAt(int width) = 0;
};

/// A label that shows a text literally (an ampersand is an ampersand), wrapped. Its accessible name
/// is the text as it is: a screen reader would make a pause where a line ends. What goes beyond the
/// lines that it may have is cut with an ellipsis, and the whole text is the tool tip as well.
class TextLabel : public wxStaticText, public WrappedRow {
public:
    enum class Look { Plain, Heading };

    TextLabel(wxWindow* parent, const wxString& text, size_t maxLines, Look look);

    void WrapAt(int width) override;

    /// Does with a line less. @return Whether it could: a heading keeps two, another text all.
    bool DropLine();

private:
    void ShowWrapped();

    wxString m_text;
    wxFont m_font;
    size_t m_maxLines;
    size_t m_lines = 1;
    int m_width;
};

/// A label for all of a text.
TextLabel* NewText(wxWindow* parent, const wxString& text);

/// A label for a text that may be long where there is little room.
TextLabel* NewLimitedText(wxWindow* parent, const wxString& text, size_t maxLines);

/// The same for what says which token the dialog is about: its most prominent text.
TextLabel* NewHeading(wxWindow* parent, const wxString& text, size_t maxLines);
wxFont HeadingFont(const wxWindow& window);

/// Shows the beginning of a label, so many bytes of UTF-8, in another font's weight and size. The
/// label measures itself anew.
void MarkBeginning(wxStaticText& label, size_t bytes, const wxFont& font);

/// Gives a label another text, wrapped in the label's own font, and the accessible name with it.
void ShowWrapped(wxStaticText& label, const wxString& text, int width);

/// A check box whose text is wrapped.
wxCheckBox* NewCheckBox(wxWindow* parent, wxWindowID id, const wxString& text);

/// Gives a label at least the size of its text in the font that was set for it. The toolkit learns
/// of that font only when the window is shown, and would lay it out for another one until then.
void ReserveRoom(wxStaticText& label);

/// Lines up the texts of all labels in the window at the side where reading starts. The toolkit
/// would line them up at the other side where that is the right one.
void AlignLabels(wxWindow& window);

/// Keeps the text of a multi-line field `pixels` away from its border.
void PadText(const wxTextCtrl& field, int pixels);

/// Gives a multi-line field that only shows a text the height of so many lines, with `padding`
/// pixels around them, and has the wheel and the keyboard scroll it by whole lines.
void ScrollByLines(wxTextCtrl& field, int lines, int padding);

/// Gives a multi-line field that only shows something the look of a text on the dialog, not that of
/// an input.
void LookReadOnly(wxTextCtrl& field);

struct ButtonRow {
    wxButton* ok;
    wxButton* cancel;
};

/// Adds OK (wxID_OK, the default) and Cancel (wxID_CANCEL) to the bottom right of `sizer`.
/// @param okLabel Translated; may have a mnemonic.
ButtonRow AddButtonRow(wxWindow* parent, wxSizer* sizer, const wxString& okLabel);

/// Gives the window its content, with a margin, and the size that it needs, see FitScreen();
/// centres it at the pointer. To be called when all controls are there.
void Finish(wxTopLevelWindow& window, wxSizer* content);

}  // namespace zeldlg::layout
