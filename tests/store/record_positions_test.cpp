// Where a record set stands, and what may be asked there.
#include "store_fixture.h"

namespace merivane::test {

namespace {

class RecordPositions : public StoreFixture {};

TEST_F(RecordPositions, GoFromTheFirstRowToBothEnds) {
  Recordset set = Dynamic("select * from T where Odd = 1");
  EXPECT_FALSE(set.Bof());
  EXPECT_EQ(set.Field("Name"), Value("a"));
  set.MovePrevious();
  EXPECT_TRUE(set.Bof());
  EXPECT_FALSE(set.Eof());
  EXPECT_EQ(ErrorOf([&] { set.MovePrevious(); }), kNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { set.Field("Name"); }), kNoCurrentRecord);
  set.MoveNext();
  EXPECT_EQ(Rest(set), "a c e ");
  EXPECT_FALSE(set.Bof());
  EXPECT_EQ(ErrorOf([&] { set.MoveNext(); }), kNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { set.Field("Name"); }), kNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { set.SetField("Name", "x"); }), kNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { set.Delete(); }), kNoCurrentRecord);
  set.MovePrevious();
  EXPECT_EQ(set.Field("Name"), Value("e"));
  set.MoveFirst();
  EXPECT_EQ(set.Field("Name"), Value("a"));
}

TEST_F(RecordPositions, ReachTheLastRowWithoutTheOthers) {
  for (const char* order : {"", " order by Name", " order by Odd desc, Num"}) {
    Recordset set = Dynamic(std::string("select * from T where Odd = 1") + order);
    set.MoveLast();
    EXPECT_EQ(set.Field("Name"), Value("e"));
    EXPECT_FALSE(set.Eof());
    set.MovePrevious();
    EXPECT_EQ(set.Field("Name"), Value("c"));
    set.MoveLast();
    set.MoveNext();
    EXPECT_TRUE(set.Eof());
    set.MovePrevious();
    EXPECT_EQ(set.Field("Name"), Value("e"));
    set.MoveFirst();
    EXPECT_EQ(Rest(set), "a c e ");
  }
}

TEST_F(RecordPositions, OfAnEmptySetAreBothEndsAtOnce) {
  Recordset sets[] = {Dynamic("select * from Empty"), Static("select * from T where Num = 99")};
  for (Recordset& set : sets) {
    EXPECT_TRUE(set.Bof());
    EXPECT_TRUE(set.Eof());
    EXPECT_EQ(ErrorOf([&] { set.Field("Num"); }), kNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { set.MoveFirst(); }), kNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { set.MoveLast(); }), kNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { set.MoveNext(); }), kNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { set.MovePrevious(); }), kNoCurrentRecord);
  }
}

TEST_F(RecordPositions, CountOnlyTheRowsOfAStaticSet) {
  Recordset fixed = Static("select * from T where Odd = 1");
  EXPECT_EQ(fixed.RecordCount(), 3);
  EXPECT_EQ(Rest(fixed), "a c e ");
  EXPECT_EQ(fixed.RecordCount(), 3);
  EXPECT_EQ(Dynamic("select * from T").RecordCount(), -1);
  EXPECT_EQ(Static("select * from T where Num > 9").RecordCount(), 0);
}

TEST_F(RecordPositions, NameFieldsAsDeclaredAndFindThemInAnyCase) {
  Recordset set = Dynamic("select * from t where num = 3");
  EXPECT_EQ(set.FieldCount(), 7);
  EXPECT_EQ(set.FieldName(6), "Column");
  EXPECT_EQ(set.Field("NAME"), Value("c"));
  EXPECT_EQ(set.Field(0), Value(3));
  EXPECT_EQ(set.FindField("sIzE"), 3);
  EXPECT_EQ(ErrorOf([&] { set.Field("Nmu"); }), kItemNotFound);
  EXPECT_EQ(ErrorOf([&] { set.Field(7); }), kItemNotFound);
  EXPECT_EQ(ErrorOf([&] { set.Field(-1); }), kItemNotFound);
  EXPECT_EQ(ErrorOf([&] { set.SetField("Nmu", 1); }), kItemNotFound);
  Recordset list = Dynamic("select odd, NAME from T where Num = 3");
  EXPECT_EQ(list.FieldCount(), 2);
  EXPECT_EQ(list.FieldName(1), "Name");
  EXPECT_EQ(list.Field(0), Value(1));
  EXPECT_EQ(ErrorOf([&] { list.Field("Num"); }), kItemNotFound);
}

TEST_F(RecordPositions, NeedAnOpenSetOnAnOpenConnection) {
  Recordset set;
  EXPECT_EQ(ErrorOf([&] { set.Eof(); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.MoveNext(); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.Field("Num"); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.Close(); }), kObjectClosed);
  EXPECT_EQ(ErrorOf([&] { set.Open(); }), kObjectNotSet);
  EXPECT_EQ(ErrorOf([&] { set.OpenDynamic("select * from T", nullptr); }), kObjectNotSet);
  set.OpenDynamic("select * from T", &connection);
  EXPECT_EQ(ErrorOf([&] { set.OpenDynamic("select * from T", &connection); }), kObjectOpen);
  EXPECT_EQ(ErrorOf([&] { set.Source("select * from T"); }), kObjectOpen);
  connection.Close();
  EXPECT_FALSE(set.IsOpen());
  EXPECT_EQ(ErrorOf([&] { set.OpenStatic("select * from T", &connection); }), kConnectionInvalid);
}

TEST_F(RecordPositions, ReopenedSetKeepsItsKindAndStartsAnew) {
  Recordset set = Static("select * from T");
  set.MoveLast();
  set.Close();
  set.Source("select * from T where Odd = 0");
  set.ActiveConnection(&connection);
  set.Open();
  EXPECT_EQ(set.RecordCount(), 2);
  EXPECT_EQ(set.Field("Name"), Value("b"));
  Recordset fresh;
  fresh.Source("select * from T where Odd = 0");
  fresh.ActiveConnection(&connection);
  fresh.Open();
  fresh.MoveLast();
  fresh.SetField("Name", "x");
  fresh.Update();
  EXPECT_EQ(All("select * from T where Num = 4"), "x ");
}

TEST_F(RecordPositions, TablesWithoutRowNumbersCanBeReadOnly) {
  RawDatabase(path).Run(
      "create table K (Name text primary key) without rowid; insert into K values ('z'), ('k')");
  Recordset keyed = Dynamic("select * from K");
  EXPECT_EQ(ErrorOf([&] { keyed.AddNew(); }), kNotUpdatable);
  EXPECT_EQ(ErrorOf([&] { keyed.SetField("Name", "x"); }), kNotUpdatable);
  EXPECT_EQ(Rest(keyed), "k z ");
}

}  // namespace
}  // namespace merivane::test
