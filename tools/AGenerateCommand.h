#pragma once
// `ppdforge generate PRODUCT... [-o OUTPUT] [--strings BUNDLE]...
// [--main-language LANG] [--languages LANG,LANG,...]`: writes the PPD of
// one product description, or of several into the directory OUTPUT
// (tools/ABatchGenerate.h).

#include <string>
#include <vector>

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
  // `alone`: the only generation of the process, which then keeps the
  // document in memory until the process ends (a batch frees each product
  // as it goes).
  int Generate(const std::string& product, const std::string& output, std::ostream& out,
               std::ostream& err, bool alone) const;

  CLI::App* command_ = nullptr;
  std::vector<std::string> products_;
  std::string output_;
  std::vector<std::string> bundles_;
  std::string mainLanguage_;
  std::vector<std::string> languages_;
};

}  // namespace ppdforge
