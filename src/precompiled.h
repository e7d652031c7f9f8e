// What most files of the library include, compiled once. The whole of <wx/wx.h> would cost more:
// every file instantiates again what the headers in here leave open.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/string.h>
#include <wx/textctrl.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>
