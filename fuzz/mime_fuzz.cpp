// Any header is read within the buffers, whose sizes the first two bytes give; any bytes are decoded without harm, and
// what is encoded is decoded to the same.
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/fuzz.h"
#include "util/base64.h"

namespace {

using Bytes = std::unique_ptr<char, decltype(&std::free)>;

void read_header(std::string text, int encoding_size, int name_size) {
  std::vector<char> encoding(static_cast<size_t>(encoding_size)), name(static_cast<size_t>(name_size));
  const Stream stream(fmemopen(text.data(), text.size(), "r"));
  if (mimeCodeReadHeader(stream.get(), encoding.data(), encoding_size, name.data(), name_size) != 0) {
    expect(std::memchr(encoding.data(), 0, encoding.size()) != nullptr);
    expect(std::memchr(name.data(), 0, name.size()) != nullptr);
  }
  const char *field = std::strchr(text.c_str(), ':');
  if (field == nullptr) return;
  getValue(field, encoding.data(), encoding_size);
  getParam(field, "name", name.data(), name_size);
}

void code(const std::string &input) {
  size_t length = 0;
  const Bytes decoded(DecodeBase64(input.data(), input.size(), &length), &std::free);
  expect(decoded == nullptr || length <= input.size());
  const Bytes text(EncodeBase64(input.data(), input.size(), &length), &std::free);
  expect(text.get()[length] == '\0');
  const Bytes again(DecodeBase64(text.get(), length, &length), &std::free);
  expect(again != nullptr && std::string(again.get(), length) == input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 3) return 0;
  const std::string text = text_of_bytes(data + 2, size - 2);
  read_header(text, data[0], data[1]);
  code(text);
  return 0;
}
