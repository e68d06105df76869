#include "orvane/argvars.h"

#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace {

// An expander driven by a function; registered for its own lifetime.
class TestExpander : public Kf::ArgVarExpander {
 public:
  using Body = std::function<bool(std::string&)>;
  TestExpander(std::string name, Body body, std::set<std::string> index = {})
      : body_(std::move(body)), index_(std::move(index)) {
    Kf::RegisterArgVarExpander(this, name);
  }
  ~TestExpander() override { Kf::UnregisterArgVarExpander(this); }
  bool Expand(std::string& text) override {
    ++calls;
    return body_(text);
  }
  void AddToIndex(const std::string& key, std::set<std::string>& out) override {
    for (const auto& name : index_) out.insert(key + ":" + name);
  }
  int calls = 0;

 private:
  Body body_;
  std::set<std::string> index_;
};

// Answers one variable with a fixed value.
TestExpander::Body Answers(std::string variable, std::string value) {
  return [variable, value](std::string& text) {
    if (text != variable) return false;
    text = value;
    return true;
  };
}

// The expanded text, or "declined:<text as left>".
std::string Expand(std::string text) {
  return Kf::ExpandSingleVar(&text) ? text : "declined:" + text;
}

class ArgVars : public ::testing::Test {
 protected:
  Kf::Testing::ScopedFakePlatform platform_;
};

TEST_F(ArgVars, StandardVariablesComeFromThePlatformAndMatchExactly) {
  EXPECT_EQ(Expand("$CUR_DIR$"), "/work/current");
  EXPECT_EQ(Expand("$USER_NAME$"), "tester");
  EXPECT_EQ(Expand("$DATE$"), "11/22/2026");
  EXPECT_EQ(Expand("$QV_DIR$"), "/opt");  // two levels above /opt/orvane/bin
  EXPECT_EQ(Expand("$cur_dir$"), "declined:$cur_dir$");
  EXPECT_EQ(Expand(" $CUR_DIR$"), "declined: $CUR_DIR$");
  EXPECT_EQ(Expand("$CUR_DIR$/x"), "declined:$CUR_DIR$/x");
  EXPECT_EQ(Expand(""), "declined:");
  EXPECT_FALSE(Kf::ExpandSingleVar(nullptr));
}

TEST_F(ArgVars, StandardExpanderDeclinesWhenThePlatformCannotAnswer) {
  platform_->userName.clear();
  platform_->shortDate.clear();
  platform_->commonBinDirectory = GePath();
  platform_->currentDirectory = GePath();
  for (const char* variable : {"$USER_NAME$", "$DATE$", "$QV_DIR$", "$CUR_DIR$"})
    EXPECT_EQ(Expand(variable), std::string("declined:") + variable);
}

TEST_F(ArgVars, LaterExpandersCannotOverrideStandardOnesAndValuesAreTrimmed) {
  TestExpander host("host", [](std::string& text) {
    if (text == "$PROJ_DIR$") text = " \t/src/proj \n";
    else if (text == "$BLANK$") text = "   ";
    else if (text.size() > 2 && text.front() == '$') text = "host value";
    else return false;
    return true;
  });
  for (const char* variable : {"$CUR_DIR$", "$USER_NAME$", "$DATE$", "$QV_DIR$"})
    EXPECT_NE(Expand(variable), "host value") << variable;
  EXPECT_EQ(host.calls, 0);
  EXPECT_EQ(Expand("$PROJ_DIR$"), "/src/proj");
  EXPECT_EQ(Expand("$BLANK$"), "");
  EXPECT_EQ(Expand("$OTHER$"), "host value");
}

TEST_F(ArgVars, ExpandersAreAskedInOrderAndEachSeesTheOriginalText) {
  TestExpander careless("careless", [](std::string& text) {
    text = "scribbled";
    return false;
  });
  TestExpander first("first", Answers("$A$", "first"));
  TestExpander second("second", Answers("$A$", "second"));
  TestExpander thrower("thrower", [](std::string&) -> bool { throw std::runtime_error("boom"); });
  TestExpander last("last", Answers("$B$", "last"));
  EXPECT_EQ(Expand("$A$"), "first");
  EXPECT_EQ(second.calls, 0);
  EXPECT_EQ(Expand("$B$"), "last");  // the throwing expander counts as a decline
  EXPECT_EQ(Expand("$C$"), "declined:$C$");
}

TEST_F(ArgVars, UnregisterRemovesTheFirstRegistrationOnly) {
  TestExpander twice("twice", Answers("$T$", "t"));
  Kf::RegisterArgVarExpander(&twice, "twice again");
  Kf::UnregisterArgVarExpander(&twice);
  EXPECT_EQ(Expand("$T$"), "t");
  Kf::UnregisterArgVarExpander(&twice);
  EXPECT_EQ(Expand("$T$"), "declined:$T$");
  Kf::UnregisterArgVarExpander(nullptr);  // nothing to remove: no effect
}

TEST_F(ArgVars, ExpanderMayReenterTheRegistryOnItsThread) {
  std::unique_ptr<TestExpander> late;
  TestExpander* selfRemoving = nullptr;
  TestExpander registrar("registrar", [&](std::string& text) {
    if (!late) late = std::make_unique<TestExpander>("late", Answers("$LATE$", "late value"));
    if (text != "$NESTED$") return false;
    std::string inner = "$USER_NAME$";
    if (!Kf::ExpandSingleVar(&inner)) return false;
    text = "user " + inner;
    return true;
  });
  TestExpander selfRemover("self-remover", [&](std::string&) {
    Kf::UnregisterArgVarExpander(selfRemoving);
    return false;
  });
  selfRemoving = &selfRemover;

  // Registered during this very pass, after the registrar: asked in it.
  EXPECT_EQ(Expand("$LATE$"), "late value");
  EXPECT_EQ(selfRemover.calls, 1);
  EXPECT_EQ(Expand("$NESTED$"), "user tester");
  EXPECT_EQ(Expand("$LATE$"), "late value");
  EXPECT_EQ(selfRemover.calls, 1);
  EXPECT_EQ(late->calls, 2);
}

TEST_F(ArgVars, IndexAsksEveryExpanderInOrder) {
  TestExpander a("a", Answers("$A$", "a"), {"$A1$", "$A2$"});
  TestExpander b("b", Answers("$B$", "b"));
  TestExpander c("c", Answers("$C$", "c"), {"$C1$"});
  std::set<std::string> names{"kept"};
  Kf::GetIndex("k", names);
  EXPECT_EQ(names, (std::set<std::string>{"kept", "k:$A1$", "k:$A2$", "k:$C1$"}));
}

}  // namespace
