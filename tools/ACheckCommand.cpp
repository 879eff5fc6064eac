#include "tools/ACheckCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>

#include "core/ASharedObject.h"
#include "model/APPD.h"
#include "model/APPDReader.h"
#include "model/IPPD.h"

namespace ppdforge {

namespace {

bool HasError(const AError& error) { return error.code != 0; }

bool AlreadyReported(const std::vector<ACheckCommand::Failure>& failures, std::size_t from,
                     const AError& error) {
  return std::any_of(failures.begin() + static_cast<std::ptrdiff_t>(from), failures.end(),
                     [&error](const ACheckCommand::Failure& failure) { return failure.error == error; });
}

// Renders `object`; a failure is recorded under `keyword` unless an element
// checked before (from index `from` on) already reported the same error.
void Check(const IPPDObject& object, const AQVString& keyword,
           std::vector<ACheckCommand::Failure>& failures, std::size_t from) {
  AError error;
  object.GetStringRepresentation(&error);
  if (HasError(error) && !AlreadyReported(failures, from, error)) failures.push_back({keyword, error});
}

AQVString Keyword(const AQVString& main, const AQVString& option) {
  AQVString keyword = AQVString("*") + main;
  if (!option.IsEmpty()) keyword += AQVString(" ") + option;
  return keyword;
}

void CheckGroup(const IPPDGroup& group, std::vector<ACheckCommand::Failure>& failures) {
  const std::size_t first = failures.size();
  for (const IPPDGroup* subGroup : group.GetSubGroups()) CheckGroup(*subGroup, failures);
  for (const IPPDOption* option : group.GetOptions()) {
    const std::size_t optionFirst = failures.size();
    for (const IPPDChoice* choice : option->GetChoices()) {
      Check(*choice, Keyword(option->GetID(), choice->GetID()), failures, failures.size());
    }
    Check(*option, Keyword("OpenUI", "*" + option->GetID()), failures, optionFirst);
  }
  Check(group, Keyword(group.IsSubGroup() ? "OpenSubGroup" : "OpenGroup", group.GetID()), failures,
        first);
}

void CheckPaperSize(IPPDPaperSize& paperSize, std::vector<ACheckCommand::Failure>& failures) {
  const AQVString sizeType = paperSize.GetSizeType();
  for (const char* type : {kRKPPDImageableAreaSizeType, kRKPPDPaperDimensionSizeType}) {
    paperSize.SetSizeType(type);
    Check(paperSize, Keyword(type, paperSize.GetID()), failures, failures.size());
  }
  paperSize.SetSizeType(sizeType);
}

AQVString ConstraintKeyword(const IPPDConstraint& constraint) {
  if (constraint.IsCUPSUIConstraint()) return Keyword("cupsUIConstraints", constraint.GetResolver());
  return Keyword(constraint.IsNonUI() ? "NonUIConstraints" : "UIConstraints", AQVString());
}

}  // namespace

ACheckCommand::ACheckCommand(CLI::App& program) {
  command_ = program.add_subcommand(
      "check",
      "Read PPD files (also .ppd.gz) and report every statement that breaks the PPD rules");
  command_->add_option("FILE", files_, "PPD files to check")->required();
  command_->add_flag("--strict", strict_,
                     "Parse with libcups's strict conformance (as cupstestppd does) instead of the "
                     "relaxed one that CUPS uses");
}

bool ACheckCommand::WasSelected() const { return command_->parsed(); }

std::vector<ACheckCommand::Failure> ACheckCommand::CollectFailures(const IPPD& ppd) {
  std::vector<Failure> failures;
  if (const auto* document = dynamic_cast<const APPD*>(&ppd)) {
    std::vector<IPPDAttribute*> attributes;
    for (const AQVString& name : document->GetAttributeNames()) {
      document->GetAttributesWithNameAndSpec(name, nullptr, attributes);
      for (const IPPDAttribute* attribute : attributes) {
        Check(*attribute, Keyword(name, attribute->GetSpec()), failures, failures.size());
      }
    }
  }
  for (const IPPDGroup* group : ppd.GetGroups()) CheckGroup(*group, failures);
  for (IPPDPaperSize* paperSize : ppd.GetPaperSizes()) CheckPaperSize(*paperSize, failures);
  for (const IPPDConstraint* constraint : ppd.GetConstraints()) {
    Check(*constraint, ConstraintKeyword(*constraint), failures, failures.size());
  }
  Check(ppd, AQVString(), failures, 0);
  return failures;
}

int ACheckCommand::Run(std::ostream& out, std::ostream& err) {
  bool unreadable = false;
  bool failed = false;
  for (const std::string& file : files_) {
    AError error;
    AScopedRef<IPPD> ppd(APPDReader::Read(AQVString(file), &error, strict_));
    if (!ppd) {
      PrintError(err, error);
      unreadable = true;
      continue;
    }
    const std::vector<Failure> failures = CollectFailures(*ppd.get());
    if (failures.empty()) {
      out << file << ": ok\n";
      continue;
    }
    failed = true;
    for (const Failure& failure : failures) {
      out << file << ": ";
      if (!failure.keyword.IsEmpty()) out << failure.keyword.UTF8() << ": ";
      out << failure.error.domain.UTF8() << " error " << failure.error.code << ": "
          << failure.error.message.UTF8() << "\n";
    }
  }
  out.flush();
  if (unreadable) return 2;
  return failed ? 1 : 0;
}

}  // namespace ppdforge
