#pragma once
// `ppdforge generate PRODUCT... [-o OUTPUT] [--strings BUNDLE]...
// [--main-language LANG] [--languages LANG,LANG,...]`: writes the PPD of
// one product description, or of several into the directory OUTPUT
// (tools/ABatchGenerate.h).

#include <functional>
#include <string>
#include <vector>

#include "tools/AArena.h"
#include "tools/ICommand.h"

namespace CLI {
class App;
}

namespace ppdforge {

class AGenerateCommand final : public ICommand {
 public:
  // Adds the "generate" sub-command with its options to `program`, which
  // must outlive this object.
  explicit AGenerateCommand(CLI::App& program);

  bool WasSelected() const override;
  // Loads the product (2 when it is unreadable or invalid), builds and
  // localizes the PPD (1 with the library's error line when that fails) and
  // writes it to the output, atomically, or to `out` (1 when writing fails).
  // Messages and warnings go to `err`.
  // Several products, or an existing directory as the output, run the
  // batch: one PPD per product in that directory, on all cores.
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  // One product into `output` (a file; `out` when empty), as Run describes.
  // `alone`: the only generation of the process, which then writes the
  // document on all cores and keeps it in memory until the process ends (a
  // batch already uses every core, and frees each product as it goes).
  int Generate(const std::string& product, const std::string& output, std::ostream& out,
               std::ostream& err, bool alone) const;
  // What the pool's idle helper does during a single generation: it reads
  // the requested languages' string tables ahead.
  std::function<bool()> IdleWork() const;

  CLI::App* command_ = nullptr;
  std::vector<std::string> products_;
  std::string output_;
  std::vector<std::string> bundles_;
  std::string mainLanguage_;
  std::vector<std::string> languages_;
};

}  // namespace ppdforge
