// Shared helpers of the accelerator tests: the text front end registered for a
// test's lifetime, keys from text, and a concrete manager.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "orvane/accel.h"

namespace Kf::Accel::Testing {

inline KeySequence Keys(const std::string& text) {
  KeySequence sequence;
  std::string error;
  EXPECT_TRUE(TextFrontEnd::Parse(text, sequence, error)) << error;
  return sequence;
}

class ScopedTextFrontEnd {
 public:
  explicit ScopedTextFrontEnd(std::string storageKey = "Accelerators") : frontEnd_(std::move(storageKey)) {
    Register(&frontEnd_);
  }
  ~ScopedTextFrontEnd() { Unregister(&frontEnd_); }

 private:
  TextFrontEnd frontEnd_;
};

class TestManager : public AccelManager {
 public:
  int rebuilds = 0;
  void RebuildAccelerators() override { ++rebuilds; }
  void KeySequenceToString(const KeySequence& key, std::string& out) override { out = TextFrontEnd::Format(key); }

  using AccelManager::CommandIsInSet;
  using AccelManager::DoIdleChore;
  using AccelManager::EnsureLoaded;
  using AccelManager::FindKeySequence;
  using AccelManager::SetDefaultIfMissing;
  using AccelManager::WriteToPersistentStorage;
  using AccelManager::LoadFromPersistentStorage;
  using AccelManager::primary;
  bool NeedsRebuild() const { return needsRebuild; }

  AccelMap Primary() { AccelMap m; GetPrimaryAccels(m); return m; }
  AccelMap Secondary() { AccelMap m; GetSecondaryAccels(m); return m; }
  AccelMap PrimaryDefault() { AccelMap m; GetPrimaryAccelsDefault(m); return m; }
  AccelMap SecondaryDefault() { AccelMap m; GetSecondaryAccelsDefault(m); return m; }
};

// "Ctrl+S=File.Save, F5=Debug.Go" for readable table comparisons.
inline std::string Describe(const AccelMap& table) {
  std::string text;
  for (const auto& [key, command] : table) {
    if (!text.empty()) text += ", ";
    text += TextFrontEnd::Format(key) + "=" + command;
  }
  return text;
}

}  // namespace Kf::Accel::Testing
