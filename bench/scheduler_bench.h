#ifndef ORVIX1_BENCH_SCHEDULER_BENCH_H
#define ORVIX1_BENCH_SCHEDULER_BENCH_H

namespace orvix1_bench {

// Repetitions of each scheduler throughput row in a plain run.
constexpr int k_scheduler_repetitions = 12;

// Registers the scheduler throughput rows: as medians of interleaved
// repetitions, unless the command line sets repetitions or a minimum time.
void register_scheduler_throughput(bool command_line_rules);

}  // namespace orvix1_bench

#endif
