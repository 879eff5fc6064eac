// Format strings as a description file may supply them ("%n", "%s",
// too many placeholders, huge widths), with random strings and numbers as
// arguments. The formatter either fills the format or refuses it with a
// reason and leaves the output untouched; it never reads an argument that
// was not passed.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/AFormatter.h"
#include "fuzz/FuzzCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ppdforge;
  FuzzedDataProvider input(data, size);
  const AQVString format(input.ConsumeRandomLengthString(256));
  const bool allowCString = input.ConsumeBool();
  std::vector<AFormatter::Argument> arguments;
  const int count = input.ConsumeIntegralInRange<int>(0, 4);
  for (int i = 0; i < count; ++i) {
    switch (input.ConsumeIntegralInRange<int>(0, 2)) {
      case 0: arguments.emplace_back(AQVString(input.ConsumeRandomLengthString(64))); break;
      case 1: arguments.emplace_back(input.ConsumeIntegral<long long>()); break;
      default: arguments.emplace_back(input.ConsumeFloatingPoint<double>()); break;
    }
  }
  const AQVString untouched("untouched");
  AQVString out = untouched;
  AQVString problem;
  const bool formatted = AFormatter::Format(format, arguments, out, &problem, allowCString);
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(out.UTF8()));
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(problem.UTF8()));
  if (formatted) {
    PPDFORGE_FUZZ_CHECK(problem.IsEmpty());
  } else {
    PPDFORGE_FUZZ_CHECK(out == untouched);
    PPDFORGE_FUZZ_CHECK(!problem.IsEmpty());
  }
  // The trusted form falls back to the format itself.
  const AQVString trusted = AFormatter::FormatTrusted(format, arguments);
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(trusted.UTF8()));
  return 0;
}
