#pragma once
// A pull reader for the XML of workbook parts. A sheet may have millions of cells, so the reader
// builds no tree and allocates nothing per element. Every event gives the position of its markup,
// so that the writer can change a cell's value and leave every other byte of the part unchanged. A
// tree parser offers neither. A part may be read through a window, so that it is never in memory as
// a whole.
//
// Workbooks need no document type declarations, so a part with one is refused, which also rules out
// the expansion of entities. Nesting and attributes per element are bounded.

#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zavhost {

/// XML that is not well formed; what() describes the fault in words that fit after "part X is
/// damaged: ".
class XmlError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct XmlAttribute {
  std::string_view name;  // with its prefix, as written
  std::string_view raw;   // the value between its quotes, with its entities
};

/// A document that comes piece by piece, and what of it is in memory.
class XmlWindow {
 public:
  /// Appends the next piece, in UTF-8 (see XmlDecoder); false when there are no more.
  using AppendPiece = std::function<bool(std::string& text)>;
  /// No tag, comment or piece of text between them may be longer. The longest text of a cell takes
  /// a quarter of it with every character escaped.
  static constexpr std::size_t kLongestMarkup = std::size_t{1} << 20;

  explicit XmlWindow(AppendPiece append_piece) : append_piece_(std::move(append_piece)) {}

  /// Drops this many bytes at the front, and fills the window up.
  void Advance(std::size_t bytes);
  std::string_view text() const { return text_; }
  /// Whether the document has no bytes beyond the window.
  bool is_last() const { return is_last_; }

 private:
  AppendPiece append_piece_;
  std::string text_;
  bool is_last_ = false;
};

class XmlReader {
 public:
  enum class Event { kStart, kEnd, kText, kDone };

  /// `document` is UTF-8 (see DecodeXml) and must outlive the reader.
  explicit XmlReader(std::string_view document);
  /// Reads what comes through a window, which must outlive the reader. What the reader returns is
  /// good until its next event, and so are positions; a copy of the reader is of no use.
  explicit XmlReader(XmlWindow& window);

  /// Moves to the next event; an empty-element tag gives kStart and then kEnd. Throws XmlError.
  Event Next();

  /// For kStart and kEnd: the element's name without its prefix.
  std::string_view name() const { return local_name_; }
  std::string_view qualified_name() const { return qualified_name_; }
  /// For kStart: whether it is an empty-element tag.
  bool is_empty_element() const { return empty_element_; }
  /// The number of open elements, including the one that starts or ends.
  std::size_t depth() const { return open_starts_.size(); }
  /// The start and end of the event's markup in the document, in bytes. kEnd of an empty-element
  /// tag has the position of the whole tag.
  std::size_t begin() const { return begin_; }
  std::size_t end() const { return position_; }

  const std::vector<XmlAttribute>& attributes() const { return attributes_; }
  /// The raw value of the attribute with exactly this name, without a prefix; null if there is
  /// none.
  const XmlAttribute* FindAttribute(std::string_view name) const;
  /// The decoded value of the attribute with exactly this name.
  std::optional<std::string> Attribute(std::string_view name) const;
  /// The decoded value of an attribute with this name after any prefix (r:id by "id").
  std::optional<std::string> PrefixedAttribute(std::string_view local_name) const;
  /// The attribute as a whole number; nothing if it is absent. Throws XmlError for other values.
  std::optional<std::uint32_t> NumberAttribute(std::string_view name) const;
  /// The attribute as a boolean ("1", "true"); false if it is absent.
  bool BooleanAttribute(std::string_view name) const;

  /// Moves to the next kStart; false at the end of the document.
  bool NextStart();
  /// At an element's kStart, and at the kEnd of each child: moves to the kStart of the next child;
  /// false at the element's kEnd.
  bool NextChild();
  /// At kStart: skips to the element's kEnd.
  void SkipElement();
  /// At kStart: calls `action` at the kStart of each child with this (local) name, which it must
  /// read up to its kEnd; skips the other children and stops at the element's kEnd.
  template <typename Action>
  void ForEachChild(std::string_view name, Action action) {
    while (NextChild()) {
      if (local_name_ == name) {
        action();
      } else {
        SkipElement();
      }
    }
  }
  /// At kStart: appends the element's own text, decoded, to `text` and stops at its kEnd. Omits
  /// text inside child elements. Throws XmlError if `text` becomes longer than markup may be.
  void ReadText(std::string& text);
  /// For kText: appends the text, decoded.
  void AppendText(std::string& text) const;

 private:
  [[noreturn]] void Fail(std::string_view reason) const;
  [[noreturn]] void FailAtEnd(std::string_view reason) const;
  void MoveWindow();
  std::string_view innermost() const;
  void CheckEntities(std::string_view raw) const;
  void SkipMarkup(std::string_view opening, std::string_view closing);
  bool ReadMarkup(Event& event);
  bool ReadDeclaration();
  void ReadStartTag();
  void ReadEndTag();
  void ReadAttribute();
  void SkipWhiteSpace();
  std::string_view ReadName();
  void SetName(std::string_view name);
  std::string Decoded(const XmlAttribute& attribute) const;

  std::string_view document_;  // or what of it is in the window
  XmlWindow* window_ = nullptr;
  std::size_t passed_ = 0;  // bytes of the document before the window
  std::size_t position_ = 0;
  std::size_t begin_ = 0;
  std::string_view qualified_name_;
  std::string_view local_name_;
  std::string_view text_;
  std::vector<XmlAttribute> attributes_;
  std::string open_names_;                // of the open elements, one after the other
  std::vector<std::size_t> open_starts_;  // where each name begins there
  bool literal_text_ = false;             // the text is a CDATA section
  bool empty_element_ = false;            // the last tag ends its element
  bool end_is_pending_ = false;           // its kEnd comes next
  bool closes_ = false;  // the last event was a kEnd whose element still counts as open
  bool has_root_ = false;
};

}  // namespace zavhost
