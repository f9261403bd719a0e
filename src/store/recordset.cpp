#include "store/recordset.h"

#include <algorithm>
#include <variant>

#include "dynamic_set.h"
#include "engine.h"
#include "snapshot_set.h"
#include "store/connection.h"

namespace merivane::store {

namespace {

enum class Position : std::uint8_t {
  kFresh,  // nothing asked yet: the first row, if there is one
  kBof,
  kRow,
  kEof,
  kEmpty,  // at BOF and EOF
};

}  // namespace

// The open rows, the position in them, and the changes that wait for Update.
struct Recordset::Impl final : private OpenSet {
  Impl() = default;
  ~Impl() { Close(); }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  std::string source;
  Connection* connection = nullptr;
  bool isStatic = false;

  Engine* engine = nullptr;  // null while closed
  std::variant<std::monostate, DynamicSet, SnapshotSet> rows;
  Position at = Position::kFresh;
  RowPlace place = kNoRow;
  bool adding = false;
  std::vector<FieldChange> changes;
  int greatest = -1;  // column among them

  bool IsOpen() const { return engine != nullptr; }
  void CheckOpen() const {
    if (!IsOpen()) throw RunTimeError(kObjectClosed);
  }
  void CheckNotOpen() const {
    if (IsOpen()) throw RunTimeError(kObjectOpen);
  }

  // What both kinds of rows can do. REQUIRES: open.
  template <class Step>
  auto With(Step step) {
    if (auto* set = std::get_if<DynamicSet>(&rows)) return step(*set);
    return step(std::get<SnapshotSet>(rows));
  }
  DynamicSet& Writable() {
    CheckOpen();
    auto* set = std::get_if<DynamicSet>(&rows);
    if (set == nullptr || isStatic) throw RunTimeError(kNotUpdatable);
    set->CheckWritable();
    return *set;
  }

  void Opened(Engine& database) {
    database.AddSet(*this);
    engine = &database;
    at = Position::kFresh;
  }

  void Close() noexcept {
    if (!IsOpen()) return;
    DropChanges();
    rows.emplace<std::monostate>();
    engine->RemoveSet(*this);
    engine = nullptr;
  }

  void Ask() {
    CheckOpen();
    if (at != Position::kFresh) return;
    MoveTo(With([](auto& set) { return set.First(); }), Position::kEmpty);
  }

  void MoveTo(RowPlace target, Position otherwise) {
    place = target;
    at = target == kNoRow ? otherwise : Position::kRow;
  }

  bool IsAt(Position end) {
    Ask();
    return at == end || at == Position::kEmpty;
  }

  void CheckField(int field) {
    CheckOpen();
    const int count = With([](auto& set) { return set.FieldCount(); });
    if (field < 0 || field >= count) throw RunTimeError(kItemNotFound);
  }

  void CheckOnRow() {
    Ask();
    const bool there =
        at == Position::kRow && With([this](auto& set) { return set.IsThere(place); });
    if (!there) throw RunTimeError(kNoCurrentRecord);
  }

  FieldChange* FindChange(int column) {
    if (column > greatest) return nullptr;
    const auto found = std::find_if(changes.begin(), changes.end(), [&](const FieldChange& change) {
      return change.column == column;
    });
    return found == changes.end() ? nullptr : &*found;
  }

  void SaveChanges() {
    CheckOpen();
    if (adding) {
      Writable().Insert(changes);
    } else if (!changes.empty()) {
      Writable().Update(place, changes);
    }
    DropChanges();
  }

  void DropChanges() noexcept {
    adding = false;
    changes.clear();
    greatest = -1;
  }

 private:
  void ConnectionCloses() noexcept override { Close(); }
};

Recordset::Recordset() : impl_(std::make_shared<Impl>()) {}
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::OpenDynamic(std::string_view sql, Connection* connection) {
  impl_->CheckNotOpen();
  impl_->source = sql;
  impl_->connection = connection;
  impl_->isStatic = false;
  Open();
}

void Recordset::OpenStatic(std::string_view sql, Connection* connection) {
  impl_->CheckNotOpen();
  impl_->source = sql;
  impl_->connection = connection;
  impl_->isStatic = true;
  Open();
}

void Recordset::OpenList(std::string fieldName, std::vector<std::string> texts,
                         Connection* connection) {
  impl_->CheckNotOpen();
  impl_->connection = connection;
  impl_->isStatic = true;
  impl_->rows.emplace<SnapshotSet>(std::move(fieldName), std::move(texts));
  impl_->Opened(*connection->engine_);
}

void Recordset::Source(std::string_view sql) {
  impl_->CheckNotOpen();
  impl_->source = sql;
}

void Recordset::ActiveConnection(Connection* connection) {
  impl_->CheckNotOpen();
  impl_->connection = connection;
}

void Recordset::Open() {
  impl_->CheckNotOpen();
  if (impl_->connection == nullptr) throw RunTimeError(kObjectNotSet);
  if (!impl_->connection->engine_) throw RunTimeError(kConnectionInvalid);
  impl_->connection->workspace_.work->Beat();
  Engine& engine = *impl_->connection->engine_;
  std::vector<Literal> literals;
  SelectShape& shape = engine.FindSelect(impl_->source, literals);
  if (impl_->isStatic || !shape.HasKeys()) {
    impl_->rows.emplace<SnapshotSet>(engine, shape, std::move(literals));
  } else {
    impl_->rows.emplace<DynamicSet>(engine, shape, std::move(literals));
  }
  impl_->Opened(engine);
}

void Recordset::Close() {
  impl_->CheckOpen();
  impl_->Close();
}

bool Recordset::IsOpen() const { return impl_->IsOpen(); }

bool Recordset::Eof() { return impl_->IsAt(Position::kEof); }

bool Recordset::Bof() { return impl_->IsAt(Position::kBof); }

void Recordset::MoveFirst() {
  impl_->SaveChanges();
  impl_->MoveTo(impl_->With([](auto& set) { return set.First(); }), Position::kEmpty);
  impl_->CheckOnRow();
}

void Recordset::MoveLast() {
  if (!FindLast()) throw RunTimeError(kNoCurrentRecord);
}

bool Recordset::FindLast() {
  impl_->SaveChanges();
  impl_->MoveTo(impl_->With([](auto& set) { return set.Last(); }), Position::kEmpty);
  return impl_->at == Position::kRow;
}

void Recordset::MoveNext() {
  impl_->SaveChanges();
  if (impl_->IsAt(Position::kEof)) throw RunTimeError(kNoCurrentRecord);
  const bool before = impl_->at == Position::kBof;
  const RowPlace place = impl_->place;
  const auto move = [&](auto& set) { return before ? set.First() : set.After(place); };
  impl_->MoveTo(impl_->With(move), Position::kEof);
}

void Recordset::MovePrevious() {
  impl_->SaveChanges();
  if (impl_->IsAt(Position::kBof)) throw RunTimeError(kNoCurrentRecord);
  const bool behind = impl_->at == Position::kEof;
  const RowPlace place = impl_->place;
  const auto move = [&](auto& set) { return behind ? set.Last() : set.Before(place); };
  impl_->MoveTo(impl_->With(move), Position::kBof);
}

std::size_t Recordset::Bookmark() {
  impl_->CheckOnRow();
  return impl_->place;
}

void Recordset::MoveTo(std::size_t bookmark) {
  impl_->SaveChanges();
  impl_->MoveTo(bookmark, Position::kEmpty);
}

long Recordset::RecordCount() {
  impl_->CheckOpen();
  return impl_->isStatic ? static_cast<long>(std::get<SnapshotSet>(impl_->rows).Count()) : -1;
}

int Recordset::FieldCount() {
  impl_->CheckOpen();
  return impl_->With([](auto& set) { return set.FieldCount(); });
}

std::string Recordset::FieldName(int index) {
  impl_->CheckField(index);
  return impl_->With([&](auto& set) { return set.FieldName(index); });
}

int Recordset::FindField(std::string_view name) {
  impl_->CheckOpen();
  return impl_->With([&](auto& set) { return set.FindField(name); });
}

Value Recordset::Field(std::string_view name) { return Field(FindField(name)); }

Value Recordset::Field(int index) {
  impl_->CheckField(index);
  if (impl_->adding || !impl_->changes.empty()) {
    const int column = impl_->Writable().ColumnOf(index);
    if (const FieldChange* change = impl_->FindChange(column)) return change->value;
    if (impl_->adding) return {};
  }
  impl_->Ask();
  if (impl_->at != Position::kRow) throw RunTimeError(kNoCurrentRecord);
  return impl_->With([&](auto& set) { return set.Read(impl_->place, index); });
}

void Recordset::ReadRow(std::vector<Value>& fields) {
  impl_->CheckOnRow();
  impl_->With([&](auto& set) { set.ReadRow(impl_->place, fields); });
}

void Recordset::SetField(std::string_view name, Value value) {
  const int field = FindField(name);
  impl_->CheckField(field);
  DynamicSet& set = impl_->Writable();
  if (!impl_->adding) impl_->CheckOnRow();
  const int column = set.ColumnOf(field);
  ConvertTo(set.KindOf(column), value);
  if (FieldChange* change = impl_->FindChange(column)) {
    change->value = std::move(value);
  } else {
    impl_->changes.push_back({column, std::move(value)});
    impl_->greatest = std::max(impl_->greatest, column);
  }
}

void Recordset::AddNew() {
  impl_->SaveChanges();
  impl_->Writable();
  impl_->adding = true;
}

void Recordset::AddNew(const std::vector<std::string>& names, std::vector<Value> values) {
  if (names.size() != values.size()) throw RunTimeError(kInvalidProcedureCall);
  AddNew();
  try {
    for (std::size_t i = 0; i < names.size(); ++i) SetField(names[i], std::move(values[i]));
    Update();
  } catch (...) {
    impl_->DropChanges();
    throw;
  }
}

void Recordset::Update() { impl_->SaveChanges(); }

void Recordset::Delete() {
  DynamicSet& set = impl_->Writable();
  impl_->DropChanges();
  impl_->CheckOnRow();
  set.Delete(impl_->place);
}

}  // namespace merivane::store
