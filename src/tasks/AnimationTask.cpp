#include "orvix1/tasks/AnimationTask.h"

#include <algorithm>

#include <wx/stopwatch.h>
#include <wx/utils.h>

#include "orvix1/tasks/Scheduler.h"

namespace orvix1 {

AnimationTask::AnimationTask(int duration_ms, int from, int to)
    : m_duration(duration_ms), m_from(from), m_to(to) {}

AnimationTask::~AnimationTask() = default;

void AnimationTask::DoTask() {
  if (IsCanceled()) return;
  wxStopWatch watch;
  const long step_ms = m_duration / 10;
  long last = watch.Time();
  long elapsed = 0;
  double progress = 0.0;
  while (watch.Time() <= m_duration) {
    if (IsCanceled()) break;
    const long now = watch.Time();
    const long delta = now - last;
    if (delta >= step_ms) {
      elapsed += delta;
      // The clock may pass the end by a millisecond between the loop test
      // and this reading: never step beyond the target.
      progress = std::min(1.0, static_cast<double>(elapsed) / m_duration);
      last = now;
      Post(m_from + static_cast<int>((m_to - m_from) * progress));
    }
    // A step too short to sleep through is not slept at all.
    wxMilliSleep(static_cast<unsigned long>(std::max(0L, step_ms - 5)));
  }
  if (progress != 1.0) Post(m_to);
}

void AnimationTask::Post(int value) {
  if (!IsCanceled()) tasks::PostSignal(step, value);
}

void AnimationTask::TaskFinished() { step._erase_all(); }

}  // namespace orvix1
