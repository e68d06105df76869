#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "listwindow_test_util.h"
#include "support/temp_path.h"

namespace {

using namespace ListWindowTest;
using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::KfTextFileListModel;
using Kf::ListWindow::SlidingModelProxy;

// A log that grows on one thread (the model notifying from there) while the
// host thread acknowledges, reads rows and slides the chunk.
TEST(SlidingProxyConcurrency, GrowingFileWhileTheHostScrolls) {
  const auto path = Kf::Testing::UniqueTempPath("orvane_listwindow_growing");
  {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    for (int i = 0; i < 2000; ++i) out << "line " << i << "\n";
  }
  auto model = std::make_shared<KfTextFileListModel>(GePath(path.string()), 50);
  RecordingListener host;
  SlidingModelProxy proxy;
  proxy.SetListener(&host);
  proxy.SetProvider(model);
  proxy.SetMinChunk(50);
  std::atomic<bool> stop{false};
  std::thread writer([&] {
    int i = 2000;
    while (!stop) {
      {
        std::ofstream out(path, std::ios::binary | std::ios::app);
        out << "line " << i++ << "\n";
      }
      model->CheckGrowth();
    }
  });
  ChunkInfo chunk;
  u64 row = 0;
  for (int step = 0; step < 400; ++step) {
    for (auto& message : host.Take()) proxy.AcknowledgeUpdate(message.serial);
    if (step % 3 == 0) proxy.AddAfter(10, &chunk);
    if (step % 7 == 0) proxy.AddBefore(10, &chunk);
    if (step % 50 == 0) proxy.NavigateTo(std::string("END"), &row, &chunk);
    for (u64 r = 0; r < proxy.NumberOfRows() && r < 20; ++r) {
      std::vector<std::string> cells;
      std::vector<KfListModel::Format> formats;
      KfListModel::TreeInfo tree;
      bool flag = false;
      proxy.GetRow(r, &cells, &formats, &tree, &flag);
      ASSERT_EQ(cells.size(), 2u);
      ASSERT_TRUE(cells[1] == "-" || cells[1].rfind("line ", 0) == 0) << cells[1];
    }
  }
  stop = true;
  writer.join();
  model.reset();
  std::filesystem::remove(path);
}

}  // namespace
