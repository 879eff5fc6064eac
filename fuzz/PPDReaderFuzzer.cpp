// PPD bytes through the reader behind `check` and `convert`: written to a
// temporary file (libcups reads files), opened with libcups and normalised
// into a document, which is then written. Unreadable text is refused with an
// error (code 6); a document is written as UTF-8 or fails with an error.
// With PPDFORGE_FUZZ_ROUND_TRIP set, a written document must also read back
// and write the same text again.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/ASharedObject.h"
#include "fuzz/FuzzCheck.h"
#include "model/APPDReader.h"

namespace {

using namespace ppdforge;

// A file of this process, removed at exit.
class TemporaryFile {
 public:
  explicit TemporaryFile(const char* suffix) {
    const char* directory = std::getenv("TMPDIR");
    path_ = std::string(directory != nullptr && *directory != '\0' ? directory : "/tmp") +
            "/ppdforge-fuzz-" + std::string(6, 'X') + suffix;
    const int descriptor = ::mkstemps(path_.data(), static_cast<int>(std::string(suffix).size()));
    PPDFORGE_FUZZ_CHECK(descriptor >= 0);
    ::close(descriptor);
  }
  ~TemporaryFile() { std::remove(path_.c_str()); }

  const std::string& Path() const { return path_; }

  void Write(const void* data, std::size_t size) const {
    std::FILE* file = std::fopen(path_.c_str(), "wb");
    PPDFORGE_FUZZ_CHECK(file != nullptr);
    PPDFORGE_FUZZ_CHECK(std::fwrite(data, 1, size, file) == size);
    PPDFORGE_FUZZ_CHECK(std::fclose(file) == 0);
  }

 private:
  std::string path_;
};

// The document of `path` written as text; false when it cannot be read.
bool ReadAndWrite(const std::string& path, std::string& text) {
  AError error;
  AScopedRef<IPPD> document(APPDReader::Read(AQVString(path), &error));
  if (!document) {
    PPDFORGE_FUZZ_CHECK(error.code == 6 && !error.message.IsEmpty());
    return false;
  }
  AError renderError;
  const AQVString rendered = document->GetStringRepresentation(&renderError);
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(rendered.UTF8()));
  if (!renderError.domain.IsEmpty()) {
    PPDFORGE_FUZZ_CHECK(renderError.code == 4 && !renderError.message.IsEmpty());
    return false;
  }
  text = rendered.UTF8();
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const TemporaryFile input(".ppd");
  static const TemporaryFile output(".ppd");
  static const bool roundTrip = std::getenv("PPDFORGE_FUZZ_ROUND_TRIP") != nullptr;
  const long alive = SharedObjectLiveCount().load();
  input.Write(data, size);
  std::string first;
  if (ReadAndWrite(input.Path(), first) && roundTrip) {
    output.Write(first.data(), first.size());
    std::string second;
    PPDFORGE_FUZZ_CHECK(ReadAndWrite(output.Path(), second));
    PPDFORGE_FUZZ_CHECK(second == first);
  }
  PPDFORGE_FUZZ_CHECK(SharedObjectLiveCount().load() == alive);
  return 0;
}
