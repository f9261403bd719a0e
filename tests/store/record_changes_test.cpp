// Adding, changing and deleting rows through record sets.
#include <cmath>

#include "store_fixture.h"

namespace merivane::test {

namespace {

class RecordChanges : public StoreFixture {};

TEST_F(RecordChanges, WaitForUpdateOrForTheNextMove) {
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

TEST_F(RecordChanges, OfANewRowLeaveTheOtherColumnsToTheirDefaults) {
  RawDatabase(path).Run("create table D (Num integer, Mark integer default 9999, Name text)");
  Recordset set = Dynamic("select * from D");
  set.AddNew();
  set.SetField("Num", 1);
  EXPECT_EQ(set.Field("Num"), Value(1));
  EXPECT_TRUE(set.Field("Mark").IsNull());
  set.AddNew();  // saves the first
  set.Update();
  set.AddNew({"Name", "Num"}, {"given", 3});
  set.MoveFirst();
  EXPECT_EQ(Rest(set, "Mark"), "9999 9999 9999 ");
  EXPECT_EQ(All("select * from D where Num = 3"), "given ");
  EXPECT_EQ(ErrorOf([&] { set.AddNew({"Num"}, {"none"}); }), kTypeMismatch);
  set.Update();
  EXPECT_EQ(Static("select * from D").RecordCount(), 3);
}

TEST_F(RecordChanges, ConvertToTheColumnsType) {
  const struct {
    const char* column;
    Value value;
    Value stored;
    int error;
  } cases[] = {
      {"Num", "12", 12, 0},
      {"Num", 2.5, 2, 0},
      {"Num", 3.5, 4, 0},
      {"Num", "x", {}, kTypeMismatch},
      {"Num", "", {}, kTypeMismatch},
      {"Num", 2147483647, 2147483647, 0},
      {"Num", 2147483648.0, {}, kOverflow},
      {"Num", Value(), Value(), 0},
      {"Odd", 32767, 32767, 0},
      {"Odd", 32768, {}, kOverflow},
      {"Size", 3, 3.0, 0},
      {"Size", "1.25", 1.25, 0},
      {"Size", "one", {}, kTypeMismatch},
      {"Name", 1.5, "1.5", 0},
      {"Name", "5", "5", 0},
      {"Note", "007", "007", 0},
      {"Note", std::string("a\0b\r\n", 5), std::string("a\0b\r\n", 5), 0},
      {"Note", "", "", 0},
      {"Column", "\x80\x81\xE4\xFF", "\x80\x81\xE4\xFF", 0},
      {"Data", Bytes{0, 255, 7}, Bytes{0, 255, 7}, 0},
      {"Data", Bytes{}, Bytes{}, 0},
      {"Data", "ab", Bytes{'a', 'b'}, 0},
  };
  for (const auto& item : cases) {
    Recordset set = Dynamic("select * from T where Odd = 0");
    const std::string named = std::string(item.column) + " " + Shown(item.value);
    EXPECT_EQ(ErrorOf([&] {
                set.SetField(item.column, item.value);
                set.Update();
              }),
              item.error)
        << named;
    if (item.error == 0) {
      EXPECT_EQ(set.Field(item.column), item.stored)
          << named << " gives " << Shown(set.Field(item.column));
    }
    set.SetField("Odd", 0);
    set.Update();
  }
}

TEST_F(RecordChanges, StoreTextsAsUtf8) {
  Recordset set = Dynamic("select * from T where Num = 1");
  set.SetField("Name", "\x80\xE4");
  set.Update();
  EXPECT_EQ(All("select * from T where Name = '\x80\xE4'"), "\x80\xE4 ");
  connection.Commit();
  EXPECT_EQ(RawDatabase(path).Ask("select hex(Name) from T where Num = 1"), "E282ACC3A4");
}

TEST_F(RecordChanges, LeaveThePositionWhereItWasAndNextComesTheAddedRow) {
  Recordset set = Dynamic("select * from T");
  set.MoveLast();
  Add(set, 6, "f");
  EXPECT_EQ(set.Field("Name"), Value("e"));
  set.MoveNext();
  EXPECT_EQ(set.Field("Name"), Value("f"));
  EXPECT_FALSE(set.Eof());
  Add(set, 7, "g");
  EXPECT_EQ(set.Field("Name"), Value("f"));
  set.MoveNext();
  EXPECT_EQ(Rest(set), "g ");
  set.MoveLast();
  EXPECT_EQ(set.Field("Name"), Value("g"));
  set.MoveFirst();
  EXPECT_EQ(Rest(set), "a b c d e f g ");
}

TEST_F(RecordChanges, OfAnEmptySetShowAfterMoveFirst) {
  Recordset set = Dynamic("select * from Empty");
  EXPECT_TRUE(set.Eof());
  set.AddNew();
  set.SetField("Num", 1);
  set.Update();
  EXPECT_TRUE(set.Bof());
  EXPECT_TRUE(set.Eof());
  set.MoveFirst();
  EXPECT_EQ(set.Field("Num"), Value(1));
  EXPECT_FALSE(Dynamic("select * from Empty").Bof());
}

TEST_F(RecordChanges, AddedRowsStandAtTheEndEvenOnesThatDoNotMatch) {
  for (const bool asked : {false, true}) {
    Recordset set = Dynamic("select * from T where Num < 3 order by Name desc");
    if (asked) {
      EXPECT_FALSE(set.Eof());
    }
    Add(set, 0, "zz");
    Add(set, 99, "out");
    EXPECT_EQ(Rest(set), "b a zz out ");
    Dynamic("select * from T where Num = 0").Delete();
  }
}

TEST_F(RecordChanges, DeletingLeavesThePositionOnTheLostRow) {
  Recordset set = Dynamic("select * from T");
  set.MoveNext();
  set.Delete();
  EXPECT_EQ(ErrorOf([&] { set.Field("Name"); }), kNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { set.Delete(); }), kNoCurrentRecord);
  EXPECT_FALSE(set.Eof());
  set.MoveNext();
  EXPECT_EQ(set.Field("Name"), Value("c"));
  set.MovePrevious();
  EXPECT_EQ(set.Field("Name"), Value("a"));
  set.MoveLast();
  set.Delete();
  set.MoveNext();
  EXPECT_TRUE(set.Eof());
  set.MovePrevious();
  EXPECT_EQ(set.Field("Name"), Value("d"));
  set.SetField("Name", "dropped");
  set.Delete();
  EXPECT_EQ(All("select * from T"), "a c ");
}

TEST_F(RecordChanges, EmptyATableRowByRow) {
  Recordset set = Dynamic("select * from T");
  while (!set.Eof()) {
    set.Delete();
    set.MoveNext();
  }
  EXPECT_EQ(ErrorOf([&] { set.MoveFirst(); }), kNoCurrentRecord);
  EXPECT_TRUE(set.Bof());
  EXPECT_EQ(All("select * from T"), "");
}

TEST_F(RecordChanges, NeverTakeThePlaceOfADeletedRow) {
  Recordset set = Dynamic("select * from T");
  set.MoveLast();
  Recordset watcher = Dynamic("select * from T");
  watcher.MoveLast();
  set.Delete();
  Recordset adder = Dynamic("select * from T");
  Add(adder, 50, "new");
  EXPECT_EQ(ErrorOf([&] { watcher.Field("Name"); }), kNoCurrentRecord);
  watcher.MoveFirst();
  EXPECT_EQ(Rest(watcher), "a b c d ");
}

TEST_F(RecordChanges, AreRefusedWhereASetCannotBeWritten) {
  Recordset sets[] = {Static("select * from T"),
                      Dynamic("select Max(Num) as M, Min(Num) as Num from T")};
  for (Recordset& set : sets) {
    EXPECT_EQ(ErrorOf([&] { set.AddNew(); }), kNotUpdatable);
    EXPECT_EQ(ErrorOf([&] { set.SetField("Num", 1); }), kNotUpdatable);
    EXPECT_EQ(ErrorOf([&] { set.Delete(); }), kNotUpdatable);
  }
  RawDatabase(path).Run(
      "create table C (Num integer check (Num < 10), Twice integer as (Num * 2));"
      "insert into C (Num) values (1)");
  Recordset set = Dynamic("select * from C");
  set.SetField("Num", 20);
  EXPECT_EQ(ErrorOf([&] { set.Update(); }), kDatabaseError);
  set.SetField("Num", 2);
  set.Update();
  EXPECT_EQ(set.Field("Twice"), Value(4));
  set.SetField("Twice", 8);
  EXPECT_NE(ErrorOf([&] { set.Update(); }), 0);
}

TEST_F(RecordChanges, KeepTheRowNumberThatIsAColumn) {
  RawDatabase(path).Run(
      "create table P (Id integer primary key, Name text);"
      "insert into P values (10, 'ten')");
  Recordset set = Dynamic("select * from P");
  EXPECT_FALSE(set.Eof());
  for (const int id : {5, 20}) {
    set.AddNew();
    set.SetField("Id", id);
    set.SetField("Name", std::to_string(id));
    set.Update();
  }
  set.AddNew({"Name"}, {"next"});
  EXPECT_EQ(Rest(set), "ten 5 20 next ");
  EXPECT_EQ(All("select * from P", "Id"), "5 10 20 21 ");
}

}  // namespace
}  // namespace merivane::test
