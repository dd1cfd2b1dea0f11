#include "core/contract_sites.h"

#include <functional>
#include <set>
#include <string>
#include <tuple>

#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/tasks/WaitCallback.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/fake_element_host.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::contract::site_row_t;
using orvix1::contract::site_t;
using orvix1::elements::element_ptr_t;
using orvix1::elements::UIElement;

std::string text(const char* part) { return part != nullptr ? part : "(null)"; }

const site_row_t& row_of(site_t site) {
  return orvix1::contract::site_rows()[static_cast<std::size_t>(site)];
}

// "file:line function: condition | message", as a host would filter on it.
std::string report_of(const site_row_t& row) {
  return text(row.file) + ":" + std::to_string(row.line) + " " + text(row.function) + ": " +
         text(row.condition) + " | " + (row.message != nullptr ? row.message : "");
}
std::string report_of(const orvix1_test::recorded_assert_t& got) {
  return got.file + ":" + std::to_string(got.line) + " " + got.function + ": " + got.condition +
         " | " + got.message;
}

TEST(ContractSites, EveryRowIsItsOwnSiteAtAPlaceOfItsOwnWithTexts) {
  std::set<std::tuple<std::string, int, std::string>> places;
  for (std::size_t i = 0; i < orvix1::contract::site_count(); ++i) {
    const site_row_t& row = orvix1::contract::site_rows()[i];
    SCOPED_TRACE(report_of(row));
    EXPECT_EQ(static_cast<std::size_t>(row.site), i);  // report() finds a row by its site
    EXPECT_EQ(text(row.file).rfind("src/", 0), 0u);
    EXPECT_GT(row.line, 0);
    EXPECT_NE(text(row.function), "");
    EXPECT_NE(text(row.condition), "");
    EXPECT_NE(text(row.message), "");  // none, or a text
    EXPECT_TRUE(places.insert({text(row.file), row.line, text(row.function)}).second);
  }
}

// A site from each kind of caller whose test checks only the condition: a
// private helper reporting its public caller, a full signature, a task.
// (Free functions and failure branches have their whole texts checked by
// ImageHelpers and UiSettings.)
TEST(ContractSites, RaisedAssertionsReportTheRowOfTheirSite) {
  const auto settings = orvix1::ui_settings_configure_t::get();
  const std::pair<site_t, std::function<void()>> raised[] = {
      {site_t::after_pos_absent,
       [] {
         element_ptr_t parent(new UIElement), stranger(new UIElement);
         const orvix1_test::fake_element_host_t host(parent);  // a detached tree asserts too
         element_ptr_t child(new UIElement(parent));
         parent->ChangeZOrderToAfterElement(child, stranger);
       }},
      {site_t::tooltip_target_taken,
       [] {
         auto* tooltip = new orvix1::wxCustomTooltip;
         tooltip->Attach(nullptr);
         tooltip->Destroy();
       }},
      {site_t::wait_without_status,
       [] {
         orvix1::tasks::WaitCallback().wait(
             boost::weak_ptr<talvar2::threading::scheduler_operation_status_t>());
       }},
  };
  orvix1_test::take_asserts();
  for (const auto& site : raised) {
    site.second();
    const auto asserts = orvix1_test::take_asserts();
    ASSERT_EQ(asserts.size(), 1u) << report_of(row_of(site.first));
    EXPECT_EQ(report_of(asserts[0]), report_of(row_of(site.first)));
  }
  orvix1_test::pump_events();  // the tooltip's Destroy
}

}  // namespace
