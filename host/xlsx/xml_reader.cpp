#include "host/xlsx/xml_reader.h"

#include <fmt/format.h>

#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

constexpr std::size_t kMaxDepth = 200;
constexpr std::size_t kMaxAttributes = 128;  // each is compared with those before it

bool IsWhiteSpace(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

bool IsNameStart(char c) {
  const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return is_letter || c == '_' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}
bool IsNamePart(char c) { return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

std::string_view LocalName(std::string_view name) {
  const std::size_t colon = name.rfind(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace

void XmlWindow::Advance(std::size_t bytes) {
  text_.erase(0, bytes);
  while (!is_last_ && text_.size() < 2 * kLongestMarkup) is_last_ = !append_piece_(text_);
}

XmlReader::XmlReader(std::string_view document) : document_(document) {
  if (document_.starts_with("\xEF\xBB\xBF")) position_ = 3;
}

XmlReader::XmlReader(XmlWindow& window) : window_(&window) {
  MoveWindow();
  if (document_.starts_with("\xEF\xBB\xBF")) position_ = 3;
}

void XmlReader::MoveWindow() {
  window_->Advance(position_);
  document_ = window_->text();
  passed_ += position_;
  position_ = 0;
}

void XmlReader::Fail(std::string_view reason) const {
  throw XmlError(fmt::format("{} (at byte {})", reason, passed_ + begin_));
}

/// Fails since markup does not end in the document, or not in the window.
void XmlReader::FailAtEnd(std::string_view reason) const {
  Fail(window_ != nullptr && !window_->is_last() ? "a tag, comment or text of more than 1 MB"
                                                 : reason);
}

std::string_view XmlReader::innermost() const {
  return std::string_view(open_names_).substr(open_starts_.back());
}

XmlReader::Event XmlReader::Next() {
  if (closes_) {
    open_names_.resize(open_starts_.back());
    open_starts_.pop_back();
    closes_ = false;
  }
  if (end_is_pending_) {
    end_is_pending_ = false;
    closes_ = true;
    return Event::kEnd;
  }
  if (window_ != nullptr && !window_->is_last() &&
      document_.size() - position_ < XmlWindow::kLongestMarkup)
    MoveWindow();
  while (position_ < document_.size()) {
    begin_ = position_;
    if (document_[position_] == '<') {
      Event event = Event::kDone;
      if (ReadMarkup(event)) return event;
      continue;
    }
    position_ = document_.find('<', position_);
    if (position_ == std::string_view::npos) {
      position_ = document_.size();
      if (window_ != nullptr && !window_->is_last()) FailAtEnd({});
    }
    text_ = document_.substr(begin_, position_ - begin_);
    literal_text_ = false;
    if (depth() > 0) {
      CheckEntities(text_);
      return Event::kText;
    }
    for (const char c : text_) {
      if (!IsWhiteSpace(c)) Fail("text outside the root element");
    }
  }
  begin_ = position_;
  if (depth() > 0) Fail("it ends in the middle of an element");
  if (!has_root_) Fail("it holds no element");
  return Event::kDone;
}

/// Reads markup that begins with "<". False for comments and processing instructions, which are not
/// events.
bool XmlReader::ReadMarkup(Event& event) {
  const std::string_view rest = document_.substr(position_);
  if (rest.starts_with("<!")) {
    event = Event::kText;
    return ReadDeclaration();
  }
  if (rest.starts_with("<?")) {
    SkipMarkup("<?", "?>");
    return false;
  }
  if (rest.starts_with("</")) {
    ReadEndTag();
    event = Event::kEnd;
  } else {
    ReadStartTag();
    event = Event::kStart;
  }
  return true;
}

/// Comments are skipped; true for a CDATA section.
bool XmlReader::ReadDeclaration() {
  constexpr std::string_view kLiteral = "<![CDATA[";
  const std::string_view rest = document_.substr(position_, kLiteral.size());
  if (rest.starts_with("<!--")) {
    SkipMarkup("<!--", "-->");
    return false;
  }
  if (rest != kLiteral) Fail("it declares a document type, which is not allowed in a workbook");
  if (depth() == 0) Fail("text outside the root element");
  SkipMarkup(kLiteral, "]]>");
  text_ = document_.substr(begin_ + kLiteral.size(), position_ - begin_ - kLiteral.size() - 3);
  literal_text_ = true;
  return true;
}

void XmlReader::SkipMarkup(std::string_view opening, std::string_view closing) {
  const std::size_t found = document_.find(closing, position_ + opening.size());
  if (found == std::string_view::npos)
    FailAtEnd(fmt::format("'{}' without '{}'", opening, closing));
  position_ = found + closing.size();
}

void XmlReader::SkipWhiteSpace() {
  while (position_ < document_.size() && IsWhiteSpace(document_[position_])) ++position_;
}

std::string_view XmlReader::ReadName() {
  const std::size_t start = position_;
  if (position_ == document_.size() || !IsNameStart(document_[position_]))
    Fail("a name is missing in a tag");
  while (position_ < document_.size() && IsNamePart(document_[position_])) ++position_;
  return document_.substr(start, position_ - start);
}

void XmlReader::SetName(std::string_view name) {
  qualified_name_ = name;
  local_name_ = LocalName(name);
}

void XmlReader::ReadStartTag() {
  if (depth() == 0 && has_root_) Fail("a second root element");
  if (depth() >= kMaxDepth) Fail("elements are nested too deeply");
  ++position_;
  SetName(ReadName());
  attributes_.clear();
  empty_element_ = false;
  while (true) {
    const std::size_t end = position_;
    SkipWhiteSpace();
    if (position_ >= document_.size()) FailAtEnd("it ends in the middle of a tag");
    if (document_[position_] == '>') break;
    if (document_.substr(position_, 2) == "/>") {
      empty_element_ = end_is_pending_ = true;
      ++position_;
      break;
    }
    if (position_ == end) Fail("no white space before an attribute");
    ReadAttribute();
  }
  ++position_;
  has_root_ = true;
  open_starts_.push_back(open_names_.size());
  open_names_ += qualified_name_;
}

void XmlReader::ReadAttribute() {
  if (attributes_.size() >= kMaxAttributes) Fail("a tag has too many attributes");
  const std::string_view name = ReadName();
  if (FindAttribute(name) != nullptr) Fail("a tag has an attribute twice");
  SkipWhiteSpace();
  if (position_ >= document_.size() || document_[position_] != '=') {
    Fail("an attribute without a value");
  }
  ++position_;
  SkipWhiteSpace();
  const char quote = position_ < document_.size() ? document_[position_] : ' ';
  if (quote != '"' && quote != '\'') Fail("an attribute's value is not in quotes");
  const std::size_t start = position_ + 1;
  const std::size_t finish = document_.find(quote, start);
  if (finish == std::string_view::npos) FailAtEnd("an attribute's value does not end");
  attributes_.push_back({name, document_.substr(start, finish - start)});
  if (attributes_.back().raw.find('<') != std::string_view::npos) {
    Fail("'<' in an attribute's value");
  }
  CheckEntities(attributes_.back().raw);
  position_ = finish + 1;
}

void XmlReader::ReadEndTag() {
  position_ += 2;
  SetName(ReadName());
  SkipWhiteSpace();
  if (position_ >= document_.size() || document_[position_] != '>') Fail("an end tag does not end");
  ++position_;
  if (depth() == 0 || innermost() != qualified_name_) Fail("an end tag without its start tag");
  closes_ = true;
}

/// Also of what nobody reads: a file that other programs refuse is not worth computing.
void XmlReader::CheckEntities(std::string_view raw) const {
  std::size_t at = raw.find('&');
  for (; at != std::string_view::npos; at = raw.find('&', at + 1)) {
    if (!EntityAt(raw.substr(at))) Fail("an entity that XML does not define");
  }
}

const XmlAttribute* XmlReader::FindAttribute(std::string_view name) const {
  for (const XmlAttribute& attribute : attributes_) {
    if (attribute.name == name) return &attribute;
  }
  return nullptr;
}

std::string XmlReader::Decoded(const XmlAttribute& attribute) const {
  std::string value;
  AppendDecoded(attribute.raw, XmlPlace::kAttribute, value);
  return value;
}

std::optional<std::string> XmlReader::Attribute(std::string_view name) const {
  const XmlAttribute* attribute = FindAttribute(name);
  if (attribute == nullptr) return std::nullopt;
  return Decoded(*attribute);
}

std::optional<std::string> XmlReader::PrefixedAttribute(std::string_view local_name) const {
  for (const XmlAttribute& attribute : attributes_) {
    if (attribute.name.size() > local_name.size() && LocalName(attribute.name) == local_name &&
        !attribute.name.starts_with("xmlns:")) {
      return Decoded(attribute);
    }
  }
  return std::nullopt;
}

std::optional<std::uint32_t> XmlReader::NumberAttribute(std::string_view name) const {
  const XmlAttribute* attribute = FindAttribute(name);
  if (attribute == nullptr) return std::nullopt;
  const std::optional<std::uint32_t> number = WholeNumber(attribute->raw);
  if (!number)
    Fail(fmt::format("attribute '{}' of <{}> is not a valid whole number", name, local_name_));
  return number;
}

bool XmlReader::BooleanAttribute(std::string_view name) const {
  const XmlAttribute* attribute = FindAttribute(name);
  return attribute != nullptr && (attribute->raw == "1" || attribute->raw == "true");
}

bool XmlReader::NextStart() {
  Event event = Next();
  while (event != Event::kStart && event != Event::kDone) event = Next();
  return event == Event::kStart;
}

bool XmlReader::NextChild() {
  Event event = Next();
  while (event == Event::kText) event = Next();
  return event == Event::kStart;
}

void XmlReader::SkipElement() {
  const std::size_t level = depth();
  while (Next() != Event::kEnd || depth() != level) {
  }
}

void XmlReader::ReadText(std::string& text) {
  while (true) {
    switch (Next()) {
      case Event::kText:
        AppendText(text);
        if (text.size() > XmlWindow::kLongestMarkup) Fail("a text of more than 1 MB");
        break;
      case Event::kStart:
        SkipElement();
        break;
      default:
        return;
    }
  }
}

void XmlReader::AppendText(std::string& text) const {
  const XmlPlace place = literal_text_ ? XmlPlace::kLiteral : XmlPlace::kText;
  AppendDecoded(text_, place, text);
}

}  // namespace zavhost
