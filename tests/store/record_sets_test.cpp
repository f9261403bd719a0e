// Record sets: what they show of rows that are written beside them, and what may be asked of them.
#include <algorithm>
#include <random>

#include "store_fixture.h"

namespace merivane::test {

namespace {

class RecordSets : public StoreFixture {};

struct Row {
  int id;
  int group;
  int size;
  int mark;
};

enum class SetKind : std::uint8_t { kPlain, kOrdered, kStatic };

// A set beside a plain model of what it must show.
class ModelSet {
 public:
  ModelSet(Connection& connection, std::vector<Row>& table, int group, SetKind kind)
      : connection_(connection), table_(table), group_(group), kind_(kind) {
    Open();
  }

  void Step(std::mt19937& random, int& nextId) {
    const int number = static_cast<int>(random() % 3);
    switch (random() % 13) {
      case 0:
        set_.Close();
        return Open();
      case 1:
        return Add(nextId++, number);
      case 2:
      case 3:
        return Change("Odd", &Row::group, number);
      case 4:
        return Change("Size", &Row::size, number * 2);
      case 5:
        return Delete();
      case 6:
        return Move([&] { set_.MoveFirst(); }, There(0, 1));
      case 7:
        return Move([&] { set_.MoveLast(); }, There(static_cast<int>(Asked().size()) - 1, -1));
      case 8:
        return KeepPlace();
      case 9:
        return Walk(-1, kStart, [&] { set_.MovePrevious(); });
      default:
        return Walk(1, kEnd, [&] { set_.MoveNext(); });
    }
  }

  void Check() {
    if (!asked_) return;
    ASSERT_EQ(set_.Eof(), at_ == kEnd || at_ == kNone);
    ASSERT_EQ(set_.Bof(), at_ == kStart || at_ == kNone);
    const Row* row = at_ < 0 ? nullptr : Shown(at_);
    if (row == nullptr) {
      ASSERT_EQ(ErrorOf([&] { set_.Field("Num"); }), kNoCurrentRecord);
    } else {
      ASSERT_EQ(set_.Field("Num"), Value(row->id));
      ASSERT_EQ(set_.Field("Odd"), Value(row->group));
      ASSERT_EQ(set_.Field("Size"), Value(row->size));
      if (kind_ != SetKind::kStatic) {
        ASSERT_EQ(set_.Field("Mark"), Value(row->mark));
      }
    }
  }

 private:
  static constexpr int kStart = -1;
  static constexpr int kEnd = -2;
  static constexpr int kNone = -3;

  void Open() {
    std::string sql = "select * from M where Odd = " + std::to_string(group_);
    if (kind_ == SetKind::kOrdered) sql += " order by Size desc";
    kind_ == SetKind::kStatic ? set_.OpenStatic(sql, &connection_)
                              : set_.OpenDynamic(sql, &connection_);
    asked_ = false;
    rows_.clear();
    added_.clear();
  }

  // The rows as they were when the set was first asked.
  std::vector<Row>& Asked() {
    if (asked_) return rows_;
    asked_ = true;
    for (const Row& row : table_) {
      const bool own = std::ranges::find(added_, row.id, &Row::id) != added_.end();
      if (row.group == group_ && !own) rows_.push_back(row);
    }
    if (kind_ == SetKind::kOrdered) {
      std::ranges::stable_sort(rows_, std::ranges::greater(), &Row::size);
    }
    rows_.insert(rows_.end(), added_.begin(), added_.end());
    at_ = There(0, 1);
    return rows_;
  }

  // What the set shows at a place; null for a row deleted since.
  Row* Shown(int place) {
    Row& asked = rows_[static_cast<std::size_t>(place)];
    if (kind_ == SetKind::kStatic) return &asked;
    const auto row = std::ranges::find(table_, asked.id, &Row::id);
    return row == table_.end() ? nullptr : &*row;
  }

  int There(int from, int direction) {
    const int size = static_cast<int>(Asked().size());
    while (from >= 0 && from < size && Shown(from) == nullptr) from += direction;
    return from >= 0 && from < size ? from : kNone;
  }

  void Move(const std::function<void()>& move, int target) {
    EXPECT_EQ(ErrorOf(move), target == kNone ? kNoCurrentRecord : 0);
    at_ = target;
  }

  void Walk(int direction, int end, const std::function<void()>& move) {
    Asked();
    const bool stuck = at_ == end || at_ == kNone;
    EXPECT_EQ(ErrorOf(move), stuck ? kNoCurrentRecord : 0);
    if (stuck) return;
    const int from = at_ == kEnd ? static_cast<int>(rows_.size()) : at_;
    at_ = There(from + direction, direction);
    if (at_ == kNone) at_ = end;
  }

  void KeepPlace() {
    if (kind_ == SetKind::kStatic) {
      EXPECT_EQ(set_.RecordCount(), static_cast<long>(Asked().size()));
    } else if (Refusal() == 0) {
      const std::size_t bookmark = set_.Bookmark();
      ErrorOf([&] { set_.MoveLast(); });
      set_.MoveTo(bookmark);
    }
  }

  // The error of a write that can be done on a row.
  int Refusal() {
    if (kind_ == SetKind::kStatic) return kNotUpdatable;
    Asked();
    return at_ >= 0 && Shown(at_) != nullptr ? 0 : kNoCurrentRecord;
  }

  void Add(int id, int group) {
    const Row row{id, group, id * 7 % 5, 0};
    const int refusal = kind_ == SetKind::kStatic ? kNotUpdatable : 0;
    const auto add = [&] { set_.AddNew({"Num", "Odd", "Size", "Mark"}, {id, group, row.size, 0}); };
    EXPECT_EQ(ErrorOf(add), refusal);
    if (refusal != 0) return;
    table_.push_back(row);
    (asked_ ? rows_ : added_).push_back(row);
  }

  void Change(const char* column, int Row::*member, int value) {
    const int refusal = Refusal();
    EXPECT_EQ(ErrorOf([&] { set_.SetField(column, value); }), refusal);
    if (refusal != 0) return;
    set_.Update();
    Shown(at_)->*member = value;
  }

  void Delete() {
    const int refusal = Refusal();
    EXPECT_EQ(ErrorOf([&] { set_.Delete(); }), refusal);
    if (refusal == 0) table_.erase(table_.begin() + (Shown(at_) - table_.data()));
  }

  Connection& connection_;
  std::vector<Row>& table_;
  int group_;
  SetKind kind_;
  Recordset set_;
  bool asked_ = false;
  std::vector<Row> rows_;
  std::vector<Row> added_;
  int at_ = kNone;
};

TEST_F(RecordSets, SeveralOnOneTableAgreeWithAPlainModel) {
  Connection other(workspace);
  for (unsigned seed = 1; seed <= 25; ++seed) {
    SCOPED_TRACE(seed);
    connection.Close();
    RawDatabase(path).Run(
        "drop table if exists M; create table M (Num integer, Odd integer, Size integer,"
        " Mark integer); create index MI on M (Odd)");
    connection.Open(ConnectionText(path));
    other.Open(ConnectionText(path));
    std::mt19937 random(seed);
    std::vector<Row> table;
    int nextId = 1;
    ModelSet sets[] = {{connection, table, 0, SetKind::kPlain},
                       {connection, table, 1, SetKind::kPlain},
                       {connection, table, 0, SetKind::kOrdered},
                       {connection, table, 0, SetKind::kStatic}};
    for (int step = 0; step < 300 && !HasFailure(); ++step) {
      sets[random() % 4].Step(random, nextId);
      if (random() % 20 == 0) connection.Commit();
      if (random() % 20 == 0 && !table.empty()) {
        connection.Commit();
        Row& row = table[random() % table.size()];
        Recordset beside = Dynamic("select * from M where Num = " + std::to_string(row.id), other);
        beside.SetField("Mark", row.mark = step);
        beside.Update();
        other.Commit();
      }
      for (ModelSet& set : sets) set.Check();
    }
    other.Close();
    if (HasFailure()) return;
  }
}

TEST_F(RecordSets, ChangesWaitForUpdateOrForTheNextMove) {
  Recordset set = Dynamic("select * from T");
  Recordset other = Dynamic("select * from T");
  set.SetField("Name", "x");
  EXPECT_EQ(set.Field("Name"), Value("x"));
  EXPECT_EQ(other.Field("Name"), Value("a"));
  set.Update();
  EXPECT_EQ(other.Field("Name"), Value("x"));
  set.SetField("Name", "y");
  set.MoveNext();
  EXPECT_EQ(other.Field("Name"), Value("y"));
  set.SetField("Name", "dropped");
  set.Close();
  EXPECT_EQ(All("select * from T"), "y b c d e ");
}

TEST_F(RecordSets, NewRowsLeaveTheOtherColumnsToTheirDefaults) {
  RawDatabase(path).Run("create table D (Num integer, Mark integer default 9999, Name text)");
  Recordset set = Dynamic("select * from D");
  set.AddNew();
  set.SetField("Num", 1);
  EXPECT_EQ(set.Field("Num"), Value(1));
  EXPECT_TRUE(set.Field("Mark").IsNull());
  set.AddNew();  // saves the first
  set.Update();
  set.AddNew({"Name", "Num"}, {"given", 3});
  EXPECT_EQ(ErrorOf([&] { set.AddNew({"Num"}, {"none"}); }), kTypeMismatch);
  set.Update();
  EXPECT_EQ(All("select * from D", "Mark"), "9999 9999 9999 ");
  EXPECT_EQ(All("select * from D where Num = 3"), "given ");
}

// The row that was added last waits for what is set in it next; nobody may see that it does.
TEST_F(RecordSets, FindTheRowThatWasAddedLastAndSetMoreInIt) {
  const std::pair<std::string, const char*> cases[] = {{"", "new"},
                                                       {" where Num = 7 and Odd = 1", "new"},
                                                       {" where Name = 'NEW'", "new"},
                                                       {" where Odd = 0", "d"},
                                                       {" where Num = 7 and Odd = 0", nullptr},
                                                       {" where Size = 7", nullptr},
                                                       {" where Odd = 1 order by Name desc", "a"}};
  for (const auto& [condition, name] : cases) {
    Recordset added = Dynamic("select * from T");
    Add(added, 7, "new");
    Recordset last = Dynamic("select * from T" + condition);
    ASSERT_EQ(last.FindLast(), name != nullptr) << condition;
    if (name == nullptr) continue;
    last.SetField("Note", "noted");
    last.SetField("Name", Value());
    last.Update();
    last.SetField("Name", name);
    last.Update();
    EXPECT_EQ(last.Field("Note"), Value("noted"));
    EXPECT_EQ(last.Field("Name"), Value(name));
    added.MoveLast();
    added.Delete();
  }
  EXPECT_EQ(All("select * from T where Note = 'noted'"), "a d ");
}

// Several are written by one statement, and nobody may see that they waited for it.
TEST_F(RecordSets, GiveTheRowsThatWereAddedOneBehindTheOther) {
  Recordset set = Dynamic("select * from T"), other = Dynamic("select * from T where Num = 250");
  std::string expected = "a b c d e ";
  for (int num = 100; num < 400; ++num) {
    const std::string name = "r" + std::to_string(num);
    expected += (num == 250 ? "changed" : name) + " ";
    if (num % 50 < 10) {
      set.AddNew({"Num", "Name", "Note"}, {num, name, std::string(200000, 'x')});
    } else {
      Add(set, num, name);
    }
    if (num != 255) continue;
    other.SetField("Name", "changed");
    other.Update();
    EXPECT_EQ(All("select * from T where Num > 253"), "r254 r255 ");
  }
  EXPECT_EQ(All("select * from T"), expected);
  connection.Commit();
  EXPECT_EQ(RawDatabase(path).Ask("select count(*) from T where length(Note) = 200000"), "60");
}

TEST_F(RecordSets, RefuseALongValueWhereItIsSet) {
  Recordset set = Dynamic("select * from T");
  Add(set, 7, "new");
  for (const std::string condition : {"Num = 7", "Num = 1"}) {  // the first waits still
    Recordset last = Dynamic("select * from T where " + condition);
    ASSERT_TRUE(last.FindLast());
    last.SetField("Note", std::string(17 << 20, 'x'));
    EXPECT_EQ(ErrorOf([&] { last.Update(); }), kDatabaseError);
  }
  Add(set, 8, "next");
  EXPECT_EQ(All("select * from T where Num > 5"), "new next ");
}

TEST_F(RecordSets, ConvertToTheColumnsType) {
  const struct {
    std::string column;
    Value value, stored;
    int error;
  } cases[] = {
      {"Num", "12", 12, 0},
      {"Num", 2.5, 2, 0},
      {"Num", "x", {}, kTypeMismatch},
      {"Num", 2147483647, 2147483647, 0},
      {"Num", 2147483648.0, {}, kOverflow},
      {"Num", Value(), Value(), 0},
      {"Odd", 32768, {}, kOverflow},
      {"Size", "1.25", 1.25, 0},
      {"Name", 1.5, "1.5", 0},
      {"Note", "007", "007", 0},
      {"Note", std::string("a\0b\r\n", 5), std::string("a\0b\r\n", 5), 0},
      {"Note", "", "", 0},
      {"Column", "\x80\x81\xE4\xFF", "\x80\x81\xE4\xFF", 0},
      {"Data", Bytes{0, 255, 7}, Bytes{0, 255, 7}, 0},
      {"Data", Bytes{}, Bytes{}, 0},
      {"Data", "ab", Bytes{'a', 'b'}, 0},
  };
  for (const auto& item : cases) {
    SCOPED_TRACE(item.column + (item.value.IsBytes() ? " bytes" : " " + Joined(item.value)));
    Recordset set = Dynamic("select * from T where Odd = 0");
    const auto give = [&] {
      set.SetField(item.column, item.value);
      set.Update();
      EXPECT_EQ(set.Field(item.column), item.stored);
    };
    EXPECT_EQ(ErrorOf(give), item.error);
    set.SetField("Odd", 0);
    set.Update();
  }
  connection.Commit();
  EXPECT_EQ(RawDatabase(path).Ask("select hex(Column) from T where rowid = 2"),
            "E282ACC281C3A4C3BF");
}

TEST_F(RecordSets, RefuseWritesThatTheTableRefuses) {
  RawDatabase(path).Run(
      "create table C (Num integer check (Num < 10), Twice integer as (Num * 2));"
      "insert into C (Num) values (1);"
      "create table K (Name text primary key) without rowid; insert into K values ('z'), ('k')");
  for (const char* sql : {"select Max(Num) as M, Min(Num) as Num from T", "select * from K"}) {
    Recordset set = Dynamic(sql);
    EXPECT_EQ(ErrorOf([&] { set.AddNew(); }), kNotUpdatable) << sql;
    EXPECT_EQ(ErrorOf([&] { set.SetField(set.FieldName(0), 1); }), kNotUpdatable) << sql;
    EXPECT_EQ(ErrorOf([&] { set.Delete(); }), kNotUpdatable) << sql;
  }
  EXPECT_EQ(All("select * from K"), "k z ");
  Recordset set = Dynamic("select * from C");
  set.SetField("Num", 20);
  EXPECT_EQ(ErrorOf([&] { set.Update(); }), kDatabaseError);
  set.SetField("Num", 2);
  set.Update();
  EXPECT_EQ(set.Field("Twice"), Value(4));
  set.SetField("Twice", 8);
  EXPECT_NE(ErrorOf([&] { set.Update(); }), 0);
  connection.Close();
  for (const char* table :
       {"Num integer check (Num < 10)", "Num integer, Other integer not null", "Num integer unique",
        "Num integer); create unique index RI on R (Num"}) {
    RawDatabase(path).Run("drop table if exists R; create table R (" + std::string(table) +
                          "); insert or ignore into R (Num) values (20)");
    Opened fresh(workspace, path);
    Recordset rows = Dynamic("select * from R", fresh);
    EXPECT_EQ(ErrorOf([&] { rows.AddNew({"Num"}, {20}); }), kDatabaseError) << table;
  }
}

TEST_F(RecordSets, KeepTheRowNumberThatIsAColumn) {
  RawDatabase(path).Run(
      "create table P (Id integer primary key, Name text);"
      "insert into P values (10, 'ten')");
  Recordset set = Dynamic("select * from P");
  EXPECT_FALSE(set.Eof());
  for (const int id : {5, 20}) set.AddNew({"Id", "Name"}, {id, std::to_string(id)});
  set.AddNew({"Name"}, {"next"});
  EXPECT_EQ(Rest(set), "ten 5 20 next ");
  EXPECT_EQ(All("select * from P", "Id"), "5 10 20 21 ");
}

TEST_F(RecordSets, NameFieldsAsDeclaredAndFindThemInAnyCase) {
  Recordset set = Dynamic("select * from t where num = 3");
  EXPECT_EQ(set.FieldCount(), 7);
  EXPECT_EQ(set.FieldName(6), "Column");
  std::string name = "NAME";
  EXPECT_EQ(set.Field(name), Value("c"));
  name = "Note";  // in the same place
  EXPECT_TRUE(set.Field(name).IsNull());
  EXPECT_EQ(set.Field(0), Value(3));
  EXPECT_EQ(set.FindField("sIzE"), 3);
  EXPECT_EQ(ErrorOf([&] { set.Field("Nmu"); }), kItemNotFound);
  for (int none : {7, -1}) EXPECT_EQ(ErrorOf([&] { set.Field(none); }), kItemNotFound);
  EXPECT_EQ(ErrorOf([&] { set.SetField("Nmu", 1); }), kItemNotFound);
  Recordset list = Dynamic("select odd, NAME from T where Num = 3");
  EXPECT_EQ(list.FieldName(1), "Name");
  EXPECT_EQ(list.Field(0), Value(1));
  EXPECT_EQ(list.Field("name"), Value("c"));
  EXPECT_EQ(ErrorOf([&] { list.Field("Num"); }), kItemNotFound);
}

TEST_F(RecordSets, NeedAnOpenSetOnAnOpenConnection) {
  Recordset set;
  EXPECT_EQ(ErrorOf([&] { set.Eof(); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.MoveNext(); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.Field("Num"); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.Close(); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.OpenDynamic("select * from T", nullptr); }), kObjectNotSet);
  set.OpenDynamic("select * from T", &connection);
  EXPECT_EQ(ErrorOf([&] { set.OpenDynamic("select * from T", &connection); }), kObjectOpen);
  EXPECT_EQ(ErrorOf([&] { set.Source("select * from T"); }), kObjectOpen);
  connection.Close();
  EXPECT_FALSE(set.IsOpen());
  EXPECT_EQ(ErrorOf([&] { set.OpenStatic("select * from T", &connection); }), kConnectionInvalid);
}

TEST_F(RecordSets, ReopenedKeepTheirKindAndStartAnew) {
  Recordset set = Static("select * from T"), fresh;
  set.Close();
  for (Recordset* reopened : {&set, &fresh}) {
    reopened->Source("select * from T where Odd = 0");
    reopened->ActiveConnection(&connection);
    reopened->Open();
    EXPECT_EQ(reopened->Field("Name"), Value("b"));
  }
  EXPECT_EQ(set.RecordCount(), 2);
  EXPECT_EQ(fresh.RecordCount(), -1);
}

}  // namespace
}  // namespace merivane::test
