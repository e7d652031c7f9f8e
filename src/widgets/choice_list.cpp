#include "widgets/choice_list.h"

#include <gtk/gtk.h>
#include <wx/settings.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "widgets/accessible.h"
#include "widgets/layout.h"
#include "widgets/screen_fit.h"

namespace zeldlg {

namespace {

// Shares of the width at which texts are broken.
constexpr double kMinWidth = 0.8;
constexpr double kMaxWidth = 1.4;
constexpr int kMinRows = 4;
constexpr int kMaxRows = 10;
constexpr int kFrame = 2;
// What of the rows says how wide the list is: measuring one takes as long as adding four, and as
// long as it is long.
constexpr unsigned int kMeasuredRows = 500;
constexpr size_t kMeasuredCharacters = 200;
constexpr double kScrollStep = 40;

GtkTreeView* TreeOf(const wxListBox& list) {
    return GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(list.GetHandle())));
}

struct FreePath {
    void operator()(GtkTreePath* path) const { gtk_tree_path_free(path); }
};

// A host's text stays one row, whatever is in it.
void KeepRowsSingleLine(GtkTreeView* tree) {
    GList* const cells =
        gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(gtk_tree_view_get_column(tree, 0)));
    for (const GList* cell = cells; cell != nullptr; cell = cell->next) {
        g_object_set(cell->data, "single-paragraph-mode", TRUE, nullptr);
    }
    g_list_free(cells);
}

// The toolkit's search compares with what a row begins with; "reader 2" is a way to say which, too.
gboolean IsOtherRow(GtkTreeModel* model, gint, const gchar* typed, GtkTreeIter* row,
                    gpointer data) {
    const std::unique_ptr<GtkTreePath, FreePath> path(gtk_tree_model_get_path(model, row));
    const int* const place = gtk_tree_path_get_indices(path.get());
    const wxString text =
        static_cast<const wxListBox*>(data)->GetString(static_cast<unsigned>(*place));
    return text.Lower().Contains(wxString::FromUTF8(typed).Lower()) ? FALSE : TRUE;
}

int RowHeight(GtkTreeView* tree) {
    int height = 0;
    gtk_tree_view_column_cell_get_size(gtk_tree_view_get_column(tree, 0), nullptr, nullptr, nullptr,
                                       nullptr, &height);
    int separator = 0;
    gtk_widget_style_get(GTK_WIDGET(tree), "vertical-separator", &separator, nullptr);
    return height + separator;
}

bool IsTouch(const GdkEvent& event) {
    switch (event.type) {
        case GDK_KEY_PRESS:
        case GDK_BUTTON_PRESS:
        case GDK_TOUCH_BEGIN:
        case GDK_SCROLL:
            return true;
        default:
            return false;
    }
}

// The toolkit's own events leave out the scroll bars and what lies between them and the rows.
gboolean OnEvent(GtkWidget*, GdkEvent* event, const std::function<void()>* touched) {
    if (IsTouch(*event)) {
        (*touched)();
    }
    return FALSE;
}

}  // namespace

ChoiceList::ChoiceList(wxWindow* parent, wxStaticText& label)
    : wxListBox(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr,
                wxLB_SINGLE | wxHSCROLL) {
    SetLabelFor(label, *this);
    // The rows take the keyboard, not the frame around them.
    gtk_widget_set_can_focus(GetHandle(), FALSE);
    KeepRowsSingleLine(TreeOf(*this));
    gtk_tree_view_set_enable_search(TreeOf(*this), FALSE);
    // Bars that only show when the mouse is near would leave the other rows unnoticed.
    gtk_scrolled_window_set_overlay_scrolling(GTK_SCROLLED_WINDOW(GetHandle()), FALSE);
    Bind(wxEVT_KEY_DOWN, &ChoiceList::OnKeyDown, this);
    // The base has kept its own idea while it was made; no row need ever come to correct that.
    InvalidateBestSize();
}

// While the view has its rows, GTK takes them out one by one, and the next dialog waits. The base
// still needs them, without a reference of its own: they go with the widget.
ChoiceList::~ChoiceList() {
    GtkTreeView* const tree = TreeOf(*this);
    g_signal_handlers_disconnect_by_data(gtk_tree_view_get_selection(tree), this);
    g_object_set_data_full(G_OBJECT(GetHandle()), "zeldlg-rows",
                           g_object_ref(gtk_tree_view_get_model(tree)), g_object_unref);
    gtk_tree_view_set_model(tree, nullptr);
}

void ChoiceList::LetSearch() {
    gtk_tree_view_set_enable_search(TreeOf(*this), TRUE);
    gtk_tree_view_set_search_equal_func(TreeOf(*this), IsOtherRow, this, nullptr);
}

void ChoiceList::ReportTouches(std::function<void()> touched) {
    m_touched = std::move(touched);
    GtkScrolledWindow* const frame = GTK_SCROLLED_WINDOW(GetHandle());
    for (GtkWidget* const part :
         {GetHandle(), GTK_WIDGET(TreeOf(*this)), gtk_scrolled_window_get_hscrollbar(frame),
          gtk_scrolled_window_get_vscrollbar(frame)}) {
        g_signal_connect(part, "event", G_CALLBACK(OnEvent), &m_touched);
    }
    Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { m_touched(); });
}

void ChoiceList::Add(const wxString& text, uint64_t value) {
    Append(text, reinterpret_cast<void*>(value));
    SetSelection(0);
    // From the first row on: Ctrl and a click would leave nothing selected otherwise.
    gtk_tree_selection_set_mode(gtk_tree_view_get_selection(TreeOf(*this)), GTK_SELECTION_BROWSE);
}

void ChoiceList::Choose(unsigned int row) {
    SetSelection(static_cast<int>(row));
    const std::unique_ptr<GtkTreePath, FreePath> path(
        gtk_tree_path_new_from_indices(static_cast<int>(row), -1));
    gtk_tree_view_set_cursor(TreeOf(*this), path.get(), nullptr, FALSE);
    gtk_tree_view_scroll_to_cell(TreeOf(*this), path.get(), nullptr, FALSE, 0, 0);
}

uint64_t ChoiceList::ChosenValue() const {
    const int row = GetSelection();
    return row != wxNOT_FOUND
               ? reinterpret_cast<uint64_t>(GetClientData(static_cast<unsigned int>(row)))
               : 0;
}

// As wide as its rows within limits; whole rows high, and the bar below them.
wxSize ChoiceList::DoGetBestSize() const {
    const int textWidth = layout::TextWidth(*this);
    const int beside = 3 * GetTextExtent("X").x + wxSystemSettings::GetMetric(wxSYS_VSCROLL_X);
    const int widest = static_cast<int>(kMaxWidth * textWidth);
    int width = static_cast<int>(kMinWidth * textWidth);
    for (unsigned row = 0; row < std::min(GetCount(), kMeasuredRows) && width < widest; ++row) {
        const wxString text = GetString(row).Left(kMeasuredCharacters);
        width = std::clamp(GetTextExtent(text).x + beside, width, widest);
    }
    const int height = layout::RoomForContent(*this).y - 2 * layout::kMargin;
    const int rowHeight = RowHeight(TreeOf(*this));
    const int maxRows = std::clamp(height / 2 / rowHeight, kMinRows, kMaxRows);
    const int rows = std::clamp(static_cast<int>(GetCount()), kMinRows, maxRows);
    return {std::min(width, layout::RoomForLine(*this)),
            rows * rowHeight + kFrame + wxSystemSettings::GetMetric(wxSYS_HSCROLL_Y, this)};
}

void ChoiceList::OnKeyDown(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    if (key == WXK_SPACE || key == WXK_NUMPAD_SPACE) {
        return;  // GTK would take it for a double click
    }
    if ((key != WXK_LEFT && key != WXK_RIGHT) || event.HasModifiers()) {
        event.Skip();
        return;
    }
    GtkAdjustment* const place =
        gtk_scrolled_window_get_hadjustment(GTK_SCROLLED_WINDOW(GetHandle()));
    const double step = key == WXK_RIGHT ? kScrollStep : -kScrollStep;
    gtk_adjustment_set_value(place, gtk_adjustment_get_value(place) + step);
}

}  // namespace zeldlg
