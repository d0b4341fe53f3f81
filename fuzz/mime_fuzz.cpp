// Any header is read within the buffers; the first two bytes give their sizes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzz.h"
#include "util/base64.h"
#include "util/files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 3) return 0;
  std::vector<char> encoding(data[0]);
  std::vector<char> name(data[1]);
  const auto encoding_size = static_cast<int>(encoding.size());
  const auto name_size = static_cast<int>(name.size());
  std::vector<char> text(data + 2, data + size);

  const Stream stream(fmemopen(text.data(), text.size(), "r"));
  if (stream == nullptr) return 0;
  if (mimeCodeReadHeader(stream.get(), encoding.data(), encoding_size, name.data(), name_size) != 0) {
    if (std::memchr(encoding.data(), 0, encoding.size()) == nullptr) std::abort();
    if (std::memchr(name.data(), 0, name.size()) == nullptr) std::abort();
  }

  text.push_back('\0');
  const char *field = std::strchr(text.data(), ':');
  if (field == nullptr) return 0;
  getValue(field, encoding.data(), encoding_size);
  getParam(field, "name", name.data(), name_size);
  return 0;
}
