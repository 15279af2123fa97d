#pragma once

#include "Support/Utf8Text.h"

#include <QByteArrayView>

#include <optional>

/// What the targets share. Each target is one source that defines run().
namespace Fuzzer {

/// One attempt: what `input` leads to must have the target's properties, whatever it is.
void run(QByteArrayView input);

/// Ends the program unless `holds`; the fuzzer then keeps the input.
void require(bool holds, const char* property);

/// `input` as it would have come from the clipboard.
[[nodiscard]] ClipboardCore::Utf8Text text(QByteArrayView input);

/// True when there is a result and it is these bytes. Unlike ==, which takes texts that look the same for equal.
[[nodiscard]] bool isResult(const std::optional<ClipboardCore::Utf8Text>& result, QByteArrayView bytes);

} // namespace Fuzzer
