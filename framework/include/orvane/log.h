// The message log: a fan-out bus inside one process.
//
// Producers write entries through a KfLogClient tagged with a category;
// consumers derive from KfLogServer, register themselves and receive every
// entry, every category registration and removal, and every session start.
// The bus stores nothing: an entry written while no server is registered is
// lost.
//
//   class BuildWindow : public KfLogServer {
//     void ProcessEntry(KfLogServer::Entry& e) override { Show(e.Text(), e.Severity()); }
//   };
//   BuildWindow window;
//   window.RegisterLogServer();            // replays the known categories
//   KfLogClient build(kKfBuildCategory, "make");
//   build.StartSession();
//   build.Log(KfLogClient::Error, {GePath("main.c"), {9, 4}, {9, 4}}, "undeclared 'x'");
//   window.UnregisterLogServer();
//
// A text with several lines becomes one entry per line: the first carries the
// file and positions, the others are continuation entries (IsSubEntry()) with
// no file. A trailing newline makes no empty entry. Every dispatched entry
// gets a process-wide id (0, 1, 2, ... shared by all categories) and the
// current time in seconds.
//
// Threads: any thread may log, register categories, start sessions and
// register or unregister servers. A server's callbacks run on the thread that
// logged, with only that server's own (recursive) mutex held, so one server is
// never entered by two threads at once, and a callback may log, register
// categories or unregister servers, itself included. A server removed during
// a broadcast receives nothing more from it; once UnregisterLogServer returns
// the server receives nothing more at all; a server registered while a
// broadcast is under way receives from the next broadcast on. The one exception to "no lock
// across a callback": AddCategory calls made while a server is being
// registered (the replay of known categories) run under the category mutex,
// so such an AddCategory must not register or unregister categories.
// A derived server that other threads may be calling when it is destroyed
// calls UnregisterLogServer() in its own destructor, before its members go.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"
#include "orvane/srcpos.h"

// Categories of the IDE's own logs and the window factories that show them.
ORVANE_API extern const char* const kKfBuildCategory;             // "Log_Build"
ORVANE_API extern const char* const kKfBuildFactory;              // "WIN_BUILD"
ORVANE_API extern const char* const kKfFindInFilesCategory;       // "Log_Find_in_Files"
ORVANE_API extern const char* const kKfFindInFilesFactory;        // "WIN_FIND_IN_FILES"
ORVANE_API extern const char* const kKfToolOutputCategory;        // "Log_Tool_Output"
ORVANE_API extern const char* const kKfToolOutputFactory;         // "WIN_TOOL_OUTPUT"
ORVANE_API extern const char* const kKfDebugLogCategory;          // "Log_Debug"
ORVANE_API extern const char* const kKfDebugLogFactory;           // "WIN_DEBUG_LOG"
ORVANE_API extern const char* const kKfFindAllRefCategory;        // "Log_Find_All_Ref"
ORVANE_API extern const char* const kKfFindAllRefFactory;         // "WIN_FIND_ALL_REFERENCES"
ORVANE_API extern const char* const kKfFindAllDeclCategory;       // "Log_Find_All_Decl"
ORVANE_API extern const char* const kKfFindAllDeclFactory;        // "WIN_FIND_ALL_DECLARATIONS"
ORVANE_API extern const char* const kKfShowAmbiguousDefCategory;  // "Log_Sel_Ambig_Def"
ORVANE_API extern const char* const kKfShowAmbiguousDefFactory;   // "WIN_SELECT_AMBIGUOUS_DEFINITIONS"
ORVANE_API extern const char* const kSourceBrowseAgentLogCategory;  // "Log_SourceBrowse"
ORVANE_API extern const char* const kKfCMakeCMSISLogCategory;     // "Log_CMake_CMSIS"
ORVANE_API extern const char* const kKfCMakeCMSISLogFactory;      // "WIN_CMAKE_CMSIS_LOG"
// The library's own diagnostics (an unreadable settings file set aside, an
// exception caught at a thread boundary) are logged in this category.
ORVANE_API extern const char* const kKfFrameworkLogCategory;      // "Log_Framework"

// The consumer side of the bus. See the file comment for an example and the
// threading rules.
class ORVANE_API KfLogServer {
 public:
  // One log line: a value type whose fields live in one owned object (copies
  // are deep).
  class ORVANE_API Entry {
   public:
    Entry();
    Entry(const std::string& category, const std::string& sender, const std::string& text, int severity,
          GePath path, const Kf::SrcPos& pos, std::int64_t timeStamp, std::uint64_t entryId);
    // `endPos` is ignored: both positions are set to `pos`, as the older
    // constructor does; use SetSrcEndPos to give a range.
    Entry(const std::string& category, const std::string& sender, const std::string& text, int severity,
          GePath path, const Kf::SrcPos& pos, const Kf::SrcPos& endPos, std::int64_t timeStamp,
          std::uint64_t entryId);
    Entry(const Entry& other);
    Entry& operator=(const Entry& other);
    ~Entry();

    const std::string& Category() const;
    const std::string& Sender() const;
    // Text number 0, the message (empty when there is none).
    const std::string& Text() const;
    // Text number n (0 is the message; others are optional extras), empty
    // when out of range.
    const std::string& Text(unsigned int n) const;
    unsigned int NumberOfTexts() const;
    // Seconds since the Unix epoch, set when the entry is dispatched.
    std::int64_t TimeStamp() const;
    int Severity() const;
    const GePath& Path() const;
    const Kf::SrcPos& SrcPos() const;
    const Kf::SrcPos& SrcEndPos() const;
    std::uint64_t EntryId() const;
    // True for the continuation lines of a multi-line message.
    bool IsSubEntry() const;

    void TimeStamp(std::int64_t seconds);
    void EntryId(std::uint64_t id);
    void SetPath(const GePath& path);
    void SetSrcPos(const Kf::SrcPos& pos);
    void SetSrcEndPos(const Kf::SrcPos& pos);
    void SetCategory(const std::string& category);
    void SetIsSubEntry(bool isSubEntry);
    void SetText(const std::string& text);
    // Grows the texts with empty strings up to n+1 elements if needed (never
    // shrinks them), then sets text number n.
    void SetText(const std::string& text, unsigned int n);

   private:
    friend class KfLogClient;  // refills one entry per thread instead of allocating
    struct Impl;
    std::unique_ptr<Impl> impl_;
  };

  // Does not register: call RegisterLogServer when ready to receive.
  KfLogServer();
  // Unregisters the server.
  virtual ~KfLogServer();
  KfLogServer(const KfLogServer&) = delete;
  KfLogServer& operator=(const KfLogServer&) = delete;

  // A category was registered (also called for every known category when the
  // server registers).
  virtual void AddCategory(const std::string& category);
  // A category was unregistered.
  virtual void RemoveCategory(const std::string& category);
  // A client of the category began a new session (a new build, a new search).
  virtual void StartSession(const std::string& category);
  // Receives every dispatched entry. The entry is valid during the call only
  // (the bus refills it for the next message): copy it to keep it.
  virtual void ProcessEntry(Entry& entry) = 0;

  // Starts receiving; the categories known now are replayed through
  // AddCategory first. A second call changes nothing.
  void RegisterLogServer();
  // Stops receiving. A broadcast already under way skips the server from now
  // on; the call waits for a callback running on another thread to finish.
  void UnregisterLogServer();
};

// The producer side of the bus: writes entries of one category under one
// sender name. Movable, not copyable.
//
// Threads: one client may be used by several threads at once; it holds no
// lock of its own while the servers run.
class ORVANE_API KfLogClient {
 public:
  // Severities. 3 and 4 are the failures: in the build category they refresh
  // the status bar's build result. Entries below the process-wide minimum
  // severity (-1, so none by default) are dropped.
  enum Severity : std::int32_t {
    Trace = 0,
    Info = 1,
    Warning = 2,
    Error = 3,
    Fatal = 4,
  };

  // A place in a file. Entries use the start position for both of their
  // positions; `end` is kept for callers that carry ranges around.
  struct FileRef {
    GePath file;
    Kf::SrcPos start;
    Kf::SrcPos end;
  };

  // Registers the category.
  KfLogClient(std::string category, std::string sender);
  KfLogClient(KfLogClient&& other) noexcept;
  KfLogClient& operator=(KfLogClient&& other) noexcept;
  KfLogClient(const KfLogClient&) = delete;
  KfLogClient& operator=(const KfLogClient&) = delete;
  // Frees the client only; the category stays registered.
  ~KfLogClient();

  // Announces a new session of the category to every server; a build
  // session also resets and refreshes the status bar's build result.
  void StartSession();
  void Log(Severity severity, const std::string& text);
  void Log(Severity severity, const FileRef& ref, const std::string& text);
  // As above, with `extra` as text number 1 of every entry.
  void Log(Severity severity, const FileRef& ref, const std::string& text, const std::string& extra);
  // Unregisters the category (even if other clients of it remain).
  void UnregisterLogClient();

 private:
  void LogEntry(Severity severity, const FileRef& ref, const std::string& text, const std::string* extra);

  struct Impl;
  std::unique_ptr<Impl> impl_;
};

namespace Kf {

// The bus operations under the clients. Registering a known category or
// unregistering an unknown one changes nothing and notifies nobody.
ORVANE_API void RegisterLogCategory(const std::string& category);
ORVANE_API void UnregisterLogCategory(const std::string& category);
ORVANE_API void StartLogSession(const std::string& category);
// Stamps the entry with the current time and the next entry id and hands it
// to every registered server.
ORVANE_API void DoLog(KfLogServer::Entry& entry);

}  // namespace Kf
