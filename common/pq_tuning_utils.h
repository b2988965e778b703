// Test patterns and redraw, through Android's own programs.
//
// Each operation starts one program in a child process and then waits 2 seconds, so that the effect
// is on the screen when the operation returns. Callable from any thread; blocks that thread.
#ifndef COMMON_PQ_TUNING_UTILS_H_
#define COMMON_PQ_TUNING_UTILS_H_

// All three return the negative result of fork when it fails, at once and without a wait; any other
// result carries no meaning. If the program cannot be started, its child exits with status 4 and
// only the log shows it.
class PQTuningUtils {
 public:
  // Makes the compositor redraw the screen with the current settings.
  static int updateUI();

  // Shows one colour on the whole screen. Each component is 0..255.
  static int showPattern(int red, int green, int blue);

  // Removes the colour again.
  static int closePattern();
};

#endif  // COMMON_PQ_TUNING_UTILS_H_
