#include "widgets/screen_fit.h"

#include <gtk/gtk.h>
#include <wx/scrolwin.h>
#include <wx/settings.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>

#include <algorithm>
#include <set>
#include <vector>

#include "widgets/button.h"
#include "widgets/desktop.h"
#include "widgets/layout.h"

namespace zeldlg::layout {

namespace {

// Pixels that a window's frame takes, with a little air; its title bar is as high as a line
// besides.
const wxSize kFrame(16, 32);

using Windows = std::set<const wxWindow*>;

// NOLINTNEXTLINE(misc-no-recursion): sizers are a tree of few levels
void Collect(const wxSizer& sizer, Windows& found) {
    if (const auto* const box = dynamic_cast<const wxStaticBoxSizer*>(&sizer)) {
        found.insert(box->GetStaticBox());
    }
    for (const wxSizerItem* const item : sizer.GetChildren()) {
        if (item->IsSizer()) {
            Collect(*item->GetSizer(), found);
        } else if (item->IsWindow()) {
            found.insert(item->GetWindow());
        }
    }
}

Windows WindowsOf(const wxSizerItem& row) {
    Windows found;
    if (row.IsSizer()) {
        Collect(*row.GetSizer(), found);
    } else if (row.IsWindow()) {
        found.insert(row.GetWindow());
    }
    return found;
}

bool HasButton(const wxSizerItem* row) {
    const Windows windows = WindowsOf(*row);
    return std::any_of(windows.begin(), windows.end(), [](const wxWindow* each) {
        return dynamic_cast<const Button*>(each) != nullptr;
    });
}

// How many rows stand above the buttons; all, where there are none.
size_t RowsAboveButtons(const wxSizer& rows) {
    const wxSizerItemList& list = rows.GetChildren();
    return static_cast<size_t>(
        std::distance(list.begin(), std::find_if(list.begin(), list.end(), HasButton)));
}

// How many rows are to scroll when there is so much too little room.
size_t RowsToScroll(wxSizer& rows, const wxSize& missing) {
    const wxWindow* const first = rows.GetItem(size_t{0})->GetWindow();
    const bool isPicture = dynamic_cast<const wxStaticBitmap*>(first) != nullptr;
    if (isPicture && missing.x <= 0 && missing.y <= first->GetBestSize().y / 2) {
        return 1;
    }
    return RowsAboveButtons(rows);
}

void WrapAtRealWidth(wxSizer& rows) {
    const int width = rows.GetMinSize().x;
    for (wxSizerItem* const row : rows.GetChildren()) {
        if (auto* const wrapped = dynamic_cast<WrappedRow*>(row->GetWindow())) {
            const bool hasSides = (row->GetFlag() & wxLEFT) != 0;
            wrapped->WrapAt(width - (hasSides ? 2 * row->GetBorder() : 0));
        }
    }
}

bool DropHeadingLine(const wxWindow& window) {
    return std::any_of(window.GetChildren().begin(), window.GetChildren().end(),
                       [](wxWindow* child) {
                           auto* const label = dynamic_cast<TextLabel*>(child);
                           return label != nullptr && label->DropLine();
                       });
}

void MoveFirstRow(wxSizer& from, wxSizer& to) {
    const wxSizerItem& row = *from.GetItem(size_t{0});
    const int share = row.GetProportion();
    const int flags = row.GetFlag();
    const int border = row.GetBorder();
    if (wxSizer* const sizer = row.GetSizer()) {
        from.Detach(0);
        to.Add(sizer, share, flags, border);
    } else if (wxWindow* const window = row.GetWindow()) {
        from.Detach(0);
        to.Add(window, share, flags, border);
    } else {
        const wxSize spacer = row.GetSpacer();
        from.Remove(0);
        to.Add(spacer.x, spacer.y, share, flags, border);
    }
}

// What `content` takes when it scrolls in `room`: a bar in one direction takes room in the other.
wxSize WithScrollBars(const wxSize& content, const wxSize& room, const wxWindow& area) {
    wxSize size = content;
    if (content.x > room.x) {
        size.y += wxSystemSettings::GetMetric(wxSYS_HSCROLL_Y, &area);
    }
    if (content.y > room.y) {
        size.x += wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, &area);
    }
    size.DecTo(room);
    return size;
}

// Puts the first rows into an area that scrolls, by keyboard too.
void Scroll(wxTopLevelWindow& window, wxSizer& rows, size_t count, const wxSize& room) {
    const wxSize around = window.GetSizer()->GetMinSize() - rows.GetMinSize();
    auto* const area =
        new wxScrolledWindow(&window, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                             wxHSCROLL | wxVSCROLL | wxBORDER_NONE | wxTAB_TRAVERSAL);
    area->Hide();  // what comes into a visible one would be shown only when the toolkit is idle
    // Bars that only show when the mouse is near would leave the rest unnoticed.
    gtk_scrolled_window_set_overlay_scrolling(GTK_SCROLLED_WINDOW(area->GetHandle()), FALSE);
    auto* const content = new wxBoxSizer(wxVERTICAL);
    for (size_t row = 0; row < count; ++row) {
        MoveFirstRow(rows, *content);
    }
    Windows staying{area};
    Collect(rows, staying);
    const std::vector<wxWindow*> children(window.GetChildren().begin(), window.GetChildren().end());
    for (wxWindow* const child : children) {
        if (!staying.contains(child)) {
            child->Reparent(area);
        } else if (child != area) {
            child->MoveAfterInTabOrder(window.GetChildren().back());
        }
    }
    area->SetSizer(content);
    area->SetScrollRate(area->GetCharWidth(), area->GetCharHeight());
    const wxSize needed = content->GetMinSize();
    area->SetVirtualSize(needed);
    const wxSize rest = rows.GetMinSize();
    area->SetMinSize(WithScrollBars(needed, room - around - wxSize(0, rest.y), *area));
    rows.Insert(0, area, wxSizerFlags(1).Expand());
    area->Show();
}

}  // namespace

wxSize RoomForContent(const wxWindow& window) {
    return RoomAtPointer().GetSize() - kFrame - wxSize(0, window.GetCharHeight());
}

int RoomForLine(const wxWindow& window) {
    return RoomForContent(window).x - 2 * kMargin -
           wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, &window);
}

void FitScreen(wxTopLevelWindow& window, wxSizer& rows) {
    WrapAtRealWidth(rows);
    const wxSize room = RoomForContent(window);
    const auto missing = [&window, room] { return window.GetSizer()->GetMinSize() - room; };
    while (missing().y > 0 && DropHeadingLine(window)) {
    }
    if (missing().x > 0 || missing().y > 0) {
        Scroll(window, rows, RowsToScroll(rows, missing()), room);
    }
}

}  // namespace zeldlg::layout
