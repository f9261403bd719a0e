#include "access_copy.h"
#include "access_file_builder.h"
#include "store_fixture.h"

namespace merivane::test {

namespace {

// The rows of a statement, one after the other.
std::vector<Value> Ask(const std::string& path, const std::string& sql) {
  Workspace workspace;
  Opened connection(workspace, path);
  Recordset set;
  std::vector<Value> values;
  for (set.OpenStatic(sql, &connection); !set.Eof(); set.MoveNext())
    for (int i = 0; i < set.FieldCount(); ++i) values.push_back(set.Field(i));
  return values;
}

TEST(AccessReader, KnowsAnAccessFileByItsFirstBytes) {
  const TemporaryFolder folder;
  const std::string newer("\0\1\0\0Standard ACE DB\0", 20);
  EXPECT_TRUE(IsAccessFile(folder.Write("newer.mdb", newer)));
  EXPECT_FALSE(IsAccessFile(folder.Write("short.mdb", newer.substr(0, 16))));
  EXPECT_FALSE(IsAccessFile(folder.Write("text.mdb", "About the Standard Jet DB")));
  EXPECT_FALSE(IsAccessFile(folder.Path("")));
}

TEST(AccessReader, EveryTypeComesAsTheRunTimeHasIt) {
  AccessFileBuilder file;
  const std::string bytes = std::string(5000, '\xFF') + std::string(4000, '\0') + "end";
  const std::u16string text = std::u16string(5000, u'\u00FC') + u"end";
  const struct {
    const char* name;
    char type;
    std::optional<std::string> raw;
    Value expected;
  } cases[] = {
      {"yes", 1, "", -1},
      {"no", 1, {}, 0},
      {"number", 4, Raw(-70000), -70000},
      {"money", 5, Raw<std::int64_t>(-123456), -12.3456},
      {"single", 6, Raw(0.1F), 0.1},
      {"double", 7, Raw(1.0 / 3), 1.0 / 3},
      {"day with a time", 8, Raw(36526.5), "1/1/2000 12:00:00 PM"},
      {"moment before midnight", 8, Raw(36525.9999999), "1/1/2000"},
      {"before the first day", 8, Raw(-1.25), "12/29/1899 6:00:00 AM"},
      {"beyond all days", 8, Raw(1e300), {}},
      {"text", 10, Utf16(u"\u00FC \u20AC"), "\xFC \x80"},
      {"compressed text", 10, "\xFF\xFE\xFC!", "\xFC!"},
      {"empty text", 10, "", ""},
      {"no memo", 12, {}, {}},
      {"long memo", 12, file.Chained(Utf16(text)), std::string(5000, '\xFC') + "end"},
      {"long bytes", 11, file.Chained(bytes), Bytes(bytes.begin(), bytes.end())},
      {"identifier", 15, "0123456789ABCDEF", "{33323130-3534-3736-3839-414243444546}"},
  };
  std::vector<AccessFileBuilder::Column> columns;
  AccessFileBuilder::Row row;
  for (const auto& item : cases) {
    columns.push_back(
        {u"c" + std::u16string(1, static_cast<char16_t>(u'A' + row.size())), item.type});
    row.push_back(item.raw);
  }
  file.AddTable(u"Types", columns, {row});
  const TemporaryFolder folder;
  const std::vector<Value> values =
      Ask(folder.Write("types.mdb", file.Build()), "select * from Types");
  ASSERT_EQ(values.size(), std::size(cases));
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(values[i], cases[i].expected) << cases[i].name;
}

TEST(AccessReader, RowsKeepTheirOrderAndNamesTheirLetters) {
  AccessFileBuilder file;
  file.AddTable(u"Plan \"\u00FC\"", {{u"a b'c", 10}, {u"N", 4}},
                {{Utf16(u"gone"), Raw(1)}, {Utf16(u"Z"), Raw(3)}, {Utf16(u"a"), Raw(2)}}, 1);
  const TemporaryFolder folder;
  const std::string path = folder.Write("names.mdb", file.Build());
  EXPECT_EQ(Ask(path, "select [a b'c] from [plan \"\xFC\"] where [A B'C] <> 'A'"),
            std::vector<Value>{"Z"});
  EXPECT_EQ(Ask(path, "select N from [Plan \"\xFC\"]"), (std::vector<Value>{3, 2}));
}

// Cut, and with bytes gone wrong, at every place where the page structure may care.
TEST(AccessReader, ADamagedFileLoadsOrEndsInAMessage) {
  AccessFileBuilder builder;
  builder.AddTable(u"T", {{u"N", 4}, {u"Memo", 12}},
                   {{Raw(1), builder.Chained(std::string(9000, 'x'))}, {Raw(2), {}}});
  const std::string whole = builder.Build();
  const TemporaryFolder folder;
  const std::string target = folder.Path("copy.sqlite");
  int refused = 0;
  const auto load = [&](const std::string& bytes) {
    WorkListener nobody;
    const std::string path = folder.Write("damaged.mdb", bytes);
    std::string told;
    const bool failed = ErrorOf([&] { LoadAccessFile(path, target, nobody); }, &told) != 0;
    refused += failed ? 1 : 0;
    EXPECT_EQ(told.find("damaged.mdb") != std::string::npos, failed) << told;
    EXPECT_EQ(std::filesystem::remove(target), !failed);
  };
  load(whole);
  EXPECT_EQ(refused, 0);
  for (std::size_t size = 0; size < whole.size(); size += 1021) load(whole.substr(0, size));
  EXPECT_GT(refused, 30) << "a file that lacks rows must not pass";
  for (std::size_t page = 0; page < whole.size(); page += 4096) {
    std::string bytes = whole;
    for (std::size_t at = page; at < page + 70; ++at) bytes[at] = static_cast<char>(at * 151);
    load(bytes);
  }
}

}  // namespace
}  // namespace merivane::test
