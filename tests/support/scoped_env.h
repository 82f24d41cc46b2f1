// An environment variable set (or unset) for one scope, then given back its
// former value.
#ifndef QUORVEX_TESTS_SUPPORT_SCOPED_ENV_H_
#define QUORVEX_TESTS_SUPPORT_SCOPED_ENV_H_

#include <cstdlib>
#include <string>

#include "platform/environment.h"

namespace qvtest {

class ScopedEnv {
 public:
  // value nullptr unsets the variable.
  ScopedEnv(const char* name, const char* value) : name_(name) {
    const char* old = getenv(name);
    had_ = old != nullptr;
    if (had_) old_ = old;
    qv::SetEnvironmentValue(name, value);
  }
  ~ScopedEnv() { qv::SetEnvironmentValue(name_, had_ ? old_.c_str() : nullptr); }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  std::string name_;
  bool had_ = false;
  std::string old_;
};

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_SCOPED_ENV_H_
