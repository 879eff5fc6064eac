#pragma once
// The kind of a statement's value: how it is written and which characters it may hold.

#include <cstdint>

namespace ppdforge {

using PPDValueType = std::int32_t;
inline constexpr PPDValueType kPPDInvocationValue = 0;  // in double quotes, '"' becomes <22>
inline constexpr PPDValueType kPPDQuotedValue = 1;      // in double quotes, stray < > escaped too
inline constexpr PPDValueType kPPDSymbolValue = 2;      // "^" then the value
inline constexpr PPDValueType kPPDStringValue = 3;      // bare
// Any other number is written bare with the characters 32..126, TAB, LF, CR.

}  // namespace ppdforge
