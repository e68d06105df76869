// Internal: names for short-lived files that no other saver may share.
#pragma once

#include <string>

namespace Kf::Detail {

// A text that differs between every call in this process and, with
// overwhelming likelihood, from every text any other process makes: the
// process id, a random number drawn once per process and a counter. The
// random part matters where process ids repeat (containers, fakes in tests).
// Any thread.
std::string UniqueFileTag();

}  // namespace Kf::Detail
