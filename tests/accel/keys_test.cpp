#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <new>

#include "orvane/accel.h"

namespace Kf::Accel {
namespace {

// A front end whose objects count themselves, to check ownership.
struct Counts {
  int keys = 0;
  int sequences = 0;
  bool sequencesClone = true;  // false: Clone gives null, as by default
};

struct CountedKey : AccelKey::IAccelKeyImpl {
  CountedKey(Counts& c, unsigned int v) : counts(c), value(v) { ++counts.keys; }
  ~CountedKey() override { --counts.keys; }
  IAccelKeyImpl* Clone() override { return new CountedKey(counts, value); }
  bool Equal(const IAccelKeyImpl* other) override { return value == static_cast<const CountedKey*>(other)->value; }
  bool LessThan(const IAccelKeyImpl* other) override {
    return value < static_cast<const CountedKey*>(other)->value;
  }
  Counts& counts;
  unsigned int value;
};

struct CountedSequence : KeySequence::IKeySequenceImpl {
  CountedSequence(Counts& c, unsigned int v) : counts(c), value(v) { ++counts.sequences; }
  ~CountedSequence() override { --counts.sequences; }
  IKeySequenceImpl* Clone() override { return counts.sequencesClone ? new CountedSequence(counts, value) : nullptr; }
  bool Equal(const IKeySequenceImpl* other) override {
    return value == static_cast<const CountedSequence*>(other)->value;
  }
  bool LessThan(const IKeySequenceImpl* other) override {
    return value < static_cast<const CountedSequence*>(other)->value;
  }
  void Write(KfPerOStream&) override {}
  void Read(KfPerIStream&) override {}
  Counts& counts;
  unsigned int value;
};

struct CountingFrontEnd : IAccelFrontEnd {
  Counts counts;
  AccelKey::IAccelKeyImpl* CreateKey(unsigned int modifiers, unsigned int key) override {
    return new CountedKey(counts, modifiers * 1000 + key);
  }
  KeySequence::IKeySequenceImpl* CreateChord(const AccelKey& first, const AccelKey&) override {
    return CreateKeySequence(first);
  }
  KeySequence::IKeySequenceImpl* CreateKeySequence(const AccelKey& key) override {
    return new CountedSequence(counts, static_cast<const CountedKey*>(key.Impl())->value);
  }
  void GetStorageKey(std::string& out) override { out = "Counted"; }
};

class KeysTest : public ::testing::Test {
 protected:
  KeysTest() { Register(&frontEnd); }
  ~KeysTest() override { Unregister(&frontEnd); }
  CountingFrontEnd frontEnd;
};

TEST_F(KeysTest, EmptyAndNonEmptySequencesCompareByTheFixedRules) {
  KeySequence empty, otherEmpty;
  KeySequence a(AccelKey(1, 'A'));
  KeySequence b(1, 'B');
  EXPECT_FALSE(static_cast<bool>(empty));
  EXPECT_TRUE(static_cast<bool>(a));

  EXPECT_TRUE(empty == otherEmpty);
  EXPECT_FALSE(empty == a);
  EXPECT_FALSE(a == empty);
  EXPECT_TRUE(a == KeySequence(1, 'A'));
  EXPECT_FALSE(a == b);

  EXPECT_TRUE(a < empty);
  EXPECT_TRUE(empty < otherEmpty) << "an empty sequence is less than an empty one";
  EXPECT_FALSE(empty < a);
  EXPECT_TRUE(a < b);
  EXPECT_FALSE(b < a);
}

TEST_F(KeysTest, HandlesOwnTheirObjects) {
  {
    KeySequence fromNumbers(2, 'K');
    EXPECT_EQ(frontEnd.counts.keys, 0) << "the temporary key object is released";
    EXPECT_EQ(frontEnd.counts.sequences, 1);

    KeySequence copy(fromNumbers);
    EXPECT_EQ(frontEnd.counts.sequences, 2) << "copy construction clones";
    EXPECT_TRUE(copy == fromNumbers);

    KeySequence moved(std::move(copy));
    EXPECT_EQ(frontEnd.counts.sequences, 2);
    EXPECT_FALSE(static_cast<bool>(copy));  // NOLINT: moved-from state is empty by design

    AccelKey key(3, 'X');
    std::unique_ptr<AccelKey> heapCopy(key.Copy());
    EXPECT_EQ(frontEnd.counts.keys, 2);
    EXPECT_TRUE(heapCopy->Equal(key));
    EXPECT_FALSE(heapCopy->LessThan(key));
    EXPECT_TRUE(AccelKey(0, 'A').LessThan(key));
  }
  EXPECT_EQ(frontEnd.counts.keys, 0);
  EXPECT_EQ(frontEnd.counts.sequences, 0);
}

TEST_F(KeysTest, CopiesShareAnObjectThatCannotCloneAndTheLastOneDeletesIt) {
  frontEnd.counts.sequencesClone = false;
  {
    KeySequence original(0, 'A');
    {
      KeySequence copy(original);
      KeySequence copyOfCopy(copy);
      EXPECT_EQ(copyOfCopy.Impl(), original.Impl());
      EXPECT_EQ(frontEnd.counts.sequences, 1);
    }
    EXPECT_EQ(frontEnd.counts.sequences, 1) << "the original still holds its object";
    EXPECT_TRUE(original == KeySequence(0, 'A'));

    auto* first = new KeySequence(0, 'B');
    std::map<KeySequence, int> table{{*first, 1}};
    delete first;
    EXPECT_EQ(frontEnd.counts.sequences, 2) << "the table's copy outlives the handle it was copied from";
    AccelMap copied;
    copied[table.begin()->first] = "x";
  }
  EXPECT_EQ(frontEnd.counts.sequences, 0);
}

TEST_F(KeysTest, CopyAssignmentSharesThePointerAndKeepsTheOldObject) {
  // The source is discarded without destruction, as the assignment rule asks.
  alignas(KeySequence) unsigned char storage[sizeof(KeySequence)];
  auto* source = new (storage) KeySequence(0, 'S');
  const KeySequence::IKeySequenceImpl* shared = source->Impl();
  {
    KeySequence target(0, 'T');
    const KeySequence::IKeySequenceImpl* old = target.Impl();
    target = *source;
    EXPECT_EQ(target.Impl(), shared);
    EXPECT_EQ(frontEnd.counts.sequences, 2) << "the target's previous object is not released";
    delete old;  // released by hand so the test leaves nothing behind
  }
  EXPECT_EQ(frontEnd.counts.sequences, 0);
  EXPECT_EQ(sizeof(KeySequence), sizeof(void*));
  EXPECT_EQ(sizeof(AccelKey), sizeof(void*));
}

TEST_F(KeysTest, MoveAssignmentExchanges) {
  KeySequence a(0, 'A');
  KeySequence b(0, 'B');
  a = KeySequence(0, 'C');
  EXPECT_TRUE(a == KeySequence(0, 'C'));
  EXPECT_EQ(frontEnd.counts.sequences, 2) << "the replaced object went with the temporary";
}

TEST(AccelFrontEndSlot, UnregisterClearsWhateverIsGiven) {
  CountingFrontEnd first, second;
  EXPECT_EQ(AccelFrontEnd(), nullptr);
  Register(&first);
  Register(&second);
  EXPECT_EQ(AccelFrontEnd(), &second);
  Unregister(&first);
  EXPECT_EQ(AccelFrontEnd(), nullptr);
}

TEST_F(KeysTest, EntriesOrderByCommandThenKey) {
  AccelEntry copyA(KeySequence(0, 'A'), "Edit.Copy");
  AccelEntry copyB(KeySequence(0, 'B'), "Edit.Copy");
  AccelEntry cut(KeySequence(0, 'A'), "Edit.Cut");
  AccelEntry prefix(KeySequence(0, 'Z'), "Edit.Cop");
  EXPECT_TRUE(copyA < copyB);
  EXPECT_TRUE(copyB < cut);
  EXPECT_TRUE(prefix < copyA) << "a shorter prefix sorts first";
  EXPECT_FALSE(copyA == copyB);
  EXPECT_TRUE(copyA == AccelEntry(KeySequence(0, 'A'), "Edit.Copy"));

  AccelEntry assigned;
  assigned = copyA;
  EXPECT_NE(assigned.key.Impl(), copyA.key.Impl()) << "entry assignment gives the copy its own key";
  EXPECT_TRUE(assigned == copyA);
}

}  // namespace
}  // namespace Kf::Accel
