#include "core/AICULibrary.h"

#include <unicode/uvernum.h>

#if defined(PPDFORGE_STATIC_PROGRAM)

namespace com_qv_print_driver_core_cpp_util_v1 {

// The program holds ICU itself (the static tool): nothing to load.
bool AICULibrary::Load(std::string*) { return true; }

}  // namespace com_qv_print_driver_core_cpp_util_v1

#else

// The forwarders below define ICU's own function names; hidden, they serve
// this library only and never stand in for ICU elsewhere (ICU's internal
// calls included).
#define U_EXPORT __attribute__((visibility("hidden")))
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/uloc.h>

#include <mutex>

#include "core/ASharedLibrary.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

// ICU's exported names carry its version ("uloc_canonicalize_72"); the
// headers rename every use, so the macro gives the name to look up.
#define PPDFORGE_ICU_NAME_TEXT(name) #name
#define PPDFORGE_ICU_NAME(name) PPDFORGE_ICU_NAME_TEXT(name)

struct Functions {
  decltype(&::uloc_canonicalize) canonicalize = nullptr;
  decltype(&::uloc_getLanguage) getLanguage = nullptr;
  decltype(&::uloc_getDisplayLanguage) getDisplayLanguage = nullptr;
  decltype(&::uloc_getDisplayName) getDisplayName = nullptr;
  decltype(&::ucnv_open) open = nullptr;
  decltype(&::ucnv_close) close = nullptr;
  decltype(&::ucnv_setToUCallBack) setToUCallBack = nullptr;
  decltype(&::UCNV_TO_U_CALLBACK_STOP) toUCallbackStop = nullptr;
  decltype(&::ucnv_resetToUnicode) resetToUnicode = nullptr;
  decltype(&::ucnv_toUChars) toUChars = nullptr;
};

struct Loaded {
  const Functions* functions = nullptr;
  std::string failure;
};

const Loaded& Load() {
  static Loaded loaded;
  static std::once_flag once;
  std::call_once(once, [] {
    ASharedLibrary shared;
    std::string& problem = loaded.failure;
    if (!shared.Open("ICU", AICULibrary::LibraryName(), "", problem)) return;
    auto* functions = new Functions();
    shared.Resolve(PPDFORGE_ICU_NAME(uloc_canonicalize), functions->canonicalize, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(uloc_getLanguage), functions->getLanguage, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(uloc_getDisplayLanguage), functions->getDisplayLanguage, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(uloc_getDisplayName), functions->getDisplayName, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(ucnv_open), functions->open, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(ucnv_close), functions->close, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(ucnv_setToUCallBack), functions->setToUCallBack, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(UCNV_TO_U_CALLBACK_STOP), functions->toUCallbackStop, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(ucnv_resetToUnicode), functions->resetToUnicode, problem);
    shared.Resolve(PPDFORGE_ICU_NAME(ucnv_toUChars), functions->toUChars, problem);
    if (!problem.empty()) {
      delete functions;
      shared.Close();
      return;
    }
    // The handle stays open for the life of the process, as the functions do.
    loaded.functions = functions;
  });
  return loaded;
}

// The loaded functions, or null after setting `status` to the failure.
const Functions* Get(UErrorCode* status) {
  const Functions* functions = Load().functions;
  if (functions == nullptr && status != nullptr && U_SUCCESS(*status)) *status = U_MISSING_RESOURCE_ERROR;
  return functions;
}

}  // namespace

bool AICULibrary::Load(std::string* problem) {
  const Loaded& loaded = com_qv_print_driver_core_cpp_util_v1::Load();
  if (loaded.functions == nullptr && problem != nullptr) *problem = loaded.failure;
  return loaded.functions != nullptr;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1

using com_qv_print_driver_core_cpp_util_v1::Functions;
using com_qv_print_driver_core_cpp_util_v1::Get;

U_CAPI int32_t U_EXPORT2 uloc_canonicalize(const char* localeID, char* name, int32_t nameCapacity,
                                           UErrorCode* err) {
  const Functions* icu = Get(err);
  return icu == nullptr ? 0 : icu->canonicalize(localeID, name, nameCapacity, err);
}

U_CAPI int32_t U_EXPORT2 uloc_getLanguage(const char* localeID, char* language, int32_t languageCapacity,
                                          UErrorCode* err) {
  const Functions* icu = Get(err);
  return icu == nullptr ? 0 : icu->getLanguage(localeID, language, languageCapacity, err);
}

U_CAPI int32_t U_EXPORT2 uloc_getDisplayLanguage(const char* locale, const char* displayLocale,
                                                 UChar* language, int32_t languageCapacity,
                                                 UErrorCode* status) {
  const Functions* icu = Get(status);
  return icu == nullptr ? 0 : icu->getDisplayLanguage(locale, displayLocale, language, languageCapacity, status);
}

U_CAPI int32_t U_EXPORT2 uloc_getDisplayName(const char* localeID, const char* inLocaleID, UChar* result,
                                             int32_t maxResultSize, UErrorCode* err) {
  const Functions* icu = Get(err);
  return icu == nullptr ? 0 : icu->getDisplayName(localeID, inLocaleID, result, maxResultSize, err);
}

U_CAPI UConverter* U_EXPORT2 ucnv_open(const char* converterName, UErrorCode* err) {
  const Functions* icu = Get(err);
  return icu == nullptr ? nullptr : icu->open(converterName, err);
}

U_CAPI void U_EXPORT2 ucnv_close(UConverter* converter) {
  // A converter exists only when ICU was loaded.
  if (converter != nullptr) Get(nullptr)->close(converter);
}

U_CAPI void U_EXPORT2 UCNV_TO_U_CALLBACK_STOP(const void* context, UConverterToUnicodeArgs* toUArgs,
                                              const char* codeUnits, int32_t length,
                                              UConverterCallbackReason reason, UErrorCode* err) {
  const Functions* icu = Get(err);
  if (icu != nullptr) icu->toUCallbackStop(context, toUArgs, codeUnits, length, reason, err);
}

U_CAPI void U_EXPORT2 ucnv_setToUCallBack(UConverter* converter, UConverterToUCallback newAction,
                                          const void* newContext, UConverterToUCallback* oldAction,
                                          const void** oldContext, UErrorCode* err) {
  const Functions* icu = Get(err);
  if (icu == nullptr) return;
  // ICU's own callback rather than the forwarder: no detour per character.
  if (newAction == &UCNV_TO_U_CALLBACK_STOP) newAction = icu->toUCallbackStop;
  icu->setToUCallBack(converter, newAction, newContext, oldAction, oldContext, err);
}

U_CAPI void U_EXPORT2 ucnv_resetToUnicode(UConverter* converter) {
  if (converter != nullptr) Get(nullptr)->resetToUnicode(converter);
}

U_CAPI int32_t U_EXPORT2 ucnv_toUChars(UConverter* cnv, UChar* dest, int32_t destCapacity, const char* src,
                                       int32_t srcLength, UErrorCode* pErrorCode) {
  const Functions* icu = Get(pErrorCode);
  return icu == nullptr ? 0 : icu->toUChars(cnv, dest, destCapacity, src, srcLength, pErrorCode);
}

#endif  // PPDFORGE_STATIC_PROGRAM

namespace com_qv_print_driver_core_cpp_util_v1 {

std::string AICULibrary::LibraryName() { return std::string("libicuuc.so.") + U_ICU_VERSION_SHORT; }

}  // namespace com_qv_print_driver_core_cpp_util_v1
