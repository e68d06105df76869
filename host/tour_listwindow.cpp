// Tour steps for the list window models: a generated log through the sliding
// proxy, a wrapped list through the flat wrapper and a table through the
// threaded standard proxy.
#include <chrono>
#include <filesystem>
#include <ostream>
#include <thread>

#include "host_app.h"
#include "listwindow_demo.h"
#include "orvane/listwindow.h"
#include "orvane/platform.h"

namespace OrvaneHost {
namespace {

using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::KfListModel;

constexpr std::uint64_t kTourLogBytes = 16ull << 20;

GePath TempFile(const std::string& name) {
  GePath dir;
  if (!Kf::Platform::Current().GetKnownFolder(Kf::Platform::KnownFolder::Temp, dir))
    dir = GePath(std::filesystem::temp_directory_path().string());
  return dir / name;
}

std::vector<KfListModel::Column> Columns(std::initializer_list<const char*> titles) {
  std::vector<KfListModel::Column> columns;
  for (const char* title : titles) {
    KfListModel::Column column;
    column.title = title;
    columns.push_back(column);
  }
  return columns;
}

TourStep slidingLog(500, "List window: a large log through the sliding proxy", [](HostApp& app) {
  std::ostream& out = app.Out();
  const GePath path = TempFile("orvane-tour-" + std::to_string(Kf::Platform::Current().GetProcessId()) + ".log");
  const std::int64_t lines = WriteDemoLog(path, kTourLogBytes);
  if (lines < 0) {
    out << "Could not write the demo log.\n";
    return;
  }
  out << "Generated a " << (kTourLogBytes >> 20) << " MB log of " << lines
      << " lines (\"orvane-host listwindow demo --size 1G\" does the same with 1 GB).\n";
  out << "The text file model reads only the lines around its chunk:\n";
  ShowFirstAndLastScreen(out, path, 60, true);
  std::error_code ignored;
  std::filesystem::remove(path.Native(), ignored);
});

TourStep wrappedList(510, "List window: wrapped rows through the flat wrapper", [](HostApp& app) {
  std::ostream& out = app.Out();
  auto model = std::make_shared<Kf::ListWindow::KfVectorFlatListModel>(
      Columns({"Message", "Source"}),
      std::vector<std::vector<std::string>>{
          {"Build started", "make"},
          {"warning: implicit conversion from 'long' to 'int' may change the value; consider an explicit cast",
           "uart.c:118"},
          {"error: 'CLOCK_DIV' undeclared (first use in this function)", "clock.c:52"},
          {"Build finished with 1 error and 1 warning", "make"},
      },
      0);
  ConsoleListControl control(10, 40);
  Kf::ListWindow::FlatModelWrapperProxy proxy;
  proxy.SetListener(&control);
  proxy.SetProvider(model);
  proxy.SetMinChunk(10);
  std::uint64_t row = 0;
  ChunkInfo chunk;
  proxy.NavigateTo(std::string("BEGIN"), &row, &chunk);
  out << "Four model rows, the message column wrapped at 40 characters, become " << chunk.rows
      << " window rows:\n";
  PrintRows(out, proxy, 0, chunk.rows);
  out << "The host widens the column; the proxy asks it to navigate to the row in the middle of the view:\n";
  control.TakeMessages();
  proxy.ColumnWidthChanged(0);
  for (const auto& message : control.TakeMessages()) {
    out << "  message: redraw, serial " << message.serial << ", navigate to model row \"" << message.text << "\"\n";
    proxy.AcknowledgeUpdate(message.serial);
    row = 0;
    proxy.NavigateTo(message.text, &row, &chunk);
    out << "  rebuilt chunk: " << chunk.rows << " window rows, that model row now at window row " << row << '\n';
  }
});

TourStep standardProxy(520, "List window: the standard proxy fetches on its worker", [](HostApp& app) {
  std::ostream& out = app.Out();
  auto model = std::make_shared<Kf::ListWindow::KfTableListModel>(Columns({"Register", "Value"}));
  std::vector<std::vector<std::string>> rows;
  for (int i = 0; i < 16; ++i) rows.push_back({"R" + std::to_string(i), "0x0000000" + std::to_string(i % 10)});
  model->SetRows(rows);
  ConsoleListControl control(5, 80);
  control.SetWake([&app] { app.Post([] {}); });  // a message wakes the UI loop
  Kf::ListWindow::KfStdListWindowProxy proxy;
  proxy.SetListener(&control);
  proxy.SetProvider(model);
  proxy.Attach();
  out << "First draw of rows 0-4 on a cold cache (placeholders, requests queued for the worker):\n";
  PrintRows(out, proxy, 0, 5);
  const bool done = app.RunUntil([&] { return control.PendingMessages() >= 5; }, std::chrono::seconds(5));
  out << "The worker fetched them" << (done ? "" : " (timed out)") << " and sent " << control.TakeMessages().size()
      << " redraw messages; the redraw:\n";
  PrintRows(out, proxy, 0, 5);
  (void)model->SetCell(2, 1, "0xDEADBEEF");
  auto messages = control.TakeMessages();
  out << "The model changed row 2 on its own; message serial " << (messages.empty() ? 0 : messages.back().serial)
      << ". Until the host acknowledges, no row is requested; after it, only row 2 is refetched:\n";
  if (!messages.empty()) proxy.AcknowledgeUpdate(messages.back().serial);
  PrintRows(out, proxy, 2, 1);
  (void)app.RunUntil([&] { return control.PendingMessages() >= 1; }, std::chrono::seconds(5));
  PrintRows(out, proxy, 2, 1);
  proxy.Detach();
  out << "Detach waited for the worker; it is " << (proxy.WorkerRunning() ? "still running" : "stopped") << ".\n";
});

}  // namespace
}  // namespace OrvaneHost
