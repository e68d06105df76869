// Tour steps for the settings storage and the trace file. The demonstrations
// use a private directory, never the user's own settings.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <system_error>

#include "host_app.h"
#include "orvane/logtask.h"
#include "orvane/platform.h"
#include "orvane/storage.h"

namespace OrvaneHost {
namespace {

namespace fs = std::filesystem;

// A scratch directory for the storage steps, removed at process end.
struct ScratchDir {
  ScratchDir() {
    GePath temp;
    if (!Kf::Platform::Current().GetKnownFolder(Kf::Platform::KnownFolder::Temp, temp)) temp = GePath("/tmp");
    path = temp / ("orvane-tour-" + std::to_string(Kf::Platform::Current().GetProcessId()));
    std::error_code ec;
    fs::create_directories(path.Native(), ec);
  }
  ~ScratchDir() {
    std::error_code ec;
    fs::remove_all(path.Native(), ec);
  }
  GePath path;
};

const GePath& Scratch() {
  static ScratchDir dir;
  return dir.path;
}

std::string ReadFile(const GePath& file) {
  std::ifstream in(file.Native());
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

TourStep storageBasics(200, "Settings storage", [](HostApp& app) {
  std::ostream& out = app.Out();
  GePath optionDir;
  if (KfGetOptionStorageDirectory(optionDir))
    out << "The \"Global\" storage lives in " << (optionDir / "QorIde.xml").ToString()
        << "\n(ORVANE_SETTINGS_DIR moves the whole tree; the tour itself writes only to "
        << Scratch().ToString() << ").\n";
  KfPersistentStorage demo("TourDemo", Scratch() / "demo.xml");
  out << "Section and key names become element names: \"3D view\" -> "
      << KfPersistentStorage::ToElementName("3D view") << ", \"xmlFile\" -> "
      << KfPersistentStorage::ToElementName("xmlFile") << '\n';
  (void)demo.Store("3D view", "Zoom", 150u);
  (void)demo.Store("Editor", "Font", std::string("Mono 10"));
  const unsigned char bytes[] = {0xca, 0xfe};
  (void)demo.Store("Editor", "Magic", bytes, sizeof bytes);
  std::uint32_t zoom = 0;
  std::string notThere = "(default)";
  (void)demo.Load("3D view", "Zoom", zoom);
  bool found = demo.Load("Editor", "Missing", notThere);
  out << "Stored three values and read back Zoom=" << zoom << "; a missing key leaves the default: \""
      << notThere << "\" (found: " << std::boolalpha << found << ").\nThe file now holds:\n"
      << ReadFile(demo.GetFile());
});

TourStep bufferedBatch(210, "Buffered batch", [](HostApp& app) {
  std::ostream& out = app.Out();
  GePath file = Scratch() / "batch.xml";
  KfPersistentStorage storage("TourBatch", file);
  {
    KfPersistentStorageBuffer batch(&storage);
    for (std::uint32_t i = 0; i < 100; ++i) (void)storage.Store("Batch", "k" + std::to_string(i), i);
    out << "100 stores inside a KfPersistentStorageBuffer; file written yet? " << std::boolalpha
        << fs::exists(file.Native()) << '\n';
  }
  std::vector<std::string> keys;
  (void)storage.GetKeys("Batch", keys);
  out << "After the guard ends: file written? " << fs::exists(file.Native()) << ", with " << keys.size()
      << " keys - one load and one save for the whole batch.\n";
});

TourStep changeDetection(220, "Change detection", [](HostApp& app) {
  std::ostream& out = app.Out();
  GePath file = Scratch() / "shared.xml";
  KfPersistentStorage mine("TourMine", file);
  KfPersistentStorage theirs("TourTheirs", file);  // stands in for another IDE process
  (void)mine.Store("Shared", "Theme", std::string("Light"));
  std::string theme;
  (void)theirs.Load("Shared", "Theme", theme);
  out << "The other writer sees Theme=" << theme << '\n';
  (void)theirs.Store("Shared", "Theme", std::string("Dark!"));
  (void)mine.Load("Shared", "Theme", theme);
  out << "It stored Dark!; my next load notices the new file and gives Theme=" << theme << '\n';

  // A replacement of the same size and time stamp differs only in its inode.
  auto stamp = fs::last_write_time(file.Native());
  std::string text = ReadFile(file);
  text.replace(text.find("Dark!"), 5, "Black");
  GePath replacement(file.ToString() + ".new");
  std::ofstream(replacement.Native()) << text;
  fs::last_write_time(replacement.Native(), stamp);
  fs::rename(replacement.Native(), file.Native());
  (void)mine.Load("Shared", "Theme", theme);
  out << "A same-size, same-time replacement is still seen (by its inode): Theme=" << theme << '\n';
});

TourStep damagedFile(230, "Damaged settings file", [](HostApp& app) {
  std::ostream& out = app.Out();
  GePath file = Scratch() / "damaged.xml";
  std::ofstream(file.Native()) << "<settings><Editor><Font>Mono";
  out << "A truncated settings file is never overwritten; the library reports it and starts empty:\n";
  out.flush();
  KfPersistentStorage storage("TourDamaged", file);
  for (const auto& entry : fs::directory_iterator(Scratch().Native()))
    if (entry.path().filename().string().rfind("damaged.xml.corrupt-", 0) == 0)
      out << "Kept aside as " << entry.path().filename().string() << '\n';
  std::string font = "(none)";
  (void)storage.Load("Editor", "Font", font);
  out << "Editor/Font now: " << font << '\n';
});

TourStep persistentStream(240, "Persistent streams", [](HostApp& app) {
  std::ostream& out = app.Out();
  KfPersistentStorage storage("TourStream", Scratch() / "stream.xml");
  {
    KfPerOStream record(storage, "Accelerators", "Prim0");
    record << std::string("Ctrl+Shift+B") << "Build.All" << 2u;
  }
  KfPerIStream in(storage, "Accelerators", "Prim0");
  std::string keys, command;
  std::uint32_t flags = 0;
  bool ok = static_cast<bool>(in >> keys >> command >> flags);
  out << "A record of three items written with KfPerOStream and read back: " << keys << ", " << command << ", "
      << flags << " (ok: " << std::boolalpha << ok << ")\n";
});

TourStep traceFile(250, "Trace file", [](HostApp& app) {
  std::ostream& out = app.Out();
  out << "Tracing is decided once per process: QOR_QDBGSERVER_TRACE_FILE=<file>, or the settings\n"
         "TextEditor/LoggingEnabled=1 and TextEditor/LoggingDirectory=<dir> in \"Global\"; events are\n"
         "written only in using mode 2 (IDE) or 5 (debug server). This host runs in mode "
      << (KfCheckUsingMode(KfUsingMode::kIde) ? "2" : "other than 2") << ".\n";
  {
    Kf::ScopedLogTask task("TourTask", "step 250");
    Kf::InstantLogTask("TourMark", "inside the task");
    Kf::ScopedLogSlowExecution slow("TourSlow", std::chrono::microseconds(0));
  }
  std::string traceFile;
  if (Kf::Platform::Current().GetEnv("QOR_QDBGSERVER_TRACE_FILE", traceFile) && !traceFile.empty())
    out << "Wrote a task, an instant and a slow-execution event to " << traceFile << '\n';
  else
    out << "Tracing is off, so the three events above only read the clock.\n";
});

}  // namespace
}  // namespace OrvaneHost
