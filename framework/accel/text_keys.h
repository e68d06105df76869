// The key and sequence objects of TextFrontEnd.
#pragma once

#include <string>
#include <vector>

#include "orvane/accel.h"

namespace Kf::Accel::Detail {

using Stroke = TextFrontEnd::Stroke;

bool StrokeLess(const Stroke& a, const Stroke& b);
std::string FormatStrokes(const std::vector<Stroke>& strokes);
inline bool StrokeEqual(const Stroke& a, const Stroke& b) { return a.modifiers == b.modifiers && a.key == b.key; }

class TextKey final : public AccelKey::IAccelKeyImpl {
 public:
  explicit TextKey(Stroke stroke) : stroke_(stroke) {}
  IAccelKeyImpl* Clone() override { return new TextKey(stroke_); }
  bool Equal(const IAccelKeyImpl* other) override;
  bool LessThan(const IAccelKeyImpl* other) override;
  const Stroke& Get() const { return stroke_; }

 private:
  Stroke stroke_;
};

class TextSequence final : public KeySequence::IKeySequenceImpl {
 public:
  explicit TextSequence(std::vector<Stroke> strokes) : strokes_(std::move(strokes)) {}
  IKeySequenceImpl* Clone() override { return new TextSequence(strokes_); }
  bool Equal(const IKeySequenceImpl* other) override;
  bool LessThan(const IKeySequenceImpl* other) override;
  // One text item: the key text (text_keys_stream.cpp).
  void Write(KfPerOStream& stream) override;
  void Read(KfPerIStream& stream) override;
  const std::vector<Stroke>& Get() const { return strokes_; }

 private:
  std::vector<Stroke> strokes_;
};

}  // namespace Kf::Accel::Detail
