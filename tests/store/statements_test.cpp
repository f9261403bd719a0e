// The dialect of the program's statements, and what is refused.
#include <gmock/gmock.h>

#include <tuple>

#include "store_fixture.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;

class Statements : public StoreFixture {};

TEST_F(Statements, FindTheRowsThatTheyTell) {
  const std::pair<const char*, const char*> cases[] = {
      {"select * from T", "a b c d e "},
      {"SELECT Name FROM [t] ;", "a b c d e "},
      {"Select * from T where Num > 3AND Odd = 1", "e "},
      {"select * from T where Num=2OR Num=4", "b d "},
      {"select * from T where [Num] >= 2 and (Odd = 0 or Num = 5)", "b d e "},
      {"select * from T where Name = 'B'", "b "},
      {"select * from T where Name = \"B\"", "b "},
      {"select * from T where Num = -1 or Num <> 1 and Size is null and Name is not null",
       "b c d e "},
      {"select * from T where Num = '3'", "c "},
      {"select * from T where Num = 3e0", "c "},
      {"select * from T order by Odd desc, Name desc", "e c a d b "},
      {"select * from T order by Odd", "b d a c e "},
      {"select * from T where Name = 'O''Brien' or Name = \"say \"\"x\"\"\"", ""},
      {"select * from T where Name like 'C%'", "c "},
      {"select * from T where Num like '4%'", "d "},
      {"select * from T where Name like '%'", "a b c d e "},
      {"select * from T where Column is null and Num = 1", "a "},
      {"select * from T where Num = .3e1", "c "},
      {"select * from T where Num = 4 and Name like 'd%'", "d "},
      {"select * from T where Num = 4 and Name like 'd'", "d "},
      {"select * from T where Num = 4 and Name like '%d'", "d "},
      {"select * from T where Num = 4 and Name = 'd%'", ""},
  };
  for (const std::string known : {"", ", known"}) {  // by the pieces of its shape
    for (const auto& [sql, names] : cases) EXPECT_EQ(All(sql), names) << sql << known;
  }
}

TEST_F(Statements, TakeThePrefixOfLikeLiterally) {
  Recordset set = Dynamic("select * from T where Num > 5");
  for (const char* name :
       {"3.1", "3.10", "3x1", "3_", "_1", "z", "Zoe", "[x", "@1", "\xE4h", "\xE5"}) {
    Add(set, 9, name);
  }
  const std::pair<std::string, const char*> cases[] = {{"3.%", "3.1 3.10 "}, {"3_%", "3_ "},
                                                       {"_%", "_1 "},        {"Z%", "z Zoe "},
                                                       {"@%", "@1 "},        {"\xE4%", "\xE4h "}};
  for (const auto& [like, names] : cases) {
    EXPECT_EQ(All("select * from T where Num = 9 and Name like '" + like + "'"), names) << like;
  }
}

TEST_F(Statements, GiveAggregatesAsOneRow) {
  Recordset set = Dynamic("SELECT Max(Num) as Max_ID, count(*) FROM T where Odd = 1");
  EXPECT_EQ(set.Field("max_id"), Value(5));
  EXPECT_EQ(set.Field(1), Value(3));
  set.MoveNext();
  EXPECT_TRUE(set.Eof());
}

TEST_F(Statements, FailByTheirKindAndNameWhatIsWrong) {
  const std::tuple<std::string, int, const char*> cases[] = {
      {"select * from Nowhere where Num = 1", kUnknownTable, "'Nowhere'"},
      {"select * from T where Nmu = 1", kUnknownName, "'Nmu'"},
      {"select * from T order by Nmu", kUnknownName, "'Nmu'"},
      {"select Max(Nmu) as M from T", kUnknownName, "'Nmu'"},
      {"select * from", kStatementError, "too early"},
      {"select * from T where Num = ", kStatementError, "too early"},
      {"select * from T where Num = 5Num = 3 and Odd = 1", kStatementError, "'Num'"},
      {"select * from T where Name = 'O'Brien'", kStatementError, "quote"},
      {"select * from T where Name = 'x' 'y'", kStatementError, "text"},
      {"select * from [T", kStatementError, "bracket"},
      {"select * from T where Num = 1; delete from T", kStatementError, "'delete'"},
      {"select * from T where Num = 1 -- x", kUnknownName, "'x'"},
      {"select * from T where Num = ?", kStatementError, "'?'"},
      {"select * from T where Num = #1/1/2000#", kStatementError, "character"},
      {"select * from T where Num not 5", kStatementError, "number"},
      {"select * from T order Num", kStatementError, "'Num'"},
      {"select Foo(Num) as F from T", kStatementError, "Foo"},
      {"select * from T where (Num = 1) or Nmu = 2) and (Odd = 1", kUnknownName, "'Nmu'"},
      {"select * from T where (Num = 1) or Num = 2) and (Odd = 1", kStatementError, "')'"},
      {"select * from T where Num = 1 Nmu 2", kStatementError, "'Nmu'"},
      {"delete from T", kStatementError, "'delete'"},
  };
  for (const auto& [sql, number, named] : cases) {
    std::string description;
    EXPECT_EQ(ErrorOf([&, &text = sql] { Dynamic(text); }, &description), number) << sql;
    EXPECT_THAT(description, HasSubstr(named)) << sql;
  }
}

TEST_F(Statements, NestedBeyondAllReasonFailAndLeaveTheConnectionUsable) {
  for (const char nesting : {'(', '-'}) {
    const std::string sql = "select * from T where " + std::string(100000, nesting) + "Num = 1";
    EXPECT_EQ(ErrorOf([&] { Dynamic(sql); }), kStatementError) << nesting;
  }
  EXPECT_EQ(All("select * from T where Num = 1"), "a ");
}

TEST_F(Statements, ComparesTextsWithoutCaseInTablesThatDoNot) {
  RawDatabase(path).Run(
      "create table Foreign_T (Name text); create index I on Foreign_T (Name);"
      "insert into Foreign_T values ('Beta'), ('alpha'), ('beta'), ('Alpha')");
  EXPECT_EQ(All("select * from Foreign_T where Name = 'BETA'"), "Beta beta ");
  EXPECT_EQ(All("select * from Foreign_T where Name like 'AL%'"), "alpha Alpha ");
  EXPECT_EQ(All("select * from Foreign_T order by Name"), "alpha Alpha Beta beta ");
}

}  // namespace
}  // namespace merivane::test
