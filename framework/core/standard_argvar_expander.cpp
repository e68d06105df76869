// The library's own expander: "$QV_DIR$", "$USER_NAME$", "$DATE$" and
// "$CUR_DIR$", answered through the platform layer. A static object
// registers it when the library is loaded, so it is always the first
// expander asked.
#include <chrono>
#include <string>

#include "orvane/argvars.h"
#include "orvane/events.h"
#include "orvane/platform.h"

namespace Kf {

namespace {

// A value is accepted only when the platform produced one: an empty answer
// means the query failed and the variable is declined.
bool Answer(std::string value, std::string& text) {
  if (value.empty()) return false;
  text = std::move(value);
  return true;
}

class StandardArgVarExpander : public ArgVarExpander {
 public:
  StandardArgVarExpander() { RegisterArgVarExpander(this, "StandardArgVarExpander"); }
  ~StandardArgVarExpander() override { UnregisterArgVarExpander(this); }

  bool Expand(std::string& text) override {
    Platform::IPlatform& platform = Platform::Current();
    if (text == "$QV_DIR$") {
      GePath binaries;
      if (!GetCommonBinPath(binaries)) return false;
      return Answer(binaries.Parent().Parent().ToString(), text);
    }
    if (text == "$USER_NAME$") return Answer(platform.GetUserName(), text);
    if (text == "$DATE$") return Answer(platform.FormatShortDate(std::chrono::system_clock::now()), text);
    if (text == "$CUR_DIR$") {
      GePath current;
      if (!platform.GetCurrentDirectory(current)) return false;
      return Answer(current.ToString(), text);
    }
    return false;
  }
};

StandardArgVarExpander g_standardExpander;

}  // namespace

}  // namespace Kf
