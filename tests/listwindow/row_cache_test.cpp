#include <gtest/gtest.h>

#include "orvane/listwindow_proxy.h"

namespace {

using Kf::ListWindow::ListWindowProxy;
using Cache = ListWindowProxy::Cache;
using RowData = ListWindowProxy::RowData;
using u64 = std::uint64_t;

RowData Row(const std::string& text) {
  RowData row;
  row.cells = {text};
  row.formats.resize(1);
  return row;
}

// Fills every slot of [first, first + count) so that reshaping can be traced.
void Fill(Cache& cache, u64 first, u64 count) {
  for (u64 r = first; r < first + count; ++r) cache.Update(r, Row(std::to_string(r)));
}

TEST(RowCache, GetRowAnswersDefaultUntilUpdatedAndFalseWhenDirty) {
  Cache cache;
  cache.SetDefaultRowData(Row("-"));
  RowData out;
  EXPECT_FALSE(cache.GetRow(3, &out));
  EXPECT_EQ(out, Row("-"));

  cache.Update(3, Row("three"));
  cache.Update(4, Row("four"));
  EXPECT_TRUE(cache.GetRow(3, &out));
  EXPECT_EQ(out, Row("three"));
  EXPECT_FALSE(cache.GetRow(2, &out)) << "an empty slot inside the run";
  EXPECT_EQ(out, Row("-"));

  cache.SetDirty(3);
  EXPECT_FALSE(cache.GetRow(3, &out));
  EXPECT_EQ(out, Row("three")) << "a dirty row is still drawn, but refetched";
  EXPECT_TRUE(cache.GetRow(4, &out));

  cache.SetDirty();
  EXPECT_FALSE(cache.GetRow(4, &out));
  cache.Update(4, Row("again"));
  EXPECT_TRUE(cache.GetRow(4, &out)) << "Update writes a clean entry";
}

TEST(RowCache, EnsureInCacheGrowsAndClearsOnLargeGaps) {
  Cache cache;
  cache.EnsureInCache(5, 10);
  EXPECT_EQ(cache.FirstRow(), 0u);
  EXPECT_EQ(cache.NumberOfRows(), 15u);

  Cache far;
  far.EnsureInCache(0, 20);
  Fill(far, 0, 20);
  far.EnsureInCache(1000000, 10);
  EXPECT_EQ(far.FirstRow(), 1000000u);
  EXPECT_EQ(far.NumberOfRows(), 10u);
  EXPECT_FALSE(far.IsFilled(1000000));

  Cache behind;
  behind.EnsureInCache(200000, 5);
  behind.EnsureInCache(0, 10);
  EXPECT_EQ(behind.FirstRow(), 0u);
  EXPECT_EQ(behind.NumberOfRows(), 10u);
}

TEST(RowCache, EnsureInCacheBeforeTheRunPrependsAndCutsTheEnd) {
  Cache cache;
  cache.EnsureInCache(50000, 60000);  // slots 50000..109999
  Fill(cache, 109990, 10);
  cache.EnsureInCache(40000, 1);  // gap 10000, size 60000: fits the limit
  EXPECT_EQ(cache.FirstRow(), 40000u);
  EXPECT_EQ(cache.NumberOfRows(), 70000u);
  EXPECT_TRUE(cache.IsFilled(109999));

  cache.EnsureInCache(0, 1);  // gap 40000 + 70000 > limit: cut to 60000 then prepend
  EXPECT_EQ(cache.FirstRow(), 0u);
  EXPECT_EQ(cache.NumberOfRows(), 100000u);
  EXPECT_FALSE(cache.IsFilled(109999));
}

TEST(RowCache, EnsureInCacheAfterTheRunSlidesToKeepTheLimit) {
  Cache cache;
  cache.EnsureInCache(0, 100000);
  Fill(cache, 99990, 10);
  cache.EnsureInCache(150000, 10);  // within reach: drop from the front
  EXPECT_EQ(cache.FirstRow(), 50010u);
  EXPECT_EQ(cache.NumberOfRows(), 100000u);
  EXPECT_TRUE(cache.IsFilled(99995));

  cache.EnsureInCache(150000 + 200001, 5);  // wholly beyond reach: start afresh
  EXPECT_EQ(cache.FirstRow(), 350001u);
  EXPECT_EQ(cache.NumberOfRows(), 5u);

  Cache big;
  big.EnsureInCache(0, 250000);  // a request larger than the limit raises it
  EXPECT_EQ(big.NumberOfRows(), 250000u);
}

TEST(RowCache, ShiftDownRowsAtTheEndsAndBeyond) {
  const u64 base = 300000;
  Cache cache;
  cache.EnsureInCache(base, 10);  // far from 0: a fresh run of 10 slots at `base`
  ASSERT_EQ(cache.FirstRow(), base);
  cache.Update(base + 5, Row("x"));
  cache.ShiftDownRows(base + 10, 5);  // just past the end
  EXPECT_EQ(cache.NumberOfRows(), 15u);
  cache.ShiftDownRows(base + 16, 5);  // one beyond: nothing
  EXPECT_EQ(cache.NumberOfRows(), 15u);
  cache.ShiftDownRows(base - 50, 5);  // before the run: nothing
  EXPECT_EQ(cache.NumberOfRows(), 15u);
  cache.ShiftDownRows(base, 2);  // at the start: the rows move down
  EXPECT_TRUE(cache.IsFilled(base + 7));
  EXPECT_FALSE(cache.IsFilled(base + 5));
}

TEST(RowCache, ShiftDownRowsNearTheLimitShrinksAroundTheInsertion) {
  Cache cache;
  cache.EnsureInCache(0, 99998);
  Fill(cache, 60000, 1);
  cache.ShiftDownRows(60000, 5);
  // keep = max(99998 / 2, 10000) = 49999 slots above the insertion point,
  // min(100000 - 49999 - 5, 39998) below it, then the 5 new ones.
  EXPECT_EQ(cache.FirstRow(), 60000u - 49999u);
  EXPECT_EQ(cache.NumberOfRows(), 49999u + 39998u + 5u);
  EXPECT_TRUE(cache.IsFilled(60005)) << "the row at the insertion point moved down";
  EXPECT_FALSE(cache.IsFilled(60000));

  Cache small;
  small.EnsureInCache(0, 99998);
  small.ShiftDownRows(20, 5);  // fewer than `keep` slots above: all of them stay
  EXPECT_EQ(small.FirstRow(), 0u);
  EXPECT_EQ(small.NumberOfRows(), 100000u);

  Cache cut;
  cut.EnsureInCache(0, 99998);
  cut.ShiftDownRows(80000, 70000);  // the insertion itself is cut to fit
  EXPECT_EQ(cut.FirstRow(), 80000u - 49999u);
  EXPECT_EQ(cut.NumberOfRows(), 100000u);

  Cache before;
  before.EnsureInCache(10, 99998);
  before.ShiftDownRows(5, 5);  // wraps below firstRow: counts as beyond, unchanged
  EXPECT_EQ(before.NumberOfRows(), 99998u);
}

TEST(RowCache, ShiftUpRowsErasesTheRemovedSlots) {
  Cache cache;
  cache.EnsureInCache(0, 10);
  cache.Update(7, Row("seven"));
  cache.ShiftUpRows(2, 3);
  EXPECT_EQ(cache.NumberOfRows(), 7u);
  RowData out;
  EXPECT_TRUE(cache.GetRow(4, &out));
  EXPECT_EQ(out, Row("seven"));
  cache.ShiftUpRows(20, 3);
  EXPECT_EQ(cache.NumberOfRows(), 7u);
  cache.Clear();
  EXPECT_EQ(cache.NumberOfRows(), 0u);
  EXPECT_EQ(cache.FirstRow(), 0u);
}

}  // namespace
