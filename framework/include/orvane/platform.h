// The platform layer: every operating-system service the library uses.
//
// No other part of the library calls the operating system directly. The
// library ships one implementation per platform; a test (or an unusual host)
// may install its own implementation with SetPlatform to control what the
// library sees: environment, dates, locales, key states, folders.
//
//   MyFakePlatform fake;
//   Kf::Platform::SetPlatform(&fake);     // the library now asks `fake`
//   ...
//   Kf::Platform::SetPlatform(nullptr);   // back to the built-in one
//
// Windows implementation (documented here because the library's behaviour is
// defined in its terms):
//   - PathListSeparator() is ';'.
//   - IsKeyDown(Key::Shift / Control / Period) reads GetAsyncKeyState for the
//     virtual-key codes 16, 17 and 190.
//   - WakeIdleLoop() posts a null message (number 0, both parameters 0) to the
//     main window of the current UI application thread, and does nothing when
//     there is no such window.
//
// Linux implementation:
//   - PathListSeparator() is ':'.
//   - A console or toolkit host has no process-wide asynchronous key state, so
//     the host feeds it: call FeedKeyState(key, down) from its key handlers.
//     IsKeyDown answers from that table.
//   - WakeIdleLoop() calls the handler the host installed with
//     SetIdleWakeHandler (for example, writing to its event loop's wake-up
//     pipe), and does nothing when none is installed.
//   - Known folders follow the XDG base-directory conventions.
//   - The common-binaries directory is the directory of the library file.
//   - SetMessagesLocale(name) sets the C library's LC_MESSAGES category to the
//     first of name, name.UTF-8 and name.utf8 that exists, and removes the
//     LANGUAGE variable, which would otherwise override the choice.
//
// Threads: every operation may be called from any thread. SetPlatform is
// meant for start-up and tests; the installed object must outlive its use.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"

namespace Kf::Platform {

// Keys whose asynchronous state the library asks for.
enum class Key : int {
  Shift = 0,
  Control = 1,
  Period = 2,
  kCount = 3,
};

// Folders with a well-known meaning on every platform.
enum class KnownFolder : int {
  Home = 0,         // the user's home directory
  UserConfig = 1,   // per-user settings (XDG_CONFIG_HOME, %APPDATA%)
  UserData = 2,     // per-user data (XDG_DATA_HOME, %LOCALAPPDATA%)
  UserCache = 3,    // per-user cache (XDG_CACHE_HOME)
  Temp = 4,         // temporary files
  Documents = 5,    // the user's documents
};

// What GetFileIdentity reports about a file.
struct FileIdentity {
  std::int64_t modifiedNs = 0;   // last modification, nanoseconds since the epoch
  std::uint64_t size = 0;        // bytes
  std::uint64_t device = 0;      // the file system that holds the file
  std::uint64_t inode = 0;       // the file's number within that file system

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

class ORVANE_API IPlatform {
 public:
  virtual ~IPlatform();

  // Environment variables. GetEnv is false when the variable is not set.
  virtual bool GetEnv(const std::string& name, std::string& value) = 0;
  virtual bool SetEnv(const std::string& name, const std::string& value) = 0;
  virtual bool UnsetEnv(const std::string& name) = 0;
  // The separator between the entries of a search-path list such as PATH.
  virtual char PathListSeparator() const = 0;

  virtual bool GetCurrentDirectory(GePath& out) = 0;
  virtual std::string GetUserName() = 0;
  // A date in the user's locale short date format.
  virtual std::string FormatShortDate(std::chrono::system_clock::time_point when) = 0;
  // The user's preferred locales, most preferred first ("ja_JP.UTF-8", "en_US").
  virtual std::vector<std::string> GetUserLocales() = 0;

  // Whether the key is held down now.
  virtual bool IsKeyDown(Key key) = 0;
  // Makes the host's message loop run an idle pass soon.
  virtual void WakeIdleLoop() = 0;

  virtual bool GetKnownFolder(KnownFolder folder, GePath& out) = 0;
  // The directory that holds the library and the shared binaries beside it.
  virtual bool GetCommonBinDirectory(GePath& out) = 0;
  virtual bool GetExecutablePath(GePath& out) = 0;
  virtual std::uint32_t GetProcessId() = 0;

  // Names the calling thread (shown by debuggers and in thread lists).
  virtual void SetCurrentThreadName(const std::string& name) = 0;
  // The name given with SetCurrentThreadName, or empty.
  virtual std::string GetCurrentThreadName() = 0;

  // Added for the settings storage and the trace file.
  //
  // One metadata query of a file: the settings storage compares all four
  // fields to notice a file that another process replaced, even when the
  // replacement has the same size and time stamp. False when the file does
  // not exist or cannot be queried (`out` is then unchanged).
  virtual bool GetFileIdentity(const GePath& file, FileIdentity& out) = 0;
  // The calling thread's numeric identifier as the operating system shows it
  // (the kernel thread id on Linux, the thread id on Windows).
  virtual std::uint64_t GetCurrentThreadId() = 0;

  // Added for language selection.
  //
  // Makes the message catalogues (gettext) of this process speak the locale
  // `name` ("ja_JP"; "C" for the untranslated texts). False when the system
  // has no such locale. For start-up, on the UI thread.
  virtual bool SetMessagesLocale(const std::string& name) = 0;
};

// The platform the library uses now: the installed one, or the built-in one.
ORVANE_API IPlatform& Current();
// Installs `platform` (null restores the built-in implementation).
ORVANE_API void SetPlatform(IPlatform* platform);
// The built-in implementation of this operating system.
ORVANE_API IPlatform& Native();

// Linux: the host reports key presses and releases here (see above). On
// platforms with an asynchronous key state these calls change nothing.
ORVANE_API void FeedKeyState(Key key, bool down);
// Linux: installs the host's wake-up for WakeIdleLoop (empty to remove).
ORVANE_API void SetIdleWakeHandler(std::function<void()> handler);

}  // namespace Kf::Platform
