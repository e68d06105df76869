#include "platform/linux_platform.h"

#include <dlfcn.h>
#include <langinfo.h>
#include <locale.h>
#include <pthread.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include <cstring>
#include <ctime>
#include <system_error>

namespace Kf::Platform {
namespace {

thread_local std::string t_threadName;

// Splits a colon-separated list such as LANGUAGE, dropping empty entries.
void AppendColonList(const std::string& text, std::vector<std::string>& out) {
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find(':', start);
    if (end == std::string::npos) end = text.size();
    if (end > start) out.push_back(text.substr(start, end - start));
    start = end + 1;
  }
}

bool IsUsableLocaleName(const std::string& name) { return !name.empty() && name != "C" && name != "POSIX"; }

}  // namespace

LinuxPlatform& LinuxNative() {
  static LinuxPlatform* native = new LinuxPlatform();  // never destroyed: used until process end
  return *native;
}

IPlatform& Native() { return LinuxNative(); }

void FeedKeyState(Key key, bool down) { LinuxNative().FeedKeyState(key, down); }

void SetIdleWakeHandler(std::function<void()> handler) { LinuxNative().SetIdleWakeHandler(std::move(handler)); }

bool LinuxPlatform::GetEnv(const std::string& name, std::string& value) {
  std::lock_guard<std::mutex> lock(env_mutex_);
  const char* text = ::getenv(name.c_str());
  if (!text) return false;
  value = text;
  return true;
}

bool LinuxPlatform::SetEnv(const std::string& name, const std::string& value) {
  std::lock_guard<std::mutex> lock(env_mutex_);
  return ::setenv(name.c_str(), value.c_str(), 1) == 0;
}

bool LinuxPlatform::UnsetEnv(const std::string& name) {
  std::lock_guard<std::mutex> lock(env_mutex_);
  return ::unsetenv(name.c_str()) == 0;
}

bool LinuxPlatform::GetCurrentDirectory(GePath& out) {
  std::error_code error;
  auto dir = std::filesystem::current_path(error);
  if (error) return false;
  out = GePath::FromNative(dir);
  return true;
}

std::string LinuxPlatform::GetUserName() {
  struct passwd entry {};
  struct passwd* result = nullptr;
  char buffer[4096];
  if (::getpwuid_r(::getuid(), &entry, buffer, sizeof buffer, &result) == 0 && result && result->pw_name)
    return result->pw_name;
  std::string name;
  if (GetEnv("USER", name)) return name;
  return {};
}

std::string LinuxPlatform::FormatShortDate(std::chrono::system_clock::time_point when) {
  std::time_t seconds = std::chrono::system_clock::to_time_t(when);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  // The user's locale comes from the environment (LC_ALL, LC_TIME, LANG),
  // independent of the process's global locale, which the host may not set.
  locale_t userLocale = ::newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
  if (!userLocale) userLocale = ::newlocale(LC_TIME_MASK, "C", static_cast<locale_t>(nullptr));
  char text[128] = {};
  size_t length = userLocale ? ::strftime_l(text, sizeof text, "%x", &local, userLocale)
                             : ::strftime(text, sizeof text, "%x", &local);
  if (userLocale) ::freelocale(userLocale);
  return std::string(text, length);
}

std::vector<std::string> LinuxPlatform::GetUserLocales() {
  // POSIX precedence for messages: the LANGUAGE list first, then the first of
  // LC_ALL, LC_MESSAGES and LANG that names a real locale.
  std::vector<std::string> locales;
  std::string value;
  if (GetEnv("LANGUAGE", value)) AppendColonList(value, locales);
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (GetEnv(name, value) && IsUsableLocaleName(value)) {
      locales.push_back(value);
      break;
    }
  }
  return locales;
}

bool LinuxPlatform::IsKeyDown(Key key) {
  auto index = static_cast<size_t>(key);
  return index < keys_.size() && keys_[index].load(std::memory_order_relaxed);
}

void LinuxPlatform::FeedKeyState(Key key, bool down) {
  auto index = static_cast<size_t>(key);
  if (index < keys_.size()) keys_[index].store(down, std::memory_order_relaxed);
}

void LinuxPlatform::WakeIdleLoop() {
  std::function<void()> handler;
  {
    std::lock_guard<std::mutex> lock(wake_mutex_);
    handler = wake_handler_;
  }
  if (handler) handler();
}

void LinuxPlatform::SetIdleWakeHandler(std::function<void()> handler) {
  std::lock_guard<std::mutex> lock(wake_mutex_);
  wake_handler_ = std::move(handler);
}

bool LinuxPlatform::GetKnownFolder(KnownFolder folder, GePath& out) {
  std::string home;
  if (!GetEnv("HOME", home) || home.empty()) {
    struct passwd entry {};
    struct passwd* result = nullptr;
    char buffer[4096];
    if (::getpwuid_r(::getuid(), &entry, buffer, sizeof buffer, &result) == 0 && result && result->pw_dir)
      home = result->pw_dir;
  }
  // An XDG variable counts only when it holds an absolute path.
  auto xdg = [&](const char* variable, const char* fallback) -> bool {
    std::string value;
    if (GetEnv(variable, value) && !value.empty() && value.front() == '/') {
      out = GePath(value);
      return true;
    }
    if (home.empty()) return false;
    out = GePath(home) / GePath(fallback);
    return true;
  };
  switch (folder) {
    case KnownFolder::Home:
      if (home.empty()) return false;
      out = GePath(home);
      return true;
    case KnownFolder::UserConfig:
      return xdg("XDG_CONFIG_HOME", ".config");
    case KnownFolder::UserData:
      return xdg("XDG_DATA_HOME", ".local/share");
    case KnownFolder::UserCache:
      return xdg("XDG_CACHE_HOME", ".cache");
    case KnownFolder::Temp: {
      std::error_code error;
      auto temp = std::filesystem::temp_directory_path(error);
      if (error) return false;
      out = GePath::FromNative(temp);
      return true;
    }
    case KnownFolder::Documents:
      if (home.empty()) return false;
      out = GePath(home) / GePath("Documents");
      return true;
  }
  return false;
}

bool LinuxPlatform::GetCommonBinDirectory(GePath& out) {
  Dl_info info{};
  if (::dladdr(reinterpret_cast<void*>(&LinuxNative), &info) == 0 || !info.dli_fname) return false;
  std::error_code error;
  auto file = std::filesystem::canonical(info.dli_fname, error);
  if (error) return false;
  out = GePath::FromNative(file.parent_path());
  return true;
}

bool LinuxPlatform::GetExecutablePath(GePath& out) {
  std::error_code error;
  auto file = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return false;
  out = GePath::FromNative(file);
  return true;
}

std::uint32_t LinuxPlatform::GetProcessId() { return static_cast<std::uint32_t>(::getpid()); }

void LinuxPlatform::SetCurrentThreadName(const std::string& name) {
  t_threadName = name;
  // The kernel keeps at most 15 bytes of a thread's name.
  std::string shortName = name.substr(0, 15);
  ::pthread_setname_np(::pthread_self(), shortName.c_str());
}

std::string LinuxPlatform::GetCurrentThreadName() { return t_threadName; }

bool LinuxPlatform::GetFileIdentity(const GePath& file, FileIdentity& out) {
  struct stat info;
  if (::stat(file.Native().c_str(), &info) != 0) return false;
  out.modifiedNs = static_cast<std::int64_t>(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
  out.size = static_cast<std::uint64_t>(info.st_size);
  out.device = static_cast<std::uint64_t>(info.st_dev);
  out.inode = static_cast<std::uint64_t>(info.st_ino);
  return true;
}

std::uint64_t LinuxPlatform::GetCurrentThreadId() {
  // The kernel id never changes for a thread, so ask once.
  thread_local const std::uint64_t id = static_cast<std::uint64_t>(::syscall(SYS_gettid));
  return id;
}

bool LinuxPlatform::SetMessagesLocale(const std::string& name) {
  // gettext consults LANGUAGE before the locale for anything but "C"; the
  // session's language is decided by the library, not by that variable.
  UnsetEnv("LANGUAGE");
  for (const std::string& candidate : {name, name + ".UTF-8", name + ".utf8"}) {
    if (::setlocale(LC_MESSAGES, candidate.c_str())) return true;
  }
  return false;
}

}  // namespace Kf::Platform
