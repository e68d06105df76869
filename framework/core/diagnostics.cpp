#include "core/diagnostics.h"

#include <cstdio>
#include <mutex>

namespace Kf::Detail {
namespace {

std::mutex& SinkMutex() {
  static std::mutex mutex;
  return mutex;
}

ErrorSink& Sink() {
  static ErrorSink sink;  // guarded by SinkMutex()
  return sink;
}

}  // namespace

void ReportError(const std::string& where, const std::string& what) {
  ErrorSink sink;
  {
    std::lock_guard<std::mutex> lock(SinkMutex());
    sink = Sink();
  }
  if (sink) {
    sink(where, what);
    return;
  }
  std::fprintf(stderr, "orvane: %s: %s\n", where.c_str(), what.c_str());
}

void SetErrorSink(ErrorSink sink) {
  std::lock_guard<std::mutex> lock(SinkMutex());
  Sink() = std::move(sink);
}

}  // namespace Kf::Detail
