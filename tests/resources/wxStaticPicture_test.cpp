#include "orvix1/wxStaticPicture.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"


namespace {

using orvix1::wxStaticPicture;
using orvix1_test::paint_canvas_t;

const wxColour k_blue(0, 0, 255), k_magenta(255, 0, 255);

// A blue 10x6 picture whose left half is masked out in magenta.
wxImage half_masked_image() {
  return orvix1_test::half_masked_image(wxSize(10, 6), k_blue, k_magenta);
}

// A dialog holding picture controls, destroyed with the test.
class StaticPictureTest : public ::testing::Test {
 protected:
  void SetUp() override { m_dialog->SetBackgroundColour(wxColour(0, 128, 0)); }
  void TearDown() override {
    m_dialog->Destroy();
    orvix1_test::pump_events();
  }
  wxStaticPicture* add_picture(const wxSize& size = wxDefaultSize, long style = 0) {
    auto* picture = new wxStaticPicture(m_dialog, wxID_ANY, wxBitmap(half_masked_image()),
                                        wxPoint(0, 0), size, style);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(picture, 0, wxALL, size == wxDefaultSize ? 5 : 0);
    m_dialog->SetSizer(sizer);  // keeps the dialog from stretching its only child
    m_dialog->Layout();
    return picture;
  }
  wxDialog* m_dialog = new wxDialog(nullptr, wxID_ANY, "picture", wxPoint(0, 0), wxSize(200, 150));
};

TEST_F(StaticPictureTest, MadeInOneOrTwoStepsSizedByItsPictureAndPlacedByTheAlignmentStyles) {
  wxStaticPicture* picture = add_picture();
  EXPECT_EQ(picture->GetRect(), wxRect(5, 5, 10, 6));
  EXPECT_FALSE(picture->AcceptsFocus());
  EXPECT_EQ(picture->GetBackgroundColour(), wxColour(0, 128, 0));  // the dialog's
  EXPECT_EQ(picture->getBitmap(false).GetMask(), nullptr);  // the mask only when asked for
  EXPECT_NE(picture->getBitmap(true).GetMask(), nullptr);

  picture->SetImage(wxImage(16, 12));
  m_dialog->Layout();
  EXPECT_EQ(picture->GetSize(), wxSize(16, 12));

  std::unique_ptr<wxObject> made(wxCreateDynamicObject("wxStaticPicture"));  // two steps
  ASSERT_TRUE(made && made->IsKindOf(wxCLASSINFO(wxStaticPicture)));
  auto* second = static_cast<wxStaticPicture*>(made.release());
  ASSERT_TRUE(second->Create(m_dialog, wxID_ANY, wxBitmap(half_masked_image())));
  EXPECT_EQ(second->GetSize(), wxSize(10, 6));

  // Centred in a larger window it paints its background and the picture through the mask.
  picture = add_picture(wxSize(30, 20), wxALIGN_CENTRE_HORIZONTAL | wxALIGN_CENTRE_VERTICAL);
  EXPECT_EQ(picture->GetPicturePosition(), wxPoint(10, 7));
  const wxColour background = picture->GetBackgroundColour();
  paint_canvas_t canvas(30, 20);
  canvas.paint([&](wxDC& dc) { picture->DrawPicture(dc); });
  EXPECT_TRUE(canvas.all(wxRect(15, 7, 5, 6), k_blue));
  EXPECT_EQ(canvas.count(wxRect(0, 0, 30, 20), background), 30 * 20 - 30);
  EXPECT_EQ(add_picture(wxSize(30, 20), wxALIGN_RIGHT | wxALIGN_BOTTOM)->GetPicturePosition(),
            wxPoint(20, 14));
}

}  // namespace
