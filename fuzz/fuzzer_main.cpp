// One target as libFuzzer calls it.
#include <stddef.h>
#include <stdint.h>

#include "fuzz/harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  RUN_INPUT(FUZZ_TARGETS().front(), std::string(reinterpret_cast<const char *>(data), size));
  return 0;
}
