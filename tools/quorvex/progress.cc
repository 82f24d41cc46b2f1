#include "progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace qvtool {
namespace {

// Reads shorter than this show nothing: a few thousand records take less.
constexpr int kDefaultDelayMs = 700;

std::mutex g_line_mutex;
bool g_line_shown = false;

int DelayMs() {
  // Tests that run the tool on a pseudo-terminal ask for the line at once.
  const char* text = getenv("QUORVEX_PROGRESS_DELAY_MS");
  return text != nullptr && *text != '\0' ? atoi(text) : kDefaultDelayMs;
}

}  // namespace

Progress::Progress(std::string what) : what_(std::move(what)) {
  if (!isatty(STDERR_FILENO)) return;
  int delay = DelayMs();
  if (delay <= 0) Draw(0);
  thread_ = std::thread([this, delay] {
    std::unique_lock<std::mutex> lock(mutex_);
    auto start = std::chrono::steady_clock::now();
    if (wake_.wait_for(lock, std::chrono::milliseconds(delay), [this] { return done_; })) return;
    while (!done_) {
      auto seconds = std::chrono::duration_cast<std::chrono::seconds>(
          std::chrono::steady_clock::now() - start);
      Draw(static_cast<int>(seconds.count()));
      wake_.wait_for(lock, std::chrono::milliseconds(250), [this] { return done_; });
    }
  });
}

Progress::~Progress() {
  if (thread_.joinable()) {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      done_ = true;
    }
    wake_.notify_all();
    thread_.join();
  }
  ProgressPause clear;
}

void Progress::Draw(int seconds) {
  static const char kSpinner[] = "|/-\\";
  static int turn = 0;
  std::lock_guard<std::mutex> lock(g_line_mutex);
  fprintf(stderr, "\rquorvex: %s... %c %ds\033[K", what_.c_str(), kSpinner[turn++ % 4], seconds);
  fflush(stderr);
  g_line_shown = true;
}

ProgressPause::ProgressPause() : lock_(g_line_mutex) {
  if (!g_line_shown) return;
  fputs("\r\033[K", stderr);
  fflush(stderr);
  g_line_shown = false;
}

}  // namespace qvtool
