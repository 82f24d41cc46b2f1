// A single updating line on standard error while a long read runs, so that
// a person at a terminal sees the tool is working. Nothing is printed when
// standard error is not a terminal, nor for reads that end quickly.
#ifndef QUORVEX_TOOLS_PROGRESS_H_
#define QUORVEX_TOOLS_PROGRESS_H_

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace qvtool {

class Progress {
 public:
  // what: "checking the profile", "reading LO records".
  explicit Progress(std::string what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  void Run();
  void Draw(int seconds);

  std::string what_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool done_ = false;
  std::thread thread_;
};

// While alive, no progress line is on standard error and none is drawn:
// other text printed meanwhile gets lines of its own.
class ProgressPause {
 public:
  ProgressPause();
  ~ProgressPause() = default;

 private:
  std::lock_guard<std::mutex> lock_;
};

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_PROGRESS_H_
