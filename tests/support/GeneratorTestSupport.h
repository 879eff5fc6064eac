#pragma once
// What the generator, facade and tool tests share: product descriptions built
// in a line (and as property-list bytes), and a fixture base that owns a fake
// product and an engine over it, runs object generators by class name and
// renders what they wrote.

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/AError.h"
#include "core/ASharedObject.h"
#include "core/AValue.h"
#include "engine/IPPDGenerator.h"
#include "engine/IPPDObjectGenerator.h"
#include "model/IPPD.h"
#include "support/FakeProductInfo.h"

namespace ppdforge::testing {

using Entries = std::initializer_list<std::pair<const char*, AValue>>;

// A dictionary holding `entries` (a later entry with the same key wins).
ADictionary Dict(Entries entries);

// "domain/code: message", so that a failed comparison shows the whole error.
std::string Describe(const AError& error);

// The strings of `array`, an empty string for each element that is not one.
std::vector<std::string> Strings(const AArray& array);

// A string value's text, else the value's integer as digits: a row label for table tests.
std::string ValueLabel(const AValue& value);

// A media entry of `width` by `height` points with `margin` points on every
// side, as the "QVPaperInfo" setting lists them.
ADictionary MediaSize(const char* ppdName, const char* name, double width, double height, double margin);

// A product setting value: {"name", "userName"}.
ADictionary SettingValue(const char* name, const char* userName);

// A product setting offering `values`, with "defaultChoice" unless it is null.
ADictionary Setting(const AArray& values, const char* defaultChoice = nullptr);

// An explicit choice of an option description; the name defaults to the id.
ADictionary Choice(const char* id, const char* name = nullptr, const char* code = "");

// A product root with the four generation descriptions empty and `media` as
// the "QVPaperInfo" setting ("defaultChoice" unless null).
ADictionary ProductRoot(const AArray& media, const char* defaultChoice = nullptr);

// ProductRoot with one A4 media of 12-point margins, the default: enough for
// the engine to make a document that a test then fills generator by generator.
ADictionary MinimalProductRoot();

// Sets `dictionaryKey`.`key` of `root` to `value`, making the inner dictionary when absent.
void SetNested(ADictionary& root, const char* dictionaryKey, const char* key, const AValue& value);

// `root` with the value at the key path `path` ("a.b[2].c") replaced; a
// missing last dictionary key is added. A path that does not fit fails the test.
ADictionary WithValue(const ADictionary& root, const std::string& path, const AValue& value);

// A product that generates: the attributes PPD-Adobe and LanguageVersion,
// CUPS 1.2 and one A4 media size without margins.
ADictionary SmallProduct();

// The PPD text the library makes of the product `root`; "" when it makes none.
std::string LibraryText(const ADictionary& root);

// `value` written as an XML or a binary property list.
std::string PropertyListBytes(const AValue& value, bool binary);

// The generator registered as `className` (exact name) initialised with
// `engine` and `description`; owned by the caller, null for an unknown name.
AScopedRef<IPPDObjectGenerator> CreateGenerator(const char* className, IPPDGenerator* engine,
                                                const ADictionary& description);
// The same, seen as T; null (and nothing kept) when the class is not a T.
template <class T>
AScopedRef<T> CreateGenerator(const char* className, IPPDGenerator* engine, const ADictionary& description) {
  AScopedRef<IPPDObjectGenerator> made = CreateGenerator(className, engine, description);
  T* typed = dynamic_cast<T*>(made.get());
  if (typed == nullptr) return AScopedRef<T>();
  made.release();
  return AScopedRef<T>(typed);
}

// What running one generator the way the engine runs it gave.
struct GeneratorRun {
  bool made = false;        // the class name is registered
  bool applicable = false;  // IsApplicable answered true
  bool generated = false;   // Generate ran and succeeded
  AError error;             // as Generate left it, unless the caller gave its own
};

// A fixture base owning a FakeProductInfo and an engine over it; both are
// released with the fixture (or when replaced), so the leak check balances.
class GeneratorTestSupport : public ::testing::Test {
 protected:
  // Replaces the product and the engine with new ones over `root`; the
  // engine has not run yet, so Doc() is null until RunEngine.
  void MakeEngine(ADictionary root = {});
  // Runs every phase of the engine; the failure carries the error message.
  // The error goes to *error when given.
  ::testing::AssertionResult RunEngine(AError* error = nullptr);
  // MakeEngine then RunEngine.
  ::testing::AssertionResult StartEngine(ADictionary root = {});

  // The engine and its document (borrowed; null before MakeEngine / the first run).
  IPPDGenerator* Engine() const { return engine_.get(); }
  IPPD* Doc() const { return engine_ ? engine_->GetPPD() : nullptr; }
  // The product's root dictionary, which the engine reads on every run.
  ADictionary& Root() { return product_->Root(); }

  // Sets "options".`name` (a product setting) or "features".`key` of the product.
  void SetSetting(const char* name, const ADictionary& setting);
  void SetFeature(const char* key, const AValue& value);

  // CreateGenerator with this fixture's engine.
  AScopedRef<IPPDObjectGenerator> MakeGenerator(const char* className, const ADictionary& description) const {
    return CreateGenerator(className, Engine(), description);
  }
  template <class T>
  AScopedRef<T> MakeGenerator(const char* className, const ADictionary& description) const {
    return CreateGenerator<T>(className, Engine(), description);
  }

  // Makes the generator and runs Generate only when it is applicable, as the
  // engine does; an unknown class name is a test failure. Generate reports
  // into *error when given, else into the result's error.
  GeneratorRun RunGenerator(const char* className, const ADictionary& description, AError* error = nullptr) const;
  // Whether the generator is made and applicable.
  bool IsApplicable(const char* className, const ADictionary& description = {}) const;
  // Makes the generator and runs Generate without asking whether it applies;
  // false (and a test failure) for an unknown class name.
  bool GenerateAnyway(const char* className, const ADictionary& description = {}, AError* error = nullptr) const;

  // Adds a PickOne option `id` with `choices` (ids and names alike, no code)
  // to the group `groupID`, which is made when the document has none.
  void AddPickOneOption(const char* groupID, const char* id, const std::vector<const char*>& choices,
                        const char* defaultChoice = "");

  // The whole document text; a rendering error message is appended so that it shows.
  std::string RenderDocument() const;
  // The text of option `id` and its rendering error, or "<no option>".
  std::string OptionText(const char* id) const;
  // Every constraint of the document, each text and its error followed by a line feed.
  std::string ConstraintsText() const;

 private:
  struct EngineReleaser {
    void operator()(IPPDGenerator* engine) const { ReleaseObject(engine); }
  };
  std::shared_ptr<FakeProductInfo> product_;
  std::unique_ptr<IPPDGenerator, EngineReleaser> engine_;
};

}  // namespace ppdforge::testing
