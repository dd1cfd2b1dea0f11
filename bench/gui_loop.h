#ifndef ORVIX1_BENCH_GUI_LOOP_H
#define ORVIX1_BENCH_GUI_LOOP_H

// The GUI thread's side of the cross-thread benchmarks: it waits in wx's own
// event loop, idle until something arrives, as an application's GUI thread
// does. A spinning pump would make every delivery look free and steal a core
// from the workers.

#include <chrono>

#include <wx/evtloop.h>
#include <wx/timer.h>

namespace orvix1_bench {

// Runs wx's event loop until a handler calls exit_gui_loop(); false when
// nothing ended it within `limit`.
inline bool run_gui_loop(std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  wxGUIEventLoop loop;
  bool timed_out = false;
  wxTimer watchdog;
  watchdog.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
    timed_out = true;
    loop.ScheduleExit();
  });
  watchdog.StartOnce(static_cast<int>(limit.count()));
  loop.Run();
  return !timed_out;
}

// Ends the innermost run_gui_loop(); GUI thread only.
inline void exit_gui_loop() {
  if (wxEventLoopBase* loop = wxEventLoopBase::GetActive()) loop->ScheduleExit();
}

}  // namespace orvix1_bench

#endif
