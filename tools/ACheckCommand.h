#pragma once
// `ppdforge check [--strict] FILE...`: reads each PPD file (plain or
// gzip-compressed) through libcups into the document model and reports every
// statement that breaks the PPD rules of the model.

#include <string>
#include <vector>

#include "core/AError.h"
#include "core/AQVString.h"
#include "tools/ICommand.h"

namespace CLI {
class App;
}

namespace ppdforge {

class IPPD;

class ACheckCommand final : public ICommand {
 public:
  // One statement that breaks a rule: the keyword it is written under
  // ("*Keyword Spec"; empty for the document as a whole) and the error.
  struct Failure {
    AQVString keyword;
    AError error;
  };

  // Adds the "check" sub-command to `program`, which must outlive this object.
  explicit ACheckCommand(CLI::App& program);

  bool WasSelected() const override;
  // For each file in order: its failures on `out` as
  // "FILE: *KEYWORD: DOMAIN error CODE: MESSAGE", or "FILE: ok"; a file that
  // cannot be read (or that libcups rejects) on `err`. Returns 2 when a file
  // could not be read, else 1 when a statement failed, else 0.
  int Run(std::ostream& out, std::ostream& err) override;

  // Every failing statement of `ppd`, each object written on its own so that
  // one failure does not hide the next: attributes, choices, options and
  // groups (their own lines), paper sizes (both geometry lines),
  // constraints, and last the document as a whole when it fails otherwise.
  static std::vector<Failure> CollectFailures(const IPPD& ppd);

 private:
  CLI::App* command_ = nullptr;
  std::vector<std::string> files_;
  bool strict_ = false;
};

}  // namespace ppdforge
