#ifndef ORVIX1_SRC_TASKS_USAGE_STATISTICS_H
#define ORVIX1_SRC_TASKS_USAGE_STATISTICS_H

// Marks the span of an operation for usage statistics: "<name><start>" when
// it opens, "<name><finish>" when it closes. This build collects no usage
// statistics, so the scope only keeps the places that would report; a
// collector plugs in here without touching its callers.

namespace orvix1 {
namespace tasks {

class usage_statistics_scope_t {
 public:
  usage_statistics_scope_t(const char* /*name*/, const char* /*start_suffix*/,
                           const char* /*finish_suffix*/) {}
  usage_statistics_scope_t(const usage_statistics_scope_t&) = delete;
  usage_statistics_scope_t& operator=(const usage_statistics_scope_t&) = delete;
};

}  // namespace tasks
}  // namespace orvix1

#endif
