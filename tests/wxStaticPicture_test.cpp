#include "orvix1/wxStaticPicture.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::static_picture_t;
using orvix1::wxStaticPicture;
using orvix1_test::paint_canvas_t;

const wxColour k_blue(0, 0, 255), k_magenta(255, 0, 255);

// A blue 10x6 picture whose left half is masked out (the mask colour is
// magenta).
wxImage half_masked_image() {
  return orvix1_test::half_masked_image(wxSize(10, 6), k_blue, k_magenta);
}

TEST(StaticPictureValueTest, TheMaskIsGivenOnlyWhenAskedForAndKeptByThePicture) {
  const static_picture_t picture(half_masked_image());
  const wxBitmap plain = picture.getBitmap(false);
  ASSERT_TRUE(plain.IsOk());
  EXPECT_EQ(plain.GetMask(), nullptr);
  EXPECT_EQ(plain.GetSize(), wxSize(10, 6));
  EXPECT_NE(picture.getBitmap(true).GetMask(), nullptr);  // still there
  // Without the mask the masked pixels are drawn as they are.
  paint_canvas_t canvas(10, 6);
  canvas.paint([&](wxDC& dc) { dc.DrawBitmap(plain, 0, 0, true); });
  EXPECT_TRUE(canvas.all(wxRect(0, 0, 5, 6), k_magenta));
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

TEST_F(StaticPictureTest, MadeInOneOrTwoStepsItTakesThePicturesSizeAndFollowsANewOne) {
  wxStaticPicture* picture = add_picture();
  EXPECT_EQ(picture->GetRect(), wxRect(5, 5, 10, 6));
  EXPECT_FALSE(picture->AcceptsFocus());
  EXPECT_EQ(picture->GetBackgroundColour(), wxColour(0, 128, 0));  // the dialog's
  EXPECT_NE(picture->getBitmap(true).GetMask(), nullptr);

  picture->SetImage(wxImage(16, 12));
  m_dialog->Layout();
  EXPECT_EQ(picture->GetSize(), wxSize(16, 12));
  picture->SetPicture(static_picture_t());
  EXPECT_EQ(picture->GetBestSize(), wxSize(0, 0));

  std::unique_ptr<wxObject> made(wxCreateDynamicObject("wxStaticPicture"));  // two steps
  ASSERT_TRUE(made && made->IsKindOf(wxCLASSINFO(wxStaticPicture)));
  auto* second = static_cast<wxStaticPicture*>(made.release());
  ASSERT_TRUE(second->Create(m_dialog, wxID_ANY, wxBitmap(half_masked_image())));
  EXPECT_EQ(second->GetSize(), wxSize(10, 6));
}

TEST_F(StaticPictureTest, TheAlignmentStylesPlaceThePictureInALargerWindow) {
  const wxSize larger(30, 20);
  EXPECT_EQ(add_picture(larger)->GetPicturePosition(), wxPoint(0, 0));
  EXPECT_EQ(add_picture(larger, wxALIGN_CENTRE_HORIZONTAL | wxALIGN_CENTRE_VERTICAL)
                ->GetPicturePosition(),
            wxPoint(10, 7));
  EXPECT_EQ(add_picture(larger, wxALIGN_RIGHT | wxALIGN_BOTTOM)->GetPicturePosition(),
            wxPoint(20, 14));
}

TEST_F(StaticPictureTest, ItPaintsItsBackgroundAndThePictureThroughTheMaskOnScreenToo) {
  wxStaticPicture* picture =
      add_picture(wxSize(30, 20), wxALIGN_CENTRE_HORIZONTAL | wxALIGN_CENTRE_VERTICAL);
  const wxColour background = picture->GetBackgroundColour();
  paint_canvas_t canvas(30, 20);
  canvas.paint([&](wxDC& dc) { picture->DrawPicture(dc); });
  EXPECT_TRUE(canvas.all(wxRect(15, 7, 5, 6), k_blue));
  EXPECT_EQ(canvas.count(wxRect(0, 0, 30, 20), k_blue), 30);
  EXPECT_EQ(canvas.count(wxRect(0, 0, 30, 20), background), 30 * 20 - 30);

  m_dialog->Show();
  ASSERT_EQ(picture->GetRect(), wxRect(0, 0, 30, 20));
  picture->Refresh();
  picture->Update();
  orvix1_test::pump_events();
  wxClientDC window(picture);
  paint_canvas_t screen(30, 20);
  screen.paint([&](wxDC& dc) { dc.Blit(0, 0, 30, 20, &window, 0, 0); });
  EXPECT_EQ(screen.at(17, 10), k_blue);
  EXPECT_EQ(screen.at(12, 10), background);
}

}  // namespace
