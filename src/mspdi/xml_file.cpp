#include "xml_file.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "runtime/code_page.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::mspdi {

using namespace runtime;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 1 << 16;  // of a file

constexpr unsigned kParts = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                            pugi::parse_declaration | pugi::parse_embed_pcdata;

// True for the five entities of XML and for numbers of characters.
bool IsKnownEntity(std::string_view text) {
  constexpr std::string_view kKnown[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#"};
  return std::ranges::any_of(kKnown, [&](std::string_view e) { return text.starts_with(e); });
}

// A part of the text that begins with "<!"; `end` is behind it, or the end of the text.
struct Section {
  std::size_t begin = 0;
  std::size_t end = 0;
};

Section NextSection(std::string_view text, std::size_t from) {
  std::size_t mark = text.find('!', from + 1);  // rarer than "<"
  while (mark != std::string_view::npos && text[mark - 1] != '<') mark = text.find('!', mark + 1);
  const std::size_t begin = std::min(mark, text.size() + 1) - 1;
  const std::string_view rest = text.substr(begin);
  const std::string_view closing = rest.starts_with("<!--")        ? "-->"
                                   : rest.starts_with("<![CDATA[") ? "]]>"
                                                                   : ">";
  const std::size_t end = text.find(closing, begin);
  return {begin, end == std::string_view::npos ? text.size() : end + closing.size()};
}

}  // namespace

XmlFile::XmlFile(const Output& file)
    : name_(FromUtf8(file.name.substr(file.name.find_last_of("/\\") + 1))) {
  const fs::path place = PathOf(file.path);
  std::error_code error;
  if (!fs::exists(place, error)) throw RunTimeError(kFileNotFound);
  RefuseDevice(file.path);
  file_.open(place, std::ios::binary);
  if (!file_.is_open() || fs::is_directory(place, error)) throw RunTimeError(kPermissionDenied);
  constexpr std::uintmax_t kMost = 1 << 30;
  const auto size = fs::file_size(place, error);
  if (!error) size_ = size;
  if (size_ > kMost) {
    throw RunTimeError(kPathFileAccessError, "'" + name_ + "' has more than 1 GB.");
  }
}

void XmlFile::ReadWhole() {
  text_.reserve(size_ + kBlock);
  while (ReadBlock()) {
  }
  FindLines();
  RefuseOtherEncodings();
  RefuseDefinitionsAndEntities(text_);
  Parse(text_.data(), text_.size());
  RefuseDeclaredEncoding();
  RefuseDeepNesting();
}

// What comes before the next piece leaves memory.
bool XmlFile::ReadBlock() {
  text_.erase(0, at_);
  at_ = 0;
  const std::size_t read = text_.size();
  text_.resize(read + kBlock);
  file_.read(text_.data() + read, kBlock);
  text_.resize(read + static_cast<std::size_t>(file_.gcount()));
  if (file_.bad()) throw RunTimeError(kDeviceIoError);
  return file_.gcount() > 0;
}

// Of the piece that ends with the first mark behind its first `from` characters.
std::size_t XmlFile::SizeTo(std::string_view mark, std::size_t from) {
  for (;;) {
    const std::size_t found = text_.find(mark, at_ + from);
    if (found != std::string::npos) return found + mark.size() - at_;
    const std::size_t left = text_.size() - at_;
    from = std::max(from, left - std::min(left, mark.size() - 1));
    if (!ReadBlock()) RefuseAsNotPlain();
  }
}

void XmlFile::Pass(std::size_t size) {
  line_ = nextLine_;
  const std::string_view passed = std::string_view(text_).substr(at_, size);
  for (std::size_t end = passed.find('\n'); end != std::string_view::npos;
       end = passed.find('\n', end + 1)) {
    ++nextLine_;
  }
  at_ += size;
}

void XmlFile::SkipSpace() {
  do {
    Pass(std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()) - at_);
  } while (at_ == text_.size() && ReadBlock());
}

std::string_view XmlFile::NextTag() {
  SkipSpace();
  if (at_ == text_.size() || text_[at_] != '<') RefuseAsNotPlain();
  const std::size_t size = SizeTo(">", 0);
  return std::string_view(text_).substr(at_, size);
}

void XmlFile::EnterRoot() {
  if (ReadBlock() && text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
  head_ = NextTag();
  if (head_.starts_with("<?xml")) {
    Pass(head_.size());
    head_ += NextTag();
  }
  NextName();
  Pass(NextTag().size());
  head_ += "</" + next_ + ">";
  open_.push_back(next_);
  ParsePiece(head_.data(), head_.size());
  RefuseDeclaredEncoding();
}

std::string_view XmlFile::NextName() {
  if (std::exchange(isEmpty_, false)) {
    open_.pop_back();
    return {};
  }
  const std::string_view tag = NextTag();
  if (tag.starts_with("</")) {
    if (open_.empty() || tag.substr(2, tag.size() - 3) != open_.back()) RefuseAsNotPlain();
    Pass(tag.size());
    open_.pop_back();
    return {};
  }
  next_ = tag.substr(1, tag.find_first_of(" \t\r\n/>") - 1);
  const std::string_view name = LocalName(next_);
  if (name.empty()) RefuseAsNotPlain();
  return name;
}

void XmlFile::Enter() {
  const std::string_view tag = NextTag();
  isEmpty_ = tag.ends_with("/>");
  if (isEmpty_) {
    ReadElement();
  } else if (tag.size() == next_.size() + 2) {
    Pass(tag.size());
  } else {
    RefuseAsNotPlain();  // an attribute
  }
  open_.push_back(next_);
}

pugi::xml_node XmlFile::ReadElement() {
  std::size_t size = NextTag().size();
  if (text_[at_ + size - 2] != '/') size = SizeTo("/" + next_ + ">", size);
  Pass(size);
  ParsePiece(text_.data() + at_ - size, size);
  return Root();
}

void XmlFile::ReadEnd() {
  SkipSpace();
  if (at_ < text_.size()) RefuseAsNotPlain();
}

void XmlFile::FindLines() {
  lineEnds_.reserve(static_cast<std::size_t>(std::ranges::count(text_, '\n')));
  for (std::size_t end = text_.find('\n'); end != std::string::npos;
       end = text_.find('\n', end + 1)) {
    lineEnds_.push_back(static_cast<std::uint32_t>(end));
  }
}

std::size_t XmlFile::LineAt(std::size_t offset) const {
  return static_cast<std::size_t>(std::ranges::lower_bound(lineEnds_, offset) - lineEnds_.begin()) +
         line_;
}

std::size_t XmlFile::LineOf(const pugi::xml_node& node) const {
  return LineAt(static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0)));
}

void XmlFile::Refuse(std::size_t line, const std::string& found) const {
  throw RunTimeError(kInvalidFileFormat, name_ + ", line " + std::to_string(line) + ": " + found);
}

void XmlFile::RefuseOtherEncodings() const {
  const std::string_view head = std::string_view(text_).substr(0, 4);
  if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF") ||
      head.find('\0') != std::string_view::npos) {
    Refuse(1, "the text is UTF-16. Save the file as UTF-8.");
  }
  const std::size_t nul = text_.find('\0');
  if (nul != std::string::npos)
    Refuse(LineAt(nul), "found a character of code 0, which is no text.");
}

// An "&" inside a comment or a CDATA section is a character like others.
void XmlFile::RefuseDefinitionsAndEntities(std::string_view text) const {
  Section section = NextSection(text, 0);
  for (std::size_t at = text.find('&');;) {
    if (section.begin < std::min(at, text.size())) {
      if (text.substr(section.begin).starts_with("<!DOCTYPE")) {
        Refuse(LineAt(section.begin), "found a document type definition, which no plan has.");
      }
      if (at != std::string_view::npos && at < section.end) at = text.find('&', section.end);
      section = NextSection(text, section.end);
    } else if (at == std::string_view::npos) {
      return;
    } else if (IsKnownEntity(text.substr(at, 6))) {
      at = text.find('&', at + 1);
    } else {
      const std::size_t end = std::min(text.find_first_of("; \t\r\n<", at), at + 20);
      Refuse(LineAt(at), "found '" + FromUtf8(text.substr(at, end - at)) +
                             "', which is none of the five entities of XML.");
    }
  }
}

// Parsed alone, it is what it is in its file: one element that is closed.
void XmlFile::ParsePiece(char* text, std::size_t size) {
  const std::string_view piece(text, size);
  if (NextSection(piece, 0).begin < size || piece.find('\0') != std::string_view::npos)
    RefuseAsNotPlain();
  RefuseDefinitionsAndEntities(piece);
  Parse(text, size);
  if (Root() != document_.last_child()) RefuseAsNotPlain();
  RefuseDeepNesting();
}

void XmlFile::Parse(char* text, std::size_t size) {
  const pugi::xml_parse_result result =
      document_.load_buffer_inplace(text, size, kParts, pugi::encoding_utf8);
  if (result) return;
  const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
  if (result.status == pugi::status_no_document_element) Refuse(1, "found no XML.");
  Refuse(LineAt(std::min(offset, size)),
         "the XML ends or breaks here (" + std::string(result.description()) + ").");
}

void XmlFile::RefuseDeclaredEncoding() const {
  const pugi::xml_node declaration = document_.first_child();
  if (declaration.type() != pugi::node_declaration) return;
  const std::string encoding = UpperCase(declaration.attribute("encoding").value());
  if (encoding.empty() || encoding == "UTF-8" || encoding == "US-ASCII") return;
  Refuse(1, "the text is " + FromUtf8(encoding) + ". Save the file as UTF-8.");
}

void XmlFile::RefuseDeepNesting() const {
  constexpr std::ptrdiff_t kDeepest = 100;  // a plan has nine levels
  std::ptrdiff_t depth = 0;
  for (pugi::xml_node node = Root(); depth >= 0;) {
    if (const pugi::xml_node child = node.first_child()) {
      node = child;
      if (++depth > kDeepest - std::ssize(open_))
        Refuse(node, "elements lie deeper than 100 levels in each other.");
      continue;
    }
    while (depth >= 0 && !node.next_sibling()) {
      node = node.parent();
      --depth;
    }
    node = node.next_sibling();
  }
}

std::string_view LocalName(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string TextOf(const pugi::xml_node& node) {
  std::string text = node.value();
  for (const pugi::xml_node& part : node.children()) {
    if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) text += part.value();
  }
  return text;
}

}  // namespace merivane::mspdi
