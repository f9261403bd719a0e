// Builds small Access files (Jet 4) page by page, as no library here can make one.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace merivane::test {

// The bytes of a number as they lie in the file.
template <typename Number>
std::string Raw(Number number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

inline std::string Raw16(std::size_t number) { return Raw(static_cast<std::uint16_t>(number)); }

inline std::string Utf16(const std::u16string& text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * 2};
}

class AccessFileBuilder {
 public:
  // Types: 1 yes/no, 3 and 4 whole, 5 money, 6 and 7 real, 8 date, 10 text, 11 OLE, 12 memo, 15
  // GUID.
  struct Column {
    std::u16string name;
    char type;
  };
  using Row = std::vector<std::optional<std::string>>;  // raw bytes; of a yes/no column: set is yes

  AccessFileBuilder() : pages_(3, std::string(kPage, '\0')) {
    Put(0, 0, std::string("\0\1\0\0Standard Jet DB\0\1", 21));
    Put(0, 0x3E, "\xFB\x8A\xBC\x4E");  // no encryption, as the scrambled header says it
  }

  // The column's bytes for a long value that fills a chain of pages.
  std::string Chained(const std::string& data) {
    std::uint32_t next = 0;
    for (std::size_t end = data.size(), begin = end; end > 0; end = begin) {
      begin = (end - 1) / 4000 * 4000;
      next = AddPage({Raw(next) + data.substr(begin, end - begin)}, 0, 0) << 8;
    }
    return Raw(static_cast<std::uint32_t>(data.size())) + Raw(next) + Raw(0);
  }

  // All rows must fit a page. The first `deleted` ones are marked so.
  void AddTable(const std::u16string& name, const std::vector<Column>& columns,
                const std::vector<Row>& rows, std::size_t deleted = 0) {
    pages_.emplace_back(kPage, '\0');
    catalog_.push_back(
        {Raw(static_cast<int>(pages_.size() - 1)), Utf16(name), Raw16(1), Raw(0), {}});
    Define(pages_.size() - 1, columns, rows, deleted);
  }

  std::string Build() {
    Define(2, {{u"Id", 4}, {u"Name", 10}, {u"Type", 3}, {u"Flags", 4}, {u"LvProp", 11}}, catalog_,
           0);
    std::string file;
    for (const std::string& page : pages_) file += page;
    return file;
  }

 private:
  static constexpr std::size_t kPage = 4096;

  void Put(std::size_t page, std::size_t at, const std::string& bytes) {
    pages_[page].replace(at, bytes.size(), bytes);
  }

  std::uint32_t AddPage(const std::vector<std::string>& rows, std::size_t owner,
                        std::size_t deleted) {
    const std::size_t page = pages_.size();
    pages_.emplace_back(kPage, '\0');
    Put(page, 0, "\1\1");
    Put(page, 4, Raw(static_cast<std::uint32_t>(owner)));
    Put(page, 12, Raw16(rows.size()));
    for (std::size_t i = 0, at = kPage; i < rows.size(); ++i) {
      at -= rows[i].size();
      Put(page, at, rows[i]);
      Put(page, 14 + 2 * i, Raw16(i < deleted ? at | 0xC000U : at));
    }
    return static_cast<std::uint32_t>(page);
  }

  static std::string RowBytes(const Row& row) {
    std::string body = Raw16(row.size());
    std::string present((row.size() + 7) / 8, '\0');
    std::string ends = Raw16(body.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (row[i]) present[i / 8] = static_cast<char>(present[i / 8] | 1 << i % 8);
      body += row[i].value_or("");
      ends.insert(0, Raw16(body.size()));
    }
    return body + ends + Raw16(row.size()) + present;
  }

  void Define(std::size_t page, const std::vector<Column>& columns, const std::vector<Row>& rows,
              std::size_t deleted) {
    std::vector<std::string> data;
    for (const Row& row : rows) data.push_back(RowBytes(row));
    const std::uint32_t dataPage = AddPage(data, page, deleted);
    std::string used(64, '\0');
    used[dataPage / 8] = static_cast<char>(1 << dataPage % 8);
    const std::uint32_t maps = AddPage({std::string(5, '\0') + used, std::string(69, '\0')}, 0, 0);
    std::string entries;
    std::string names;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      entries += columns[i].type + std::string(4, '\0') + Raw16(i) + Raw16(i) + Raw16(i);
      entries.append(14, '\0');
      names += Raw16(columns[i].name.size() * 2) + Utf16(columns[i].name);
    }
    Put(page, 0, "\2\1");
    Put(page, 16, Raw(static_cast<std::uint32_t>(rows.size() - deleted)));
    Put(page, 41, Raw16(columns.size()) + Raw16(columns.size()) + Raw16(columns.size()));
    Put(page, 55, Raw(maps << 8) + Raw(maps << 8 | 1) + entries + names);
  }

  std::vector<std::string> pages_;
  std::vector<Row> catalog_;
};

}  // namespace merivane::test
