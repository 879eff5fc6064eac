#include "engine/IPPDObjectGenerator.h"

namespace ppdforge {

IPPDObjectGenerator::Factory& IPPDObjectGenerator::GetObjectFactory() {
  // Function-local so that registrations from any translation unit find it
  // built, whatever the order of static initialisation.
  static Factory factory;
  return factory;
}

IPPDObjectGenerator* IPPDObjectGenerator::Create(const AQVString& className,
                                                 IPPDGenerator* generator,
                                                 const ADictionary* description) {
  const Factory& factory = GetObjectFactory();
  const auto found = factory.find(className.UTF8());
  if (found == factory.end()) return nullptr;
  IPPDObjectGenerator* object = found->second();
  if (object == nullptr) return nullptr;
  object->Initialize(generator, description);
  return object;
}

}  // namespace ppdforge
