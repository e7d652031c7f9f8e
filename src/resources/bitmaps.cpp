#include "resources/bitmaps.h"

#include <wx/image.h>
#include <wx/mstream.h>

namespace zeldlg {

namespace {

// Most screens never ask for the larger form: it is decoded when one does.
class TwoFormsImpl : public wxBitmapBundleImpl {
public:
    TwoFormsImpl(const wxBitmap& once, std::span<const uint8_t> twice)
        : m_once(once), m_twiceFile(twice) {}

    wxSize GetDefaultSize() const override { return m_once.GetSize(); }

    wxSize GetPreferredBitmapSizeAtScale(double scale) const override {
        return scale > kLargestScaleOfOnce ? m_once.GetSize() * 2 : m_once.GetSize();
    }

    wxBitmap GetBitmap(const wxSize& size) override {
        if (size == m_once.GetSize()) {
            return m_once;
        }
        if (!m_twice.IsOk()) {
            m_twice = PngBitmap(m_twiceFile);
        }
        wxBitmap bitmap = m_twice;
        if (bitmap.GetSize() != size) {
            wxBitmap::Rescale(bitmap, size);
        }
        return bitmap;
    }

private:
    static constexpr double kLargestScaleOfOnce = 1.5;

    wxBitmap m_once;
    wxBitmap m_twice;
    std::span<const uint8_t> m_twiceFile;
};

}  // namespace

wxBitmap XpmBitmap(const char* const* xpm) {
    wxImage image(xpm);
    image.InitAlpha();
    return {image};
}

wxBitmap PngBitmap(std::span<const uint8_t> file) {
    wxMemoryInputStream stream(file.data(), file.size());
    wxImage image;
    image.LoadFile(stream, wxBITMAP_TYPE_PNG);
    return {image};
}

wxBitmapBundle TwoForms(const wxBitmap& once, std::span<const uint8_t> twice) {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): counted, and the bundle's from here
    return wxBitmapBundle::FromImpl(new TwoFormsImpl(once, twice));
}

}  // namespace zeldlg
