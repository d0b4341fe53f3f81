#include "util/tokens.h"

#include "util/text.h"

namespace {

// The rest of `text` after its first separator; the end of the text when there is none.
std::string_view after_separator(std::string_view text, std::string_view sep) {
  const size_t at = text.find(sep);
  return at == std::string_view::npos ? text.substr(text.size()) : text.substr(at + sep.size());
}

std::string_view without_leading(std::string_view text, std::string_view sep) {
  while (text.starts_with(sep)) text.remove_prefix(sep.size());
  return text;
}

}  // namespace

std::string_view piece_of(std::string_view text, std::string_view sep, int n) {
  if (n < 1) return "";
  if (sep.empty()) return text;
  for (int i = 1; i < n && !text.empty(); ++i) text = after_separator(text, sep);
  return text.substr(0, text.find(sep));
}

char *ctoken(char *out, int size, const char *text, const char *sep, int n) {
  cpynstr(out, piece_of(text, sep, n), size);
  return out;
}

char *UCTctoken(char *out, int size, const char *text, const char *sep, int n) {
  return ctoken(out, size, text, sep, n);
}

char *UCTtoken(char *out, int size, const char *text, const char *sep, int n) {
  return ctoken(out, size, text, sep, n);
}

int cnumtoken(const char *text, const char *sep) {
  const std::string_view separator = sep;
  std::string_view rest = text;
  if (rest.empty()) return 0;
  if (separator.empty()) return 1;
  int pieces = 1;
  for (size_t at = rest.find(separator); at != std::string_view::npos; at = rest.find(separator)) {
    rest.remove_prefix(at + separator.size());
    ++pieces;
  }
  return pieces;
}

int UCTcnumtoken(const char *text, const char *sep) { return cnumtoken(text, sep); }

char *token(char *out, int size, const char *text, const char *sep, int n) {
  const std::string_view separator = sep;
  std::string_view rest = n < 1 ? "" : text;
  if (!separator.empty()) {
    rest = without_leading(rest, separator);
    for (int i = 1; i < n && !rest.empty(); ++i) rest = without_leading(after_separator(rest, separator), separator);
  }
  cpynstr(out, piece_of(rest, separator, 1), size);
  return out;
}

int numtoken(const char *text, const char *sep) {
  const std::string_view separator = sep;
  std::string_view rest = text;
  if (separator.empty()) return rest.empty() ? 0 : 1;
  int pieces = 0;
  for (rest = without_leading(rest, separator); !rest.empty(); ++pieces) {
    rest = without_leading(after_separator(rest, separator), separator);
  }
  return pieces;
}

int UCTnumtoken(const char *text, const char *sep) { return numtoken(text, sep); }

std::string joined(std::span<const std::string> pieces, std::string_view sep) {
  std::string text;
  for (const std::string &piece : pieces) {
    if (&piece != pieces.data()) text += sep;
    text += piece;
  }
  return text;
}

std::vector<std::string_view> split_lines(std::string_view text) {
  std::vector<std::string_view> lines;
  for (size_t at = 0; at <= text.size(); at += lines.back().size() + 1) {
    lines.push_back(text.substr(at, text.find('\n', at) - at));
  }
  return lines;
}

int wp_numtoken(const char *text) {
  int words = 0;
  bool in_word = false;
  for (; *text != '\0'; ++text) {
    const bool white = is_white_space(static_cast<unsigned char>(*text));
    if (!white && !in_word) ++words;
    in_word = !white;
  }
  return words;
}
