// Asks how a blocked PIN shall be unblocked: with the PUK, or off-line with the help desk and one
// of its algorithms.
#pragma once

#include <wx/combobox.h>
#include <wx/dialog.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "widgets/accessible.h"
#include "widgets/text_panel.h"

namespace zeldlg {

/// Name of an unlocking algorithm. A code that is not known is shown as its number: its row has
/// to be there, or the rows below it would not be those of the host's array.
wxString AlgorithmName(uint32_t code);

/// 1 for the PUK, 2 for the off-line unlock.
uint32_t UnblockMethodOf(bool pukChosen, bool offlineChosen);

/// Place of the selected row in the host's array; 0 when there is no row.
/// @param selection The list's selection, negative when there is none.
uint32_t AlgorithmIndexOf(int selection);

class CSelectUnblockMethodDialog : public wxDialog {
public:
    /// Opens with the first method that is offered.
    /// @param algorithms Codes, in the order of the list; the off-line unlock is offered when there
    ///                   is one.
    CSelectUnblockMethodDialog(bool pukOffered, const std::vector<uint32_t>& algorithms);

    /// 1 for the PUK, 2 for the off-line unlock.
    uint32_t Method() const;

    /// Place of the selected algorithm, 0 for the first; also when the PUK is chosen.
    uint32_t AlgorithmIndex() const;

private:
    void AddPukChoice(bool offered);
    void AddOfflineChoice(bool offered);
    void AddExplanation();
    void AddAlgorithms(const std::vector<uint32_t>& algorithms);
    void AddButtons(bool anyOffered);

    void ShowWhetherOffline();

    wxBoxSizer* m_rows;
    wxRadioButton* m_puk = nullptr;
    wxRadioButton* m_offline = nullptr;
    CTextPanel* m_explanation = nullptr;
    wxComboBox* m_algorithms = nullptr;
    std::optional<LiveDescription> m_description;  // of the algorithms
};

}  // namespace zeldlg
