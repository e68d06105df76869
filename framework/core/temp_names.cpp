#include "core/temp_names.h"

#include <atomic>
#include <cstdint>
#include <random>

#include <boost/format.hpp>

#include "orvane/platform.h"

namespace Kf::Detail {
namespace {

std::uint64_t ProcessNonce() {
  std::random_device device;
  return (static_cast<std::uint64_t>(device()) << 32) ^ device();
}

}  // namespace

std::string UniqueFileTag() {
  static const std::uint64_t nonce = ProcessNonce();
  static std::atomic<std::uint64_t> counter{0};
  return (boost::format("%1%-%2$016x-%3%") % Platform::Current().GetProcessId() % nonce % counter.fetch_add(1)).str();
}

}  // namespace Kf::Detail
