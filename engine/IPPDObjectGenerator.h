#pragma once
// An object generator: created by class name from the registry, initialised
// with the engine and one generation description, asked whether it applies,
// and then asked to add its objects to the document.

#include <cstdint>
#include <map>
#include <string>

#include "core/ADictionary.h"
#include "core/AError.h"
#include "core/ASharedObject.h"

namespace ppdforge {

class IPPDGenerator;

class IPPDObjectGenerator {
 public:
  virtual std::int32_t Retain() = 0;
  virtual std::int32_t Release() = 0;
  // Keeps a reference on `generator` and a copy of `description` (null: empty).
  virtual void Initialize(IPPDGenerator* generator, const ADictionary* description) = 0;
  // Adds the generator's objects to the document; false with *error set on failure.
  virtual bool Generate(AError* error) = 0;
  // Whether Generate should run.
  virtual bool IsApplicable() const = 0;
  virtual ~IPPDObjectGenerator() = default;

  using Creator = IPPDObjectGenerator* (*)();
  using Factory = std::map<std::string, Creator, std::less<>>;

  // The registry of class names (filled while the library loads, read-only after).
  static Factory& GetObjectFactory();
  // The generator registered as `className` (exact, case-sensitive),
  // initialised with `generator` and `description`; owned by the caller.
  // Null for an unknown name or a failed creation.
  static IPPDObjectGenerator* Create(const AQVString& className, IPPDGenerator* generator,
                                     const ADictionary* description);
};

// Registers T under `name` at load time; the first registration of a name wins.
template <class T>
struct APPDObjectGeneratorRegistration {
  explicit APPDObjectGeneratorRegistration(const char* name) {
    IPPDObjectGenerator::GetObjectFactory().emplace(name,
                                                    &CreateRootSharedObject<IPPDObjectGenerator, T>);
  }
};

}  // namespace ppdforge

// In the generator's source file, at namespace scope inside ppdforge.
#define PPDFORGE_REGISTER_GENERATOR(Class) \
  static const ::ppdforge::APPDObjectGeneratorRegistration<Class> kRegistration##Class(#Class)
