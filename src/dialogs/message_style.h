// What the style flags of a message box stand for: which icon, which buttons.
// The flags are the toolkit's; no window is needed to read them.
#pragma once

namespace zeldlg {

enum class MessageIcon { Information, Warning, Error, Question };

enum class MessageButtons { Ok, OkCancel, YesNo };

MessageIcon MessageIconOf(long style);

MessageButtons MessageButtonsOf(long style);

}  // namespace zeldlg
