#pragma once
// `ppdforge generate PRODUCT [-o OUTPUT] [--strings BUNDLE]...
// [--main-language LANG] [--languages LANG,LANG,...]`: writes the PPD of
// one product description.

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
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  CLI::App* command_ = nullptr;
  std::string product_;
  std::string output_;
  std::vector<std::string> bundles_;
  std::string mainLanguage_;
  std::vector<std::string> languages_;
};

}  // namespace ppdforge
