// make_template SQLFILE OUTFILE: builds the template database from its SQL text.
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string ReadWhole(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return text.str();
}

void Run(const std::string& sql, const fs::path& database) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open(database.string().c_str(), &raw);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> db(raw, sqlite3_close);
  if (opened != SQLITE_OK || sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(database.string() + ": " + sqlite3_errmsg(raw));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: make_template SQLFILE OUTFILE\n";
    return 2;
  }
  try {
    const fs::path target = argv[2];
    const fs::path fresh = target.string() + ".new";
    fs::remove(fresh);
    Run(ReadWhole(argv[1]), fresh);
    fs::rename(fresh, target);
  } catch (const std::exception& error) {
    std::cerr << "make_template: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
