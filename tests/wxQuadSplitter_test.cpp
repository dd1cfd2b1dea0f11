#include "orvix1/wxQuadSplitter.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include "support/wx_test_environment.h"

namespace {

using orvix1::wxAdvancedSplitter;
using orvix1::wxQuadSplitter;

class QuadSplitterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_frame = new wxFrame(nullptr, wxID_ANY, "quad", wxPoint(0, 0), wxSize(500, 400));
    m_quad = new wxQuadSplitter(m_frame, wxID_ANY, wxPoint(0, 0), wxSize(400, 300));
    for (wxWindow*& window : m_windows) window = new wxPanel(m_quad);
    m_frame->Show();
  }
  void TearDown() override {
    m_frame->Destroy();
    orvix1_test::pump_events();
  }
  wxAdvancedSplitter* named(const char* name) const {
    return dynamic_cast<wxAdvancedSplitter*>(wxWindow::FindWindowByName(name, m_quad));
  }

  wxFrame* m_frame = nullptr;
  wxQuadSplitter* m_quad = nullptr;
  wxWindow* m_windows[4] = {};
};

TEST_F(QuadSplitterTest, BothOrientationsNestTheNamedSplitters) {
  EXPECT_FALSE(m_quad->SplitVertically(m_windows[0], nullptr, m_windows[2], m_windows[3]));
  ASSERT_TRUE(m_quad->SplitVertically(m_windows[0], m_windows[1], m_windows[2], m_windows[3]));
  wxAdvancedSplitter* major = named("major_splitter");
  wxAdvancedSplitter* minor1 = named("minor_splitter1");
  wxAdvancedSplitter* minor2 = named("minor_splitter2");
  ASSERT_TRUE(major && minor1 && minor2);
  EXPECT_EQ(major->GetSize(), m_quad->GetClientSize());
  EXPECT_FALSE(major->IsHorizontalMode());
  EXPECT_TRUE(minor1->IsHorizontalMode());
  EXPECT_EQ(major->GetPanel1(), minor1);
  EXPECT_EQ(minor1->GetPanel2(), m_windows[1]);
  EXPECT_EQ(minor2->GetPanel1(), m_windows[2]);
  EXPECT_EQ(m_windows[3]->GetParent(), minor2);

  // The minor sashes move together.
  minor1->SetRelativeSashPosition(0.3f);
  EXPECT_EQ(minor2->GetSplitterElement()->GetSashPosition(),
            minor1->GetSplitterElement()->GetSashPosition());

  ASSERT_TRUE(m_quad->SplitHorizontally(m_windows[0], m_windows[1], m_windows[2], m_windows[3]));
  EXPECT_TRUE(major->IsHorizontalMode());
  EXPECT_FALSE(minor2->IsHorizontalMode());
  EXPECT_EQ(minor1->GetPanel2(), m_windows[1]);
  EXPECT_EQ(minor2->GetPanel1(), m_windows[2]);
  m_quad->SetSize(600, 300);
  EXPECT_EQ(major->GetSize(), wxSize(600, 300));
}

}  // namespace
