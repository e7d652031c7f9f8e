// A PIN dialog with the same controls as the library's, written the way a plain program of the
// toolkit is: what the library's own dialog is compared with.
//
//     zeldlg_bench_bare COUNT                shows it COUNT times, one after the other
//     zeldlg_bench_bare locale COUNT         with the translations of the system's language
//     zeldlg_bench_bare poll ROUNDS MS       shows nothing, and looks for events every 10 ms
//     zeldlg_bench_bare sleep ROUNDS MS      the same without looking

#include <glib.h>
#include <unistd.h>
#include <wx/statline.h>
#include <wx/wx.h>

#include <cstdlib>

#include "cost.h"
#include "memory.h"
#include "note.h"

namespace {

// A red cross and a green check mark, as the library has them.
const wxBitmap& Picture(bool met) {
    static const wxBitmap check(BENCH_ART "/check.png", wxBITMAP_TYPE_PNG);
    static const wxBitmap cross(BENCH_ART "/cross.png", wxBITMAP_TYPE_PNG);
    return met ? check : cross;
}

constexpr int kMargin = 16;
constexpr int kSectionGap = 12;
constexpr int kLineGap = 4;
constexpr int kMinContentWidth = 280;
constexpr unsigned kMinLength = 4;
constexpr unsigned kMaxLength = 8;

class BareDialog : public wxDialog {
public:
    BareDialog()
        : wxDialog(nullptr, wxID_ANY, "Enter PIN", wxDefaultPosition, wxDefaultSize,
                   wxCAPTION | wxSTAY_ON_TOP) {
        auto* const rows = new wxBoxSizer(wxVERTICAL);
        rows->Add(new wxStaticText(this, wxID_ANY, "To log in to \"Identity card\""));
        AddField(*rows);
        AddButtons(*rows);
        rows->Add(new wxStaticLine(this),
                  wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, kSectionGap));
        m_minIcon = AddRule(*rows, "Minimum PIN length 4 bytes", Picture(false));
        m_maxIcon = AddRule(*rows, "Maximum PIN length 8 bytes", Picture(true));
        rows->SetMinSize(kMinContentWidth, wxDefaultCoord);
        auto* const margin = new wxBoxSizer(wxVERTICAL);
        margin->Add(rows, wxSizerFlags(1).Expand().Border(wxALL, kMargin));
        SetSizerAndFit(margin);
        Centre();
        m_field->SetFocus();
        Bind(wxEVT_TEXT, &BareDialog::OnText, this);
    }

private:
    void AddField(wxSizer& rows) {
        rows.Add(new wxStaticText(this, wxID_ANY, "Enter PIN:"),
                 wxSizerFlags().Border(wxTOP, kSectionGap));
        const int width = GetTextExtent(wxString('*', 18)).GetWidth();
        m_field = new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                 wxSize(width, 24), wxTE_PASSWORD);
        rows.Add(m_field, wxSizerFlags().Border(wxTOP, kLineGap));
    }

    void AddButtons(wxSizer& rows) {
        auto* const row = new wxBoxSizer(wxHORIZONTAL);
        m_ok = new wxButton(this, wxID_OK, "OK");
        m_ok->SetDefault();
        m_ok->Disable();
        row->Add(m_ok);
        row->AddSpacer(kSectionGap);
        row->Add(new wxButton(this, wxID_CANCEL, "Cancel"));
        rows.Add(row, wxSizerFlags().Right().Border(wxTOP, kSectionGap));
    }

    wxStaticBitmap* AddRule(wxSizer& rows, const wxString& text, const wxBitmap& picture) {
        auto* const icon =
            new wxStaticBitmap(this, wxID_ANY, picture, wxDefaultPosition, wxSize(16, 16));
        auto* const line = new wxBoxSizer(wxHORIZONTAL);
        line->Add(icon, wxSizerFlags().CentreVertical());
        line->AddSpacer(kLineGap * 2);
        line->Add(new wxStaticText(this, wxID_ANY, text), wxSizerFlags().CentreVertical());
        rows.Add(line, wxSizerFlags().Border(wxTOP, kLineGap));
        return icon;
    }

    void OnText(wxCommandEvent&) {
        const size_t length = m_field->GetValue().length();
        m_minIcon->SetBitmap(Picture(length >= kMinLength));
        m_maxIcon->SetBitmap(Picture(length <= kMaxLength));
        m_ok->Enable(length >= kMinLength && length <= kMaxLength);
        m_ok->SetDefault();
    }

    wxTextCtrl* m_field = nullptr;
    wxButton* m_ok = nullptr;
    wxStaticBitmap* m_minIcon = nullptr;
    wxStaticBitmap* m_maxIcon = nullptr;
};

int ShowOnce() {
    BareDialog dialog;
    return dialog.ShowModal();
}

void HandleEvents() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

// Nanoseconds of `work` when nothing has to be fetched from memory again.
void NoteOneAfterTheOther(void (*work)()) {
    constexpr int kTimes = 1000;
    const int64_t begin = NoteClock();
    for (int left = kTimes; left > 0; --left) {
        work();
    }
    NoteValue("at-once", (NoteClock() - begin) / kTimes);
}

// The least that a program costs that wakes up every ten milliseconds and does that.
int WakeUpAtIntervals(int rounds, int milliseconds, void (*work)()) {
    for (; rounds > 0; --rounds) {
        const Cost before = CostSoFar();
        for (const int64_t end = NoteClock() + milliseconds * INT64_C(1000000);
             NoteClock() < end;) {
            work();
            usleep(10'000);
        }
        NoteCostSince(&before);
        NoteOneAfterTheOther(work);
    }
    return EXIT_SUCCESS;
}

class BareApp : public wxApp {
public:
    // The command line is not the toolkit's.
    bool OnInit() override {
        wxImage::AddHandler(new wxPNGHandler);
        return true;
    }

    int OnRun() override {
        if (argc > 3) {
            return WakeUpAtIntervals(
                wxAtoi(argv[2]), wxAtoi(argv[3]), argv[1] == "poll" ? HandleEvents : [] {});
        }
        if (argc > 2 && argv[1] == "locale") {
            m_locale.Init(wxLANGUAGE_DEFAULT, wxLOCALE_LOAD_DEFAULT);
            m_locale.AddCatalog("tokenutils");
        }
        for (int left = wxAtoi(argv[argc - 1]); left > 0; --left) {
            usleep(BENCH_PAUSE);
            HandleEvents();
            Note("call");
            const int answer = ShowOnce();
            Note("return");
            if (answer != wxID_OK) {
                return EXIT_FAILURE;
            }
            HandleEvents();
        }
        NoteValue("rss", ResidentKb());
        return EXIT_SUCCESS;
    }

private:
    wxLocale m_locale;
};

}  // namespace

wxIMPLEMENT_APP(BareApp);
