#ifndef ORVIX1_BENCH_SUMMARY_REPORTER_H
#define ORVIX1_BENCH_SUMMARY_REPORTER_H

// Prints the usual console report and, at the end, what the benchmarks are
// for: each of our rows against the peers of its family as a ratio, and how
// each implementation grows from N to 10 N.
//
// Benchmarks are named family/implementation/argument; our implementations'
// names start with "orvix". Extra name parts ("iterations:5000",
// "real_time", ...) are ignored. With repetitions the median is used.

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace orvix1_bench {

class summary_reporter_t : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  struct row_key_t {
    std::string family;
    std::string implementation;
    long argument = 0;
    bool operator<(const row_key_t& other) const;
  };
  // What one row measured: time per iteration in ns and its counters.
  using measures_t = std::map<std::string, double>;

  void PrintComparisons() const;
  void PrintGrowth() const;

  std::map<row_key_t, measures_t> m_rows;
};

}  // namespace orvix1_bench

#endif
