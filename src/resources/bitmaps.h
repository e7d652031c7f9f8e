// Makes bitmaps of the pictures that are built in, in two resolutions where they have them.
#pragma once

#include <wx/bitmap.h>
#include <wx/bmpbndl.h>

#include <cstdint>
#include <span>

namespace zeldlg {

/// With an alpha channel: the toolkit loses the memory of a picture that has a mask each time when
/// it draws it.
wxBitmap XpmBitmap(const char* const* xpm);

wxBitmap PngBitmap(std::span<const uint8_t> file);

/// A picture and the form of it, twice as wide and high, for screens with twice the resolution.
/// @param twice A PNG file.
wxBitmapBundle TwoForms(const wxBitmap& once, std::span<const uint8_t> twice);

}  // namespace zeldlg
