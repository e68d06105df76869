// The reference host's keyboard accelerators: the ready text front end, a
// console AccelManager, and the default bindings it installs.
//
//   OrvaneHost::HostAccels accels;        // registers, creates, installs
//   accels.Manager().GetShortcutString("File.Save", text);
//
// Threads: main (UI) thread only.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "orvane/accel.h"

namespace OrvaneHost {

// A console stand-in for the IDE's accelerator tables: "rebuilding" counts
// and reports the tables; key text comes from the text front end.
class ConsoleAccelManager : public Kf::Accel::AccelManager {
 public:
  explicit ConsoleAccelManager(std::ostream* log) : log_(log) {}
  void RebuildAccelerators() override;
  void KeySequenceToString(const Kf::Accel::KeySequence& key, std::string& out) override;
  int Rebuilds() const { return rebuilds_; }
  // Reads the stored bindings now rather than at the first Install.
  bool Load() { return EnsureLoaded(); }

 private:
  std::ostream* log_;  // may be null
  int rebuilds_ = 0;
};

class HostAccels {
 public:
  // `log` (may be null) is told of every rebuild.
  explicit HostAccels(std::ostream* log = nullptr);
  ~HostAccels();
  HostAccels(const HostAccels&) = delete;
  HostAccels& operator=(const HostAccels&) = delete;

  ConsoleAccelManager& Manager() { return *manager_; }
  // Sends the settings-save application event, on which the manager saves.
  static void SaveSettings();

 private:
  Kf::Accel::TextFrontEnd frontEnd_;
  std::unique_ptr<ConsoleAccelManager> manager_;
  std::unique_ptr<Kf::Accel::AccelPart> core_;
  std::unique_ptr<Kf::Accel::AccelPart> coreSecondary_;
  std::unique_ptr<Kf::Accel::AccelPart> debuggerPlugin_;
};

}  // namespace OrvaneHost
