#include "custom_fields.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include "runtime/conversions.h"
#include "schedule/project_rows.h"
#include "store/interim_db.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

constexpr std::int64_t kAlias = 206;  // of ATTRIB_ID
constexpr std::int64_t kFormula = 207;
constexpr std::size_t kLongestAlias = 50;

// Text fields that have elements of their own, or none in a plan's file.
constexpr std::int64_t kBuiltIn[] = {
    188743696, 188743706, 188743774, 188743792, 188743897, 188743898, 188743899, 188744095,
    205520899, 205520906, 205520924, 205520931, 205521034, 205521035, 205521036, 205521207,
    239075346, 239075347, 255852623, 255852696, 255852697, 255852698};

// A number that is always the same for a field, in the form that the file wants.
std::string GuidOf(std::int64_t field) {
  char text[40];
  std::snprintf(text, sizeof text, "00000000-0000-0000-0000-%012llX",
                static_cast<unsigned long long>(field));
  return text;
}

// Both are of 32 bits.
std::int64_t KeyOf(std::int64_t category, std::int64_t uid) {
  return (category << 32) + static_cast<std::uint32_t>(uid);
}

std::int64_t NumberOf(const Value& value) { return IsNumeric(value) ? ToInt32(value) : 0; }

}  // namespace

struct CustomFields::Table {
  const char* name;
  std::vector<const char*> columns;  // category, owner, field, value, format
  Kind kind;
};

CustomFields::CustomFields(Connection& connection, std::int32_t project) {
  const Table tables[] = {{"MSP_TEXT_FIELDS",
                           {"TEXT_CATEGORY", "TEXT_REF_UID", "TEXT_FIELD_ID", "TEXT_VALUE"},
                           Kind::kText},
                          {"MSP_NUMBER_FIELDS",
                           {"NUM_CATEGORY", "NUM_REF_UID", "NUM_FIELD_ID", "NUM_VALUE"},
                           Kind::kDecimal},
                          {"MSP_DATE_FIELDS",
                           {"DATE_CATEGORY", "DATE_REF_UID", "DATE_FIELD_ID", "DATE_VALUE"},
                           Kind::kDate},
                          {"MSP_DURATION_FIELDS",
                           {"DUR_CATEGORY", "DUR_REF_UID", "DUR_FIELD_ID", "DUR_VALUE", "DUR_FMT"},
                           Kind::kDuration},
                          {"MSP_FLAG_FIELDS",
                           {"FLAG_CATEGORY", "FLAG_REF_UID", "FLAG_FIELD_ID", "FLAG_VALUE"},
                           Kind::kFlag},
                          {"MSP_CODE_FIELDS",
                           {"CODE_CATEGORY", "CODE_REF_UID", "CODE_FIELD_ID", "CODE_UID"},
                           Kind::kInteger}};
  for (const Table& table : tables) ReadValues(connection, project, table);
  ReadCodes(connection, project);
  ReadDeclarations(connection, project);
}

void CustomFields::ReadValues(Connection& connection, std::int32_t project, const Table& table) {
  if (TableExists(&connection, table.name) == 0) return;
  enum Column { kCategory, kOwner, kField, kValue, kFormat };
  ProjectRows rows(connection, {.name = table.name}, project, table.columns);
  for (; !rows.AtEnd(); rows.Next()) {
    FieldValue value{
        .field = rows.IntegerAt(kField, 0), .kind = table.kind, .value = rows.At(kValue)};
    if (value.value.IsNull() || value.field == 0) continue;
    if (table.columns.size() > kFormat && LiesWithin(rows.At(kFormat), 3, 12)) {
      value.format = static_cast<std::int8_t>(std::lround(ToDouble(rows.At(kFormat))));
    }
    const bool known = CustomFieldOf(value.field).has_value();
    if (known) declarations_.try_emplace(value.field);
    if (!known && std::ranges::find(kBuiltIn, value.field) == std::end(kBuiltIn)) ++unknown_;
    const std::int64_t owner = KeyOf(rows.IntegerAt(kCategory, 0), rows.IntegerAt(kOwner, 0));
    values_[owner].push_back(std::move(value));
  }
}

void CustomFields::ReadCodes(Connection& connection, std::int32_t project) {
  if (TableExists(&connection, "MSP_OUTLINE_CODES") == 0) return;
  enum Column { kUid, kParent, kField, kName, kDescription };
  ProjectRows rows(connection, {.name = "MSP_OUTLINE_CODES"}, project,
                   {"CODE_UID", "OC_PARENT", "OC_FIELD_ID", "OC_NAME", "OC_DESCRIPTION"});
  std::set<std::int64_t> seen;
  for (; !rows.AtEnd(); rows.Next()) {
    const Code code{rows.IntegerAt(kUid, 0), rows.IntegerAt(kParent, 0), rows.TextAt(kName),
                    rows.TextAt(kDescription)};
    const std::int64_t field = rows.IntegerAt(kField, 0);
    if (code.uid <= 0 || !CustomFieldOf(field) || !seen.insert(code.uid).second) continue;
    codes_[field].push_back(code);
    declarations_.try_emplace(field);
  }
}

std::map<std::int64_t, std::vector<std::string>> CustomFields::ReadStrings(
    Connection& connection, std::int32_t project) const {
  std::map<std::int64_t, std::vector<std::string>> strings;
  if (TableExists(&connection, "MSP_ATTRIBUTE_STRINGS") == 0) return strings;
  enum Column { kId, kText };
  ProjectRows rows(connection,
                   {.name = "MSP_ATTRIBUTE_STRINGS", .order = " order by AS_ID, AS_POSITION"},
                   project, {"AS_ID", "AS_VALUE"});
  for (; !rows.AtEnd(); rows.Next()) strings[rows.IntegerAt(kId, 0)].push_back(rows.TextAt(kText));
  return strings;
}

// A long text lies in several strings.
void CustomFields::ReadDeclarations(Connection& connection, std::int32_t project) {
  if (TableExists(&connection, "MSP_FIELD_ATTRIBUTES") == 0) return;
  const auto strings = ReadStrings(connection, project);
  enum Column { kField, kAttribute, kString };
  ProjectRows rows(connection, {.name = "MSP_FIELD_ATTRIBUTES"}, project,
                   {"ATTRIB_FIELD_ID", "ATTRIB_ID", "AS_ID"});
  for (; !rows.AtEnd(); rows.Next()) {
    const std::int64_t field = rows.IntegerAt(kField, 0);
    const std::int64_t attribute = rows.IntegerAt(kAttribute, 0);
    const auto found = strings.find(rows.IntegerAt(kString, 0));
    if (found == strings.end() || !CustomFieldOf(field)) continue;
    if (attribute != kAlias && attribute != kFormula) continue;
    std::string text;
    for (const std::string& part : found->second) text += part;
    Declaration& declaration = declarations_[field];
    (attribute == kAlias ? declaration.alias : declaration.formula) = text;
  }
}

void CustomFields::WriteOutlineCodes(Element& project) const {
  std::vector<std::int64_t> fields;
  for (const auto& [field, declaration] : declarations_) {
    if (CustomFieldOf(field)->isOutlineCode) fields.push_back(field);
  }
  if (fields.empty()) return;
  Element list = project.Child("OutlineCodes");
  for (const std::int64_t field : fields) {
    Element code = list.Child("OutlineCode");
    code.Text("Guid", GuidOf(field));
    code.Integer("FieldID", field);
    code.Text("FieldName", CustomFieldOf(field)->name);
    code.Text("Alias", declarations_.at(field).alias, kLongestAlias);
    const auto codes = codes_.find(field);
    if (codes == codes_.end()) continue;
    constexpr std::int64_t kText = 21;  // of a value's type
    Element values = code.Child("Values");
    for (const Code& one : codes->second) {
      Element value = values.Child("Value");
      value.Integer("ValueID", one.uid);
      value.Text("FieldGUID", GuidOf(field));
      value.Integer("Type", kText);
      value.Integer("ParentValueID", std::max<std::int64_t>(one.parent, 0));
      value.Text("Value", one.value);
      value.Text("Description", one.description);
    }
  }
}

void CustomFields::WriteDeclarations(Element& project) const {
  std::map<std::int64_t, Declaration> declared = declarations_;
  declared.try_emplace(kText1Field);
  Element list = project.Child("ExtendedAttributes");
  for (const auto& [field, declaration] : declared) {
    const CustomField known = *CustomFieldOf(field);
    if (known.isOutlineCode) continue;
    Element attribute = list.Child("ExtendedAttribute");
    attribute.Integer("FieldID", field);
    attribute.Text("FieldName", known.name);
    attribute.Text("Alias", declaration.alias, kLongestAlias);
    attribute.Text("Formula", declaration.formula);
    const auto values = codes_.find(field);
    if (values == codes_.end()) continue;
    Element valueList = attribute.Child("ValueList");
    for (const Code& one : values->second) {
      Element value = valueList.Child("Value");
      value.Integer("ID", one.uid);
      value.Text("Value", one.value);
      value.Text("Description", one.description);
    }
  }
}

std::span<const CustomFields::FieldValue> CustomFields::ValuesOf(Owner owner,
                                                                 std::int64_t uid) const {
  const auto found = values_.find(KeyOf(static_cast<std::int64_t>(owner), uid));
  return found == values_.end() ? std::span<const FieldValue>() : std::span(found->second);
}

void CustomFields::WriteValues(Owner owner, std::int64_t uid, Element& element, const char* name,
                               std::int64_t leftOut) const {
  std::set<std::int64_t> written = {leftOut};
  for (const FieldValue& value : ValuesOf(owner, uid)) {
    const auto field = CustomFieldOf(value.field);
    if (!field || field->owner != owner || value.kind == Kind::kInteger) continue;
    if (!written.insert(value.field).second) continue;
    Element attribute = element.Child(name);
    attribute.Integer("FieldID", value.field);
    attribute.Stored("Value", value.kind, value.value);
    if (value.format != 0) attribute.Integer("DurationFormat", value.format);
  }
}

void CustomFields::WriteCodes(Owner owner, std::int64_t uid, Element& element,
                              const char* name) const {
  for (const FieldValue& value : ValuesOf(owner, uid)) {
    const auto field = CustomFieldOf(value.field);
    if (value.kind != Kind::kInteger || !field || field->owner != owner) continue;
    Element code = element.Child(name);
    code.Integer("FieldID", value.field);
    code.Integer("ValueID", NumberOf(value.value));
  }
}

std::string CustomFields::TextOf(Owner owner, std::int64_t uid, std::int64_t field) const {
  const std::span<const FieldValue> values = ValuesOf(owner, uid);
  const auto value = std::ranges::find(values, field, &FieldValue::field);
  return value == values.end() ? std::string() : Joined(value->value);
}

}  // namespace merivane::mspdi
