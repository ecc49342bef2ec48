// Start and stop of a unit, guarded by its counter as the runtime does it: start work runs
// when the counter leaves 0, stop work when it comes back, so only the outermost pair of
// repeated Initialize/Finalize calls acts.
#pragma once

namespace rtl {

class TUnitCounter {
 public:
  // Counts one start; true when the unit's start work is due.
  bool Start() { return --count_ == -1; }
  // Counts one stop; true when the unit's stop work is due.
  bool Stop() { return ++count_ == 0; }
  int Value() const { return count_; }

 private:
  int count_ = 0;
};

}  // namespace rtl
