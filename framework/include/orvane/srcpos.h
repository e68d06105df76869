// Kf::SrcPos: a position in a source file.
//
// Line and column are zero-based; texts shown to a person add one. The
// default-constructed position is line 0, column 0, the start of the file,
// which is also what a log entry without a position carries.
//
// Threads: a plain value; any thread.
#pragma once

#include <compare>

namespace Kf {

struct SrcPos {
  int line = 0;
  int column = 0;

  constexpr SrcPos() = default;
  constexpr SrcPos(int lineIndex, int columnIndex) : line(lineIndex), column(columnIndex) {}

  constexpr int Line() const { return line; }
  constexpr int Column() const { return column; }
  constexpr bool IsDefault() const { return line == 0 && column == 0; }

  friend constexpr bool operator==(const SrcPos&, const SrcPos&) = default;
  friend constexpr auto operator<=>(const SrcPos&, const SrcPos&) = default;
};

}  // namespace Kf
