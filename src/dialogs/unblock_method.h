// What the choice of an unblock method offers and what it reads out as.
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace zeldlg {

/// Name of an unlocking algorithm. A code that is not known is shown as its number: its row has
/// to be there, or the rows below it would not be those of the host's array.
wxString AlgorithmName(uint32_t code);

/// 1 for the PUK, 2 for the off-line unlock.
uint32_t UnblockMethodOf(bool pukChosen, bool offlineChosen);

/// Place of the selected row in the host's array; 0 when there is no row.
/// @param selection The list's selection, negative when there is none.
uint32_t AlgorithmIndexOf(int selection);

}  // namespace zeldlg
