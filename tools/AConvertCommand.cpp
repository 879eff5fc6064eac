#include "tools/AConvertCommand.h"

#include <CLI/CLI.hpp>

#include <ostream>

#include "core/ASharedObject.h"
#include "model/APPDReader.h"
#include "model/IPPD.h"
#include "tools/AAtomicFileWriter.h"

namespace ppdforge {

AConvertCommand::AConvertCommand(CLI::App& program) {
  command_ = program.add_subcommand(
      "convert",
      "Read a PPD file (also .ppd.gz) and write it normalised (to standard output without -o)");
  command_->add_option("INPUT", input_, "PPD file to read")->required();
  command_->add_option("-o,--output", output_, "Write the PPD to this file, replacing it atomically");
  command_->add_flag("--strict", strict_,
                     "Parse with libcups's strict conformance (as cupstestppd does) instead of the "
                     "relaxed one that CUPS uses");
}

bool AConvertCommand::WasSelected() const { return command_->parsed(); }

int AConvertCommand::Run(std::ostream& out, std::ostream& err) {
  AError error;
  AScopedRef<IPPD> ppd(APPDReader::Read(AQVString(input_), &error, strict_));
  if (!ppd) {
    PrintError(err, error);
    return 2;
  }
  AError renderError;
  const AQVString text = ppd->GetStringRepresentation(&renderError);
  if (renderError.code != 0) {
    PrintError(err, renderError);
    return 1;
  }
  const std::string& bytes = text.UTF8();
  if (output_.empty()) {
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.flush();
    if (!out) {
      err << kProgram << ": cannot write the PPD to standard output\n";
      return 1;
    }
    return 0;
  }
  std::string problem;
  if (!AAtomicFileWriter::Write(output_, bytes, &problem)) {
    err << kProgram << ": cannot write " << output_ << ": " << problem << "\n";
    return 1;
  }
  return 0;
}

}  // namespace ppdforge
