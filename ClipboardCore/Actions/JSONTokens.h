#pragma once

#include <string_view>

/// What a fast JSON parser leaves unchecked until a value is asked for (RFC 8259, sections 6 and 7).
namespace ClipboardCore::JSONTokens {

/// True for a number, whatever its size.
[[nodiscard]] bool isNumber(std::string_view text);

/// Replaces the escapes of the string from `start` to `end`, its closing quote, in place: no escape is shorter than
/// what it stands for. A surrogate without its partner becomes three bytes in the manner of UTF-8. Returns the new end;
/// nullptr when an escape is malformed.
[[nodiscard]] char* unescape(char* start, const char* end);

} // namespace ClipboardCore::JSONTokens
