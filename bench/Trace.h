#ifndef BENCH_TRACE_H
#define BENCH_TRACE_H

// TRACE(arguments...) opens a platform function; TRACED(result, arguments...) is its result. Without
// BARE_PLATFORM_TRACE they leave nothing of themselves in the platform.
#ifdef BARE_PLATFORM_TRACE

#include <sstream>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
/// What the platform was asked, a line each: the function and its arguments.
std::vector<std::string>& PlatformTrace();
#pragma GCC visibility pop

template <typename... Arguments>
void Trace(const char* function, const Arguments&... arguments) {
  std::ostringstream line;
  line << function;
  ((line << " " << +arguments), ...);
  PlatformTrace().push_back(line.str());
}

template <typename Result, typename... Arguments>
Result Traced(const char* function, Result result, const Arguments&... arguments) {
  Trace(function, arguments...);
  return result;
}

#define TRACE(...) Trace(__func__, __VA_ARGS__)
#define TRACED(...) Traced(__func__, __VA_ARGS__)

#else

template <typename Result, typename... Arguments>
constexpr Result First(Result result, const Arguments&...) {
  return result;
}

#define TRACE(...) static_cast<void>(0)
#define TRACED(...) First(__VA_ARGS__)

#endif

#endif
