#include "rtdb/internal/query_parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

namespace dtsdb::internal::rtdb {
namespace {

/// Parentheses and "not" deeper than this are refused, so that no query exhausts the stack.
constexpr int kDeepest = 200;
/// A condition of this many terms is walked down as deep.
constexpr std::size_t kMostOperations = 2000;

/// Words that can't be columns.
constexpr std::array<std::string_view, 16> kReserved = {"and",   "asc",   "between", "by",   "desc",  "false",
                                                        "first", "last",  "length",  "like", "limit", "not",
                                                        "or",    "order", "start",   "true"};

struct Token {
  enum Kind { kWord, kNumber, kText, kSymbol, kBound, kEnd, kBad };
  Kind kind = kEnd;
  std::string text;
  Value number;
  std::size_t element = 0;
};

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsWordStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

/// Cuts a query's pieces into tokens.
class Scanner {
 public:
  explicit Scanner(const std::vector<dbQueryElement>& elements) : m_elements(elements) {}

  Token Next() {
    while (m_element < m_elements.size()) {
      const dbQueryElement& element = m_elements[m_element];
      if (element.type != dbQueryElement::qExpression) {
        Token token;
        token.kind = Token::kBound;
        token.text = "?";
        token.element = m_element++;
        return token;
      }
      while (m_offset < element.text.size() && IsSpace(element.text[m_offset])) ++m_offset;
      if (m_offset < element.text.size()) return Cut(element.text);
      ++m_element;
      m_offset = 0;
    }
    return {};
  }

 private:
  Token Cut(const std::string& text) {
    const char c = text[m_offset];
    if (IsWordStart(c)) return CutWord(text);
    if (c == '\'') return CutText(text);
    const bool sign = c == '-' && m_offset + 1 < text.size();
    const char digit = sign ? text[m_offset + 1] : c;
    if (IsDigit(digit) || digit == '.') return CutNumber(text);
    return CutSymbol(text);
  }

  Token CutWord(const std::string& text) {
    const std::size_t begin = m_offset;
    while (m_offset < text.size() && (IsWordStart(text[m_offset]) || IsDigit(text[m_offset]))) ++m_offset;
    return {Token::kWord, text.substr(begin, m_offset - begin), {}, 0};
  }

  Token CutText(const std::string& text) {
    Token token{Token::kText, {}, {}, 0};
    for (++m_offset; m_offset < text.size(); ++m_offset) {
      if (text[m_offset] == '\'') {
        if (m_offset + 1 >= text.size() || text[m_offset + 1] != '\'') {
          ++m_offset;
          return token;
        }
        ++m_offset;
      }
      token.text.push_back(text[m_offset]);
    }
    return {Token::kBad, "a text without its closing quote", {}, 0};
  }

  Token CutNumber(const std::string& text) {
    Token token{Token::kNumber, {}, {}, 0};
    const char* begin = text.data() + m_offset;
    const char* end = text.data() + text.size();
    const auto real = std::from_chars(begin, end, token.number.real);
    const auto integer = std::from_chars(begin, end, token.number.integer);
    const bool whole = integer.ec == std::errc() && integer.ptr == real.ptr;
    token.number.kind = whole ? Value::kInteger : Value::kReal;
    token.text.assign(begin, real.ptr);
    m_offset += static_cast<std::size_t>(real.ptr - begin);
    const bool sound = real.ec == std::errc() && (real.ptr == end || !IsWordStart(*real.ptr));
    if (!sound) return {Token::kBad, "a number that can't be read", {}, 0};
    return token;
  }

  Token CutSymbol(const std::string& text) {
    for (const std::string_view symbol : {"<>", "!=", "<=", ">=", "=", "<", ">", "(", ")", ","}) {
      if (text.compare(m_offset, symbol.size(), symbol) == 0) {
        m_offset += symbol.size();
        return {Token::kSymbol, std::string(symbol), {}, 0};
      }
    }
    std::string character = "the character \"";
    character += text[m_offset];
    character += '"';
    return {Token::kBad, character, {}, 0};
  }

  const std::vector<dbQueryElement>& m_elements;
  std::size_t m_element = 0;
  std::size_t m_offset = 0;
};

/// Recursive descent: or, and, not, comparison.
class Parser {
 public:
  Parser(const std::vector<dbQueryElement>& elements, const RowPlan& plan, const std::string& table, ParsedQuery& query)
      : m_elements(elements), m_plan(plan), m_table(table), m_query(query), m_scanner(elements) {
    Advance();
  }

  /// The first fault, or an empty text.
  std::string Parse() {
    if (m_token.kind != Token::kEnd && !IsWord("order")) m_query.root = Or();
    if (!Failed() && IsWord("order")) Order();
    if (!Failed() && m_token.kind != Token::kEnd) Unexpected();
    return m_fault;
  }

 private:
  bool Failed() const { return !m_fault.empty(); }
  int Fail(std::string fault) {
    if (!Failed()) m_fault = std::move(fault);
    return -1;
  }
  int Unexpected() {
    if (m_token.kind == Token::kEnd) return Fail("it ends too early");
    if (m_token.kind == Token::kBad) return Fail(m_token.text);
    return Fail("\"" + m_token.text + "\" does not belong there");
  }

  void Advance() { m_token = m_scanner.Next(); }
  bool IsWord(std::string_view word) const { return m_token.kind == Token::kWord && m_token.text == word; }
  bool IsSymbol(std::string_view symbol) const { return m_token.kind == Token::kSymbol && m_token.text == symbol; }
  bool TakeWord(std::string_view word) {
    if (!IsWord(word)) return false;
    Advance();
    return true;
  }
  bool TakeSymbol(std::string_view symbol) {
    if (!IsSymbol(symbol)) return false;
    Advance();
    return true;
  }

  int Add(Operation operation) {
    if (m_query.operations.size() >= kMostOperations) return Fail("it has too many conditions");
    m_query.operations.push_back(std::move(operation));
    return static_cast<int>(m_query.operations.size()) - 1;
  }
  int Join(Operation::Kind kind, int left, int right) {
    Operation operation;
    operation.kind = kind;
    operation.left = left;
    operation.right = right;
    return Failed() ? -1 : Add(std::move(operation));
  }

  int Or() {
    int left = And();
    while (!Failed() && TakeWord("or")) left = Join(Operation::kOr, left, And());
    return left;
  }

  int And() {
    int left = Not();
    while (!Failed() && TakeWord("and")) left = Join(Operation::kAnd, left, Not());
    return left;
  }

  int Not() {
    if (++m_depth > kDeepest) return Fail("it is nested too deeply");
    int result = -1;
    if (TakeWord("not")) {
      result = Join(Operation::kNot, Not(), -1);
    } else if (TakeSymbol("(")) {
      result = Or();
      if (!Failed() && !TakeSymbol(")")) Unexpected();
    } else {
      result = Comparison();
    }
    --m_depth;
    return result;
  }

  int Comparison() {
    const Operand first = Side();
    if (Failed()) return -1;
    if (TakeWord("between")) return Between(first);
    const bool negated = TakeWord("not");
    if (TakeWord("like")) {
      const int like = Compare(Operation::kLike, first, Side());
      return negated ? Join(Operation::kNot, like, -1) : like;
    }
    if (negated) return Unexpected();
    static constexpr std::pair<std::string_view, Operation::Kind> kSymbols[] = {
        {"=", Operation::kEqual},        {"<>", Operation::kUnequal},   {"!=", Operation::kUnequal},
        {"<", Operation::kLess},         {"<=", Operation::kLessEqual}, {">", Operation::kGreater},
        {">=", Operation::kGreaterEqual}};
    for (const auto& [symbol, kind] : kSymbols) {
      if (TakeSymbol(symbol)) return Compare(kind, first, Side());
    }
    return Truth(first);
  }

  int Between(const Operand& value) {
    const Operand low = Side();
    if (!Failed() && !TakeWord("and")) return Unexpected();
    const int above = Compare(Operation::kGreaterEqual, value, low);
    const int below = Compare(Operation::kLessEqual, value, Side());
    return Join(Operation::kAnd, above, below);
  }

  /// A bool column or value that stands for itself.
  int Truth(const Operand& value) {
    const bool boolean = value.kind == Operand::kColumn
                             ? m_plan.TableSchema().columns[value.index].type == dbField::tpBool
                             : value.kind == Operand::kBound &&
                                   m_elements[value.index].type == dbQueryElement::qVariable &&
                                   m_elements[value.index].valueType == dbField::tpBool;
    if (!boolean) return Unexpected();
    return Compare(Operation::kTruth, value, {});
  }

  int Compare(Operation::Kind kind, const Operand& first, const Operand& second) {
    if (Failed()) return -1;
    if (kind == Operation::kLike && !(first.isText && second.isText)) return Fail("\"like\" compares texts only");
    if (kind != Operation::kTruth && first.isText != second.isText) return Fail("a text is compared with a number");
    Operation operation;
    operation.kind = kind;
    operation.first = first;
    operation.second = second;
    return Add(std::move(operation));
  }

  Operand Side() {
    Operand side;
    const Token token = m_token;
    switch (token.kind) {
      case Token::kWord:
        return Word(token.text);
      case Token::kNumber:
        side.constant = token.number;
        break;
      case Token::kText:
        side.isText = true;
        side.text = token.text;
        break;
      case Token::kBound:
        side.kind = Operand::kBound;
        side.index = token.element;
        side.isText = m_elements[token.element].type != dbQueryElement::qVariable;
        break;
      default:
        Unexpected();
        return side;
    }
    Advance();
    return side;
  }

  Operand Word(const std::string& word) {
    Operand side;
    if (word == "true" || word == "false") {
      side.constant.integer = word == "true" ? 1 : 0;
      Advance();
      return side;
    }
    const int column = Column();
    if (column < 0) return side;
    side.kind = Operand::kColumn;
    side.index = static_cast<std::size_t>(column);
    side.isText = m_plan.TableSchema().columns[side.index].type == dbField::tpString;
    return side;
  }

  int Column() {
    if (m_token.kind != Token::kWord) return Unexpected();
    const std::string& name = m_token.text;
    if (std::find(kReserved.begin(), kReserved.end(), name) != kReserved.end()) {
      return Fail("\"" + name + "\" is a reserved word");
    }
    const int column = m_plan.FindColumn(name);
    if (column < 0) return Fail("table " + m_table + " has no column " + name);
    if (m_plan.TableSchema().columns[static_cast<std::size_t>(column)].type == dbField::tpRawBinary) {
      return Fail("column " + name + " holds raw bytes, which have no order");
    }
    Advance();
    return column;
  }

  void Order() {
    Advance();
    if (!TakeWord("by")) {
      Unexpected();
      return;
    }
    do {
      const int column = Column();
      if (column < 0) return;
      const bool descending = TakeWord("desc");
      if (!descending) TakeWord("asc");
      m_query.order.push_back({static_cast<std::size_t>(column), descending});
    } while (TakeSymbol(","));
  }

  const std::vector<dbQueryElement>& m_elements;
  const RowPlan& m_plan;
  const std::string& m_table;
  ParsedQuery& m_query;
  Scanner m_scanner;
  Token m_token;
  std::string m_fault;
  int m_depth = 0;
};

std::string Shown(const std::vector<dbQueryElement>& elements) {
  std::string text;
  for (const dbQueryElement& element : elements) {
    text += element.type == dbQueryElement::qExpression ? element.text : " ? ";
  }
  return text;
}

}  // namespace

Status ParseQuery(const std::vector<dbQueryElement>& elements, const RowPlan& plan, const std::string& table,
                  ParsedQuery& query) {
  const std::string fault = Parser(elements, plan, table, query).Parse();
  if (fault.empty()) return {};
  return Status::Error(dbErrors::QueryError, "query \"" + Shown(elements) + "\": " + fault);
}

}  // namespace dtsdb::internal::rtdb
