/// \file
/// Identities that a stranger may choose, for tests of everything that shows, writes or reads back an identity.
#pragma once

#include <string>
#include <vector>

namespace dtsdb::test {

/// Real texts in UTF-8. None is empty, none has a zero byte: no store and no terminal takes those.
inline std::vector<std::string> NastyIdentities() {
  std::vector<std::string> all = {
      "\x01\x02\x1F",
      "\x1B[31mred\x1B[0m",
      "\x1B]0;title\x07",
      "a\nb",
      "a\r\nb",
      "a\rb",
      "a\tb",
      "\x7F",
      "\xC2\x9B"
      "31m",  // a sequence's beginning as one character
      "\"",
      "a\"b\"\"c",
      "'",
      "it's",
      "\\",
      "a\\nb",
      "<script>alert(1)</script>",
      "</style></script><!--",
      "&amp;",
      "&",
      "]]>",
      "=cmd|' /C calc'!A0",
      "+1",
      "@x",
      "-1",
      "'=1",
      "''-1",
      "\t=1",
      "../../etc/passwd",
      "/etc/passwd",
      "C:\\x",
      "\xE2\x80\xAE"
      "gnirts",  // turns the text behind it
      "a\xE2\x81\xA6"
      "b\xE2\x81\xA9",
      "a\xE2\x80\xA8"
      "b\xE2\x80\xA9",  // separators of lines and paragraphs
      "\xEF\xBB\xBFmark",
      "zero\xE2\x80\x8Bwidth",
      "$(x)",
      "`x`",
      "${HOME}",
      "%s%n%d",
      "{}",
      "{0}",
      ";rm",
      "|",
      "#",
      "# note",
      "--help",
      "a,b",
      " a ",
      "NULL",
      "nan",
      "\xF0\x9F\x94\x8C",
      "e\xCC\x81",
  };
  all.push_back(std::string(10000, 'x'));
  return all;
}

/// Bytes that are no text, neither in UTF-8 nor in GBK.
inline std::vector<std::string> NoTexts() { return {"\xFF", "\xC3", "\xED\xA0\x80x\xFF", "\x80\xFF"}; }

}  // namespace dtsdb::test
