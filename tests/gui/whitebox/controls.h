// Finds the controls of a dialog, at any depth, as a person would name them, and looks at them.
#pragma once

#include <gtk/gtk.h>
#include <wx/bitmap.h>
#include <wx/control.h>
#include <wx/image.h>
#include <wx/mstream.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace zeldlg::test {

/// All controls of a class, in the order in which they were made.
template <typename Control>
std::vector<Control*> AllOf(const wxWindow& window) {
    std::vector<Control*> found;
    for (wxWindow* const child : window.GetChildren()) {
        if (auto* const control = dynamic_cast<Control*>(child); control != nullptr) {
            found.push_back(control);
        }
        const std::vector<Control*> below = AllOf<Control>(*child);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

/// The one that comes first, counted from 0.
template <typename Control>
Control& Nth(const wxWindow& window, size_t index) {
    return *AllOf<Control>(window).at(index);
}

/// What a label or a box reads, with blanks where its lines end: where that is depends on the font.
inline wxString Unwrapped(const wxControl& label) {
    wxString text = label.GetLabelText();
    text.Replace("\n", " ");
    return text;
}

/// The label that reads so.
inline wxStaticText& LabelReading(const wxWindow& window, const char* text) {
    for (wxStaticText* const label : AllOf<wxStaticText>(window)) {
        if (Unwrapped(*label) == text) {
            return *label;
        }
    }
    throw std::logic_error(std::string("no label reads ") + text);
}

/// What all labels read, those of rules and captions too.
inline std::vector<std::string> Labels(const wxWindow& window) {
    std::vector<std::string> texts;
    for (const wxStaticText* const label : AllOf<wxStaticText>(window)) {
        texts.push_back(Unwrapped(*label).utf8_string());
    }
    return texts;
}

/// Whether a control has that style class of the theme.
inline bool HasStyle(const wxWindow& control, const char* style) {
    return gtk_style_context_has_class(gtk_widget_get_style_context(control.GetHandle()), style) !=
           FALSE;
}

/// Whether two pictures are equal, with their masks or transparent parts.
inline bool SamePicture(const wxBitmap& one, const wxBitmap& other) {
    wxMemoryOutputStream left;
    wxMemoryOutputStream right;
    return one.ConvertToImage().SaveFile(left, wxBITMAP_TYPE_PNG) &&
           other.ConvertToImage().SaveFile(right, wxBITMAP_TYPE_PNG) &&
           left.GetSize() == right.GetSize() &&
           memcmp(left.GetOutputStreamBuffer()->GetBufferStart(),
                  right.GetOutputStreamBuffer()->GetBufferStart(), left.GetSize()) == 0;
}

}  // namespace zeldlg::test
