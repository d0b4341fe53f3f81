// Any bytes are decoded without harm, and what is encoded is decoded to the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/fuzz.h"
#include "util/base64.h"

using Bytes = std::unique_ptr<char, decltype(&std::free)>;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string input(data, data + size);
  size_t length = 0;
  const Bytes decoded(DecodeBase64(input.data(), size, &length), &std::free);
  if (decoded != nullptr && length > size) std::abort();

  const Bytes text(EncodeBase64(input.data(), size, &length), &std::free);
  if (text.get()[length] != '\0') std::abort();
  const Bytes again(DecodeBase64(text.get(), length, &length), &std::free);
  if (again == nullptr || length != size || std::memcmp(again.get(), input.data(), size) != 0) std::abort();
  return 0;
}
