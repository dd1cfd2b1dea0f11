#include "summary_reporter.h"

#include <cstdio>
#include <sstream>
#include <tuple>

namespace orvix1_bench {
namespace {

constexpr const char* k_time = "time_ns";

std::vector<std::string> split_name(const std::string& name) {
  std::vector<std::string> parts;
  std::stringstream stream(name);
  for (std::string part; std::getline(stream, part, '/');) parts.push_back(part);
  return parts;
}

bool is_ours(const std::string& implementation) { return implementation.rfind("orvix", 0) == 0; }

// Throughput counters say the same as the time; the rest are measures.
bool is_measure(const std::string& counter) {
  return counter != "items_per_second" && counter != "bytes_per_second";
}

}  // namespace

bool summary_reporter_t::row_key_t::operator<(const row_key_t& other) const {
  return std::tie(family, argument, implementation) <
         std::tie(other.family, other.argument, other.implementation);
}

void summary_reporter_t::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.error_occurred) continue;
    const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
    if (run.run_type == Run::RT_Aggregate && !median) continue;
    // A repeated row is its median: the single repetitions do not count.
    if (run.run_type == Run::RT_Iteration && run.repetitions > 1) continue;
    const std::vector<std::string> parts = split_name(run.run_name.str());
    if (parts.size() < 3) continue;  // not family/implementation/argument
    row_key_t key{parts[0], parts[1], std::atol(parts[2].c_str())};
    measures_t measures;
    // Work on one thread is timed by its CPU time, which other processes on
    // the machine do not inflate; work across threads by the clock.
    const bool clock_timed = !run.run_name.time_type.empty();
    const double per_iteration = clock_timed ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    measures[k_time] = per_iteration / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
    for (const auto& counter : run.counters)
      if (is_measure(counter.first)) measures[counter.first] = counter.second.value;
    m_rows[key] = measures;
  }
}

void summary_reporter_t::Finalize() {
  ConsoleReporter::Finalize();
  PrintComparisons();
  PrintGrowth();
}

void summary_reporter_t::PrintComparisons() const {
  std::printf("\nOurs against the peers (ratio = ours / peer: below 1 is faster or smaller)\n");
  std::printf("%-28s %-14s %-18s %14s %-18s %14s %8s\n", "family/argument", "measure", "ours",
              "value", "peer", "value", "ratio");
  for (const auto& ours : m_rows) {
    if (!is_ours(ours.first.implementation)) continue;
    for (const auto& peer : m_rows) {
      if (peer.first.family != ours.first.family || peer.first.argument != ours.first.argument ||
          is_ours(peer.first.implementation))
        continue;
      const std::string row = ours.first.family + "/" + std::to_string(ours.first.argument);
      for (const auto& measure : ours.second) {
        const auto other = peer.second.find(measure.first);
        if (other == peer.second.end() || other->second == 0) continue;
        std::printf("%-28s %-14s %-18s %14.3f %-18s %14.3f %8.2f\n", row.c_str(),
                    measure.first.c_str(), ours.first.implementation.c_str(), measure.second,
                    peer.first.implementation.c_str(), other->second, measure.second / other->second);
      }
    }
  }
}

void summary_reporter_t::PrintGrowth() const {
  std::printf("\nGrowth of the time from N to 10 N (linear is 10)\n");
  std::printf("%-44s %10s %10s %8s\n", "family/implementation", "N", "10 N", "growth");
  for (const auto& small : m_rows) {
    row_key_t large_key = small.first;
    large_key.argument *= 10;
    const auto large = m_rows.find(large_key);
    if (large == m_rows.end()) continue;
    const double before = small.second.at(k_time);
    const double after = large->second.at(k_time);
    const std::string row = small.first.family + "/" + small.first.implementation;
    std::printf("%-44s %10ld %10ld %8.2f\n", row.c_str(), small.first.argument,
                large_key.argument, after / before);
  }
}

}  // namespace orvix1_bench
