#include "status_line.h"

#include <cmath>
#include <ostream>
#include <sstream>

namespace OrvaneHost {
namespace {

namespace SB = Kf::StatusBar;

template <class EventT, class Function>
std::unique_ptr<Kf::Event::BaseHandler> Make(Function function) {
  return std::make_unique<Kf::Event::FunctionHandler<EventT>>(function);
}

}  // namespace

StatusLine::StatusLine(std::ostream& out) : out_(out) {
  handlers_.emplace_back(SB::kMessageEvent, Make<SB::StatusBarMessageEvent>([this](const auto& e) {
                           message_ = e.text;
                           Print("message");
                         }));
  handlers_.emplace_back(SB::kPositionEvent, Make<SB::StatusBarCaretPositionEvent>([this](const auto& e) {
                           caret_ = e.text;
                           Print("caret");
                         }));
  handlers_.emplace_back(SB::kEncodingEvent, Make<SB::StatusBarEncodingEvent>([this](const auto& e) {
                           encoding_ = e.encoding;
                           Print("encoding");
                         }));
  handlers_.emplace_back(SB::kCapEvent, Make<SB::StatusBarCapsLockChangedEvent>([this](const auto& e) {
                           caps_ = e.active;
                           Print("caps lock");
                         }));
  handlers_.emplace_back(SB::kNumEvent, Make<SB::StatusBarNumLockChangedEvent>([this](const auto& e) {
                           num_ = e.active;
                           Print("num lock");
                         }));
  handlers_.emplace_back(SB::kOvrEvent, Make<SB::StatusBarOverwriteChangedEvent>([this](const auto& e) {
                           overwrite_ = e.active;
                           Print("overwrite");
                         }));
  handlers_.emplace_back(SB::kBuildEvent, Make<SB::StatusBarBuildResultEvent>([this](const auto& e) {
                           build_ = e.text;
                           Print("build");
                         }));
  handlers_.emplace_back(SB::kLanguageEvent, Make<SB::StatusBarLanguageEvent>([this](const auto& e) {
                           language_ = e.code;
                           Print("language");
                         }));
  handlers_.emplace_back(SB::kProgressEvent, Make<SB::StatusBarProgressEvent>([this](const auto& e) {
                           if (!e.status.IsActive()) {
                             progress_.clear();
                           } else {
                             std::ostringstream text;
                             text << e.description << ' ' << std::lround(e.status.Fraction() * 100) << "% "
                                  << e.status.Text();
                             progress_ = text.str();
                           }
                           Print("progress");
                         }));
  for (auto& [name, handler] : handlers_) Kf::Event::RegisterEvent(name, handler.get());
}

StatusLine::~StatusLine() {
  for (auto& [name, handler] : handlers_) Kf::Event::UnregisterEvent(name, handler.get());
}

std::string StatusLine::Text() const {
  std::ostringstream line;
  line << (message_.empty() ? "Ready" : message_);
  for (const std::string* field : {&progress_, &build_, &caret_, &encoding_, &language_}) {
    if (!field->empty()) line << " | " << *field;
  }
  if (caps_) line << " | CAPS";
  if (num_) line << " | NUM";
  if (overwrite_) line << " | OVR";
  return line.str();
}

void StatusLine::Print(const char* what) { out_ << "  [status: " << what << "] " << Text() << '\n'; }

}  // namespace OrvaneHost
