#include "resources/pictures.h"

#include "resources/bitmaps.h"
#include "resources/embedded_files.h"

namespace zeldlg {

wxBitmapBundle SignaturePicture() { return TwoForms(PngBitmap(SignaturePng()), SignatureTwice()); }

wxBitmapBundle BioTokenPicture() { return TwoForms(PngBitmap(BioTokenPng()), BioTokenTwice()); }

}  // namespace zeldlg
