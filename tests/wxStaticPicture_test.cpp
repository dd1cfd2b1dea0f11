#include "orvix1/wxStaticPicture.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::static_picture_t;
using orvix1::wxStaticPicture;
using orvix1_test::paint_canvas_t;
using orvix1_test::pump_events;

const wxColour k_blue(0, 0, 255);

// A blue 10x6 picture whose left half is masked out (the mask colour is
// magenta).
wxImage half_masked_image() {
  return orvix1_test::half_masked_image(wxSize(10, 6), k_blue, wxColour(255, 0, 255));
}

TEST(StaticPictureValueTest, TheMaskIsGivenOnlyWhenAskedForAndKeptByThePicture) {
  const static_picture_t picture(half_masked_image());
  EXPECT_EQ(picture.GetSize(), wxSize(10, 6));
  EXPECT_NE(picture.getBitmap(true).GetMask(), nullptr);
  const wxBitmap plain = picture.getBitmap(false);
  ASSERT_TRUE(plain.IsOk());
  EXPECT_EQ(plain.GetMask(), nullptr);
  EXPECT_EQ(plain.GetSize(), wxSize(10, 6));
  EXPECT_NE(picture.getBitmap(true).GetMask(), nullptr);  // still there

  // Without the mask the masked pixels are drawn as they are.
  paint_canvas_t canvas(10, 6, *wxWHITE);
  canvas.paint([&](wxDC& dc) { dc.DrawBitmap(plain, 0, 0, true); });
  EXPECT_TRUE(canvas.all(wxRect(0, 0, 5, 6), wxColour(255, 0, 255)));
}

// A dialog holding one picture control, destroyed with the test.
class StaticPictureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dialog = new wxDialog(nullptr, wxID_ANY, "picture", wxPoint(0, 0), wxSize(200, 150));
    m_dialog->SetBackgroundColour(wxColour(0, 128, 0));
  }
  void TearDown() override {
    m_dialog->Destroy();
    pump_events();
  }
  wxDialog* m_dialog = nullptr;
};

TEST_F(StaticPictureTest, InADialogItTakesThePicturesSizeAndGivesItBackWithItsMask) {
  auto* picture = new wxStaticPicture(m_dialog, wxID_ANY, wxBitmap(half_masked_image()));
  auto* sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(picture, 0, wxALL, 5);
  m_dialog->SetSizer(sizer);
  m_dialog->Layout();
  EXPECT_EQ(picture->GetBestSize(), wxSize(10, 6));
  EXPECT_EQ(picture->GetSize(), wxSize(10, 6));
  EXPECT_EQ(picture->GetPosition(), wxPoint(5, 5));
  EXPECT_FALSE(picture->AcceptsFocus());
  EXPECT_EQ(picture->GetBackgroundColour(), wxColour(0, 128, 0));  // the dialog's

  const wxBitmap masked = picture->getBitmap(true);
  ASSERT_TRUE(masked.IsOk());
  EXPECT_NE(masked.GetMask(), nullptr);
  EXPECT_EQ(picture->getBitmap(false).GetMask(), nullptr);

  wxImage larger(16, 12);
  larger.SetRGB(wxRect(0, 0, 16, 12), 0, 0, 255);
  picture->SetImage(larger);
  m_dialog->Layout();
  EXPECT_EQ(picture->GetBestSize(), wxSize(16, 12));
  EXPECT_EQ(picture->GetSize(), wxSize(16, 12));
}

TEST_F(StaticPictureTest, TheAlignmentStylesPlaceThePictureInALargerWindow) {
  const wxBitmap bitmap(half_masked_image());
  const auto placed = [&](long style) {
    auto* picture = new wxStaticPicture(m_dialog, wxID_ANY, bitmap, wxPoint(0, 0),
                                        wxSize(30, 20), style);
    const wxPoint position = picture->GetPicturePosition();
    picture->Destroy();
    return position;
  };
  EXPECT_EQ(placed(0), wxPoint(0, 0));
  EXPECT_EQ(placed(wxALIGN_CENTRE_HORIZONTAL | wxALIGN_CENTRE_VERTICAL), wxPoint(10, 7));
  EXPECT_EQ(placed(wxALIGN_RIGHT | wxALIGN_BOTTOM), wxPoint(20, 14));
}

TEST_F(StaticPictureTest, ItPaintsItsBackgroundAndThePictureThroughTheMask) {
  auto* picture =
      new wxStaticPicture(m_dialog, wxID_ANY, wxBitmap(half_masked_image()), wxPoint(0, 0),
                          wxSize(30, 20), wxALIGN_CENTRE_HORIZONTAL | wxALIGN_CENTRE_VERTICAL);
  // A sizer keeps the dialog from stretching its only child over its client area.
  auto* sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(picture);
  m_dialog->SetSizer(sizer);
  const wxColour background = picture->GetBackgroundColour();
  paint_canvas_t canvas(30, 20, *wxWHITE);
  canvas.paint([&](wxDC& dc) { picture->DrawPicture(dc); });
  EXPECT_TRUE(canvas.all(wxRect(15, 7, 5, 6), k_blue));
  EXPECT_EQ(canvas.count(wxRect(0, 0, 30, 20), k_blue), 30);
  EXPECT_EQ(canvas.count(wxRect(0, 0, 30, 20), background), 30 * 20 - 30);

  // On screen the window paints the same.
  m_dialog->Show();
  m_dialog->Layout();
  ASSERT_EQ(picture->GetRect(), wxRect(0, 0, 30, 20));
  picture->Refresh();
  picture->Update();
  pump_events();
  wxBitmap shot(30, 20, 24);
  {
    wxClientDC screen(picture);
    wxMemoryDC memory(shot);
    memory.Blit(0, 0, 30, 20, &screen, 0, 0);
  }
  const wxImage shown = shot.ConvertToImage();
  EXPECT_EQ(wxColour(shown.GetRed(17, 10), shown.GetGreen(17, 10), shown.GetBlue(17, 10)),
            k_blue);
  EXPECT_EQ(wxColour(shown.GetRed(12, 10), shown.GetGreen(12, 10), shown.GetBlue(12, 10)),
            background);
}

TEST_F(StaticPictureTest, ItCanBeMadeInTwoStepsAndByItsClassName) {
  std::unique_ptr<wxObject> made(wxCreateDynamicObject("wxStaticPicture"));
  ASSERT_NE(made, nullptr);
  EXPECT_TRUE(made->IsKindOf(wxCLASSINFO(wxStaticPicture)));

  auto* picture = new wxStaticPicture;
  EXPECT_FALSE(picture->GetPicture().IsOk());
  ASSERT_TRUE(picture->Create(m_dialog, wxID_ANY, wxBitmap(half_masked_image())));
  EXPECT_EQ(picture->GetSize(), wxSize(10, 6));
  picture->SetPicture(static_picture_t());
  EXPECT_FALSE(picture->getBitmap(true).IsOk());
  EXPECT_EQ(picture->GetBestSize(), wxSize(0, 0));
}

}  // namespace
