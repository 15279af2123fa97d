#pragma once

#include <QByteArrayView>

/// Percent escapes (RFC 3986, section 2.1).
namespace ClipboardCore::PercentEscapes {

/// True when two hexadecimal digits follow every percent sign.
[[nodiscard]] bool areWellFormed(QByteArrayView text);

} // namespace ClipboardCore::PercentEscapes
