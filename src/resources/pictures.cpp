#include "resources/pictures.h"

#include <gtk/gtk.h>
#include <wx/image.h>
#include <wx/mstream.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace zeldlg {

namespace {

// Either an XPM or a PNG file, and a PNG file of twice its width and height.
struct Files {
    const char* const* xpm;
    std::span<const uint8_t> png;
    std::span<const uint8_t> twice;
};

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/picture_files.inc"  // Files kFiles[], in the order of the names
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

// With an alpha channel: the toolkit loses the memory of a picture that has a mask each time when
// it draws it.
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

// Most screens never ask for the larger form: it is decoded when one does.
class TwoForms : public wxBitmapBundleImpl {
public:
    explicit TwoForms(const Files& files)
        : m_once(files.xpm != nullptr ? XpmBitmap(files.xpm) : PngBitmap(files.png)),
          m_twiceFile(files.twice) {}

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

wxBitmapBundle BundleOf(Picture picture) {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): counted, and the bundle's from here
    return wxBitmapBundle::FromImpl(new TwoForms(kFiles[static_cast<size_t>(picture)]));
}

namespace {

constexpr int kAnySize = 0;

using IconInfo = std::unique_ptr<GtkIconInfo, decltype(&g_object_unref)>;

IconInfo FindIcon(const std::string& name, int size) {
    return {gtk_icon_theme_lookup_icon(gtk_icon_theme_get_default(), name.c_str(), size,
                                       GTK_ICON_LOOKUP_FORCE_SIZE),
            g_object_unref};
}

// Themes of today have these signs in one colour only, under another name. What the toolkit itself
// has of the coloured ones is 16 pixels large.
GdkPixbuf* LoadIcon(const std::string& name, int size, const wxColour& colour) {
    const IconInfo coloured = FindIcon(name, size);
    const int drawnAt = coloured != nullptr ? gtk_icon_info_get_base_size(coloured.get()) : 1;
    if (drawnAt != kAnySize && drawnAt < size / 2) {
        if (const IconInfo plain = FindIcon(name + "-symbolic", size)) {
            const GdkRGBA* const rgba = colour;
            return gtk_icon_info_load_symbolic(plain.get(), rgba, nullptr, nullptr, nullptr,
                                               nullptr, nullptr);
        }
    }
    return coloured != nullptr ? gtk_icon_info_load_icon(coloured.get(), nullptr) : nullptr;
}

class NamedIcon : public wxBitmapBundleImpl {
public:
    NamedIcon(const char* name, int size, const wxColour& colour)
        : m_name(name), m_size(size, size), m_colour(colour) {}

    wxSize GetDefaultSize() const override { return m_size; }

    wxSize GetPreferredBitmapSizeAtScale(double scale) const override { return m_size * scale; }

    wxBitmap GetBitmap(const wxSize& size) override {
        GdkPixbuf* const loaded = LoadIcon(m_name, size.x, m_colour);
        return loaded != nullptr ? wxBitmap(loaded) : wxBitmap(size);
    }

private:
    const char* m_name;
    wxSize m_size;
    wxColour m_colour;
};

}  // namespace

wxBitmapBundle ThemeIcon(const char* name, int size, const wxColour& colour) {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): counted, and the bundle's from here
    return wxBitmapBundle::FromImpl(new NamedIcon(name, size, colour));
}

}  // namespace zeldlg
