// The library's application object, whose OnInit its own start does not call.
#include "runtime/dll_app.h"

#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/translation.h>

namespace zeldlg {

namespace {

int PngHandlers() {
    int count = 0;
    for (const wxObject* const each : wxImage::GetHandlers()) {
        const auto* const handler = dynamic_cast<const wxImageHandler*>(each);
        count += handler->GetType() == wxBITMAP_TYPE_PNG ? 1 : 0;
    }
    return count;
}

TEST(DllApp, OnInitLoadsTheTextsAndAddsOneHandlerOfPngPictures) {
    wxAppConsole* const application = wxApp::GetInstance();
    ASSERT_TRUE(wxImage::RemoveHandler("PNG file"));
    {
        CDllApp app;
        wxTranslations* const first = wxTranslations::Get();
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(PngHandlers(), 0);
        EXPECT_TRUE(app.OnInit());
        EXPECT_EQ(PngHandlers(), 1);
        EXPECT_TRUE(app.OnInit());
        EXPECT_EQ(PngHandlers(), 1);
        EXPECT_FALSE(app.GetExitOnFrameDelete());
    }
    wxApp::SetInstance(application);
    wxTranslations::Set(nullptr);
    const wxImageHandler* const handler = wxImage::FindHandler(wxBITMAP_TYPE_PNG);
    ASSERT_NE(handler, nullptr);
    EXPECT_EQ(handler->GetName(), "PNG file");
    EXPECT_EQ(handler->GetMimeType(), "image/png");
}

}  // namespace

}  // namespace zeldlg
