// What most files of the library include, compiled once.
#pragma once

#include <wx/wx.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>
