#include "orvix1/wxQuadSplitter.h"

#include "support/tab_fixture.h"

namespace {

using orvix1::wxAdvancedSplitter;

class QuadSplitterTest : public orvix1_test::tab_frame_test_t {
 protected:
  wxAdvancedSplitter* named(const char* name) const {
    return dynamic_cast<wxAdvancedSplitter*>(wxWindow::FindWindowByName(name, m_quad));
  }
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_quad = new orvix1::wxQuadSplitter(m_host, wxID_ANY, wxPoint(0, 0), wxSize(400, 300));
    for (wxWindow*& window : m_windows) window = new wxPanel(m_quad);
  }
  orvix1::wxQuadSplitter* m_quad = nullptr;
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
  EXPECT_TRUE(!major->IsHorizontalMode() && minor1->IsHorizontalMode());
  EXPECT_EQ(major->GetPanel1(), minor1);
  EXPECT_EQ(minor1->GetPanel2(), m_windows[1]);
  EXPECT_EQ(minor2->GetPanel1(), m_windows[2]);
  EXPECT_EQ(m_windows[3]->GetParent(), minor2);
  minor1->SetRelativeSashPosition(0.3f);  // the minor sashes move together
  EXPECT_EQ(minor2->GetSplitterElement()->GetSashPosition(),
            minor1->GetSplitterElement()->GetSashPosition());
  ASSERT_TRUE(m_quad->SplitHorizontally(m_windows[0], m_windows[1], m_windows[2], m_windows[3]));
  EXPECT_TRUE(major->IsHorizontalMode() && !minor2->IsHorizontalMode());
}

}  // namespace
