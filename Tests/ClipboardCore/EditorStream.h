#pragma once

#include <cstdint>
#include <span>

/// Plays any bytes as what a hasty user, a window and late answers do to an editor.
namespace EditorStream {

/// Whatever the bytes, certain things hold after every step. Answers with the first that did not; null when all did.
[[nodiscard]] const char* firstBroken(std::span<const std::uint8_t> bytes);

} // namespace EditorStream
