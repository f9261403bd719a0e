// What record sets see of rows that are written beside them.
#include <algorithm>
#include <random>

#include "store_fixture.h"

namespace merivane::test {

namespace {

class LiveRows : public StoreFixture {};

TEST_F(LiveRows, AnAskedSetKeepsTheRowsThatItFound) {
  for (const char* order : {"", " order by Num"}) {
    Recordset walk = Dynamic(std::string("select * from T where Odd = 1") + order);
    EXPECT_EQ(walk.Field("Name"), Value("a"));
    Recordset adder = Dynamic("select * from T");
    Add(adder, 9, "new");
    Recordset third = Dynamic("select * from T where Num = 3");
    third.SetField("Odd", 0);
    third.SetField("Name", "changed");
    third.Update();
    Recordset fourth = Dynamic("select * from T where Num = 4");
    fourth.SetField("Odd", 1);
    fourth.Update();
    Dynamic("select * from T where Num = 5").Delete();
    EXPECT_EQ(Rest(walk), "a changed ");
    third.SetField("Odd", 1);
    third.SetField("Name", "c");
    third.Update();
    fourth.SetField("Odd", 0);
    fourth.Update();
    Add(adder, 5, "e");
    Dynamic("select * from T where Num = 9").Delete();
  }
}

TEST_F(LiveRows, ASetThatWasNotAskedSeesWhatIsThereWhenItIs) {
  Recordset walk = Dynamic("select * from T where Odd = 1");
  Recordset fixed = Static("select * from T where Odd = 1");
  Recordset adder = Dynamic("select * from T");
  Add(adder, 9, "new");
  Dynamic("select * from T where Num = 3").Delete();
  EXPECT_EQ(Rest(walk), "a e new ");
  EXPECT_EQ(Rest(fixed), "a e new ");
}

TEST_F(LiveRows, AStaticSetStaysAsItWasAsked) {
  for (const bool counted : {false, true}) {
    Recordset fixed = Static("select * from T where Num < 6");
    if (counted) {
      EXPECT_EQ(fixed.RecordCount(), 5);
    } else {
      EXPECT_FALSE(fixed.Eof());
    }
    Recordset set = Dynamic("select * from T");
    set.SetField("Name", "x");
    set.MoveNext();
    set.Delete();
    Add(set, 5, "new");
    EXPECT_EQ(fixed.RecordCount(), 5);
    EXPECT_EQ(Rest(fixed), counted ? "x c d e new " : "a b c d e ");
    fixed.MoveLast();
    EXPECT_EQ(Joined(fixed.Field("Name")), counted ? "new" : "e");
  }
}

TEST_F(LiveRows, ATakenWorkListGoesOnWhileItsRowsLeaveTheCondition) {
  int rounds = 0;
  for (Recordset list = Dynamic("select * from T where Odd = 1"); !list.Eof(); ++rounds) {
    list.SetField("Odd", 0);
    list.Update();
    list.Close();
    list.OpenDynamic("select * from T where Odd = 1", &connection);
  }
  EXPECT_EQ(rounds, 3);
  Recordset walk = Dynamic("select * from T where Odd = 0");
  for (; !walk.Eof(); walk.MoveNext()) {
    walk.SetField("Odd", 1);
    walk.Update();
    ++rounds;
  }
  EXPECT_EQ(rounds, 8);
}

TEST_F(LiveRows, ALastRowThatLeavesTheConditionStaysTheSetsLast) {
  Recordset set = Dynamic("select * from T where Odd = 1");
  EXPECT_FALSE(set.Eof());
  set.MoveLast();
  set.SetField("Odd", 0);
  set.Update();
  EXPECT_EQ(set.Field("Name"), Value("e"));
  set.MovePrevious();
  EXPECT_EQ(Rest(set), "c e ");
}

// Random steps through several sets beside a model of what each must show.
class ModelSet {
 public:
  struct Cell {
    int id;
    int group;
  };
  using Table = std::vector<std::pair<int, int>>;  // id, group; by order of insertion

  ModelSet(Connection& connection, Table& table, int group, bool ordered)
      : connection_(connection), table_(table), group_(group), ordered_(ordered) {
    Open();
  }

  void Step(std::mt19937& random, int& nextId) {
    switch (random() % 12) {
      case 0:
        set_.Close();
        return Open();
      case 1:
        return Add(nextId++, static_cast<int>(random() % 3));
      case 2:
      case 3:
        return ChangeGroup(static_cast<int>(random() % 3));
      case 4:
        return Delete();
      case 5:
        return Move([&] { set_.MoveFirst(); }, There(0, 1));
      case 6:
        return Move([&] { set_.MoveLast(); }, There(static_cast<int>(Asked().size()) - 1, -1));
      case 7:
      case 8:
        return Previous();
      default:
        return Next();
    }
  }

  void Check() {
    if (!asked_) return;
    ASSERT_EQ(set_.Eof(), at_ == kEnd || at_ == kNone);
    ASSERT_EQ(set_.Bof(), at_ == kStart || at_ == kNone);
    if (at_ >= 0 && Exists(at_)) {
      ASSERT_EQ(set_.Field("Num"), Value(ids_[static_cast<std::size_t>(at_)]));
      ASSERT_EQ(set_.Field("Odd"), Value(GroupOf(ids_[static_cast<std::size_t>(at_)])));
    } else {
      ASSERT_EQ(ErrorOf([&] { set_.Field("Num"); }), kNoCurrentRecord);
    }
  }

 private:
  static constexpr int kStart = -1;
  static constexpr int kEnd = -2;
  static constexpr int kNone = -3;

  void Open() {
    set_.OpenDynamic("select * from M where Odd = " + std::to_string(group_) +
                         (ordered_ ? " order by Size desc" : ""),
                     &connection_);
    asked_ = false;
    ids_.clear();
    added_.clear();
  }

  static int SizeOf(int id) { return id * 7 % 5; }

  std::vector<int>& Asked() {
    if (asked_) return ids_;
    asked_ = true;
    for (const auto& [id, group] : table_) {
      const bool own = std::find(added_.begin(), added_.end(), id) != added_.end();
      if (group == group_ && !own) ids_.push_back(id);
    }
    if (ordered_) {
      std::stable_sort(ids_.begin(), ids_.end(),
                       [](int a, int b) { return SizeOf(a) > SizeOf(b); });
    }
    ids_.insert(ids_.end(), added_.begin(), added_.end());
    at_ = There(0, 1);
    return ids_;
  }

  auto Find(int id) const {
    return std::find_if(table_.begin(), table_.end(),
                        [&](const auto& row) { return row.first == id; });
  }
  int GroupOf(int id) const { return Find(id)->second; }
  bool Exists(int place) const {
    return Find(ids_[static_cast<std::size_t>(place)]) != table_.end();
  }

  int There(int from, int direction) {
    const int size = static_cast<int>(Asked().size());
    while (from >= 0 && from < size && !Exists(from)) from += direction;
    return from >= 0 && from < size ? from : kNone;
  }

  void Move(const std::function<void()>& move, int target) {
    EXPECT_EQ(ErrorOf(move), target == kNone ? kNoCurrentRecord : 0);
    at_ = target;
  }

  void Next() {
    Asked();
    const bool stuck = at_ == kEnd || at_ == kNone;
    EXPECT_EQ(ErrorOf([&] { set_.MoveNext(); }), stuck ? kNoCurrentRecord : 0);
    if (stuck) return;
    at_ = There(at_ + 1, 1);
    if (at_ == kNone) at_ = kEnd;
  }

  void Previous() {
    Asked();
    const bool stuck = at_ == kStart || at_ == kNone;
    EXPECT_EQ(ErrorOf([&] { set_.MovePrevious(); }), stuck ? kNoCurrentRecord : 0);
    if (stuck) return;
    at_ = There(at_ == kEnd ? static_cast<int>(ids_.size()) - 1 : at_ - 1, -1);
    if (at_ == kNone) at_ = kStart;
  }

  void Add(int id, int group) {
    set_.AddNew({"Num", "Odd", "Size"}, {id, group, SizeOf(id)});
    table_.emplace_back(id, group);
    (asked_ ? ids_ : added_).push_back(id);
  }

  void ChangeGroup(int group) {
    Asked();
    const bool there = at_ >= 0 && Exists(at_);
    EXPECT_EQ(ErrorOf([&] { set_.SetField("Odd", group); }), there ? 0 : kNoCurrentRecord);
    if (!there) return;
    set_.Update();
    table_[static_cast<std::size_t>(Find(ids_[static_cast<std::size_t>(at_)]) - table_.begin())]
        .second = group;
  }

  void Delete() {
    Asked();
    const bool there = at_ >= 0 && Exists(at_);
    EXPECT_EQ(ErrorOf([&] { set_.Delete(); }), there ? 0 : kNoCurrentRecord);
    if (there) table_.erase(Find(ids_[static_cast<std::size_t>(at_)]));
  }

  Connection& connection_;
  Table& table_;
  int group_;
  bool ordered_;
  Recordset set_;
  bool asked_ = false;
  std::vector<int> ids_;
  std::vector<int> added_;
  int at_ = kNone;
};

TEST_F(LiveRows, SeveralSetsOnOneTableAgreeWithAPlainModel) {
  for (unsigned seed = 1; seed <= 25; ++seed) {
    SCOPED_TRACE(seed);
    connection.Close();
    RawDatabase(path).Run(
        "drop table if exists M; create table M (Num integer, Odd integer,"
        " Size integer); create index MI on M (Odd)");
    connection.Open(ConnectionText(path));
    std::mt19937 random(seed);
    ModelSet::Table table;
    int nextId = 1;
    ModelSet a(connection, table, 0, false);
    ModelSet b(connection, table, 1, false);
    ModelSet c(connection, table, 0, true);
    ModelSet* sets[] = {&a, &b, &c};
    for (int step = 0; step < 300 && !HasFailure(); ++step) {
      sets[random() % 3]->Step(random, nextId);
      if (random() % 20 == 0) connection.Commit();
      for (ModelSet* set : sets) set->Check();
    }
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace merivane::test
