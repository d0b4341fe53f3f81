#include "util/conversion.h"

#include <cstdio>
#include <cstring>

#include "util/converter.h"
#include "util/files.h"

namespace {

constexpr size_t kPieceSize = 2048;  // bytes of a piece and of its conversion, terminator included

// 1 and the converted text in `output`, or 0 when `piece` is no whole, valid text or grows too long.
int convert_piece(const Converter &converter, char *piece, char (&output)[kPieceSize]) {
  size_t piece_left = std::strlen(piece);
  char *place = output;
  size_t room = sizeof output - 1;
  if (iconv(converter.handle, &piece, &piece_left, &place, &room) == static_cast<size_t>(-1)) return 0;
  *place = '\0';
  return 1;
}

void convert_file(const char *source, const char *destination, const char *to, const char *from) {
  const Stream input(OpenAFile(source, "r"));
  if (input == nullptr) return;
  const Stream output(OpenAFile(destination, "w+"));
  const Converter converter(to, from);
  if (output == nullptr || !converter.is_open()) return;
  char piece[kPieceSize];
  char converted[kPieceSize];
  while (std::fgets(piece, sizeof piece, input.get()) != nullptr && convert_piece(converter, piece, converted)) {
    std::fputs(converted, output.get());
  }
}

}  // namespace

void saveEUC2UTF(const char *source, const char *destination) { convert_file(source, destination, "UTF-8", "EUC-JP"); }
void saveUTF2EUC(const char *source, const char *destination) { convert_file(source, destination, "EUC-JP", "UTF-8"); }
