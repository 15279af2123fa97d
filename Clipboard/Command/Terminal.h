#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <optional>

/// Standard input and output.
namespace Clipboard::Command::Terminal {

/// Whether somebody can be asked.
[[nodiscard]] bool isInput();
/// Whether somebody looks at the output, instead of another program.
[[nodiscard]] bool isOutput();
/// Whether the terminal may be coloured (https://no-color.org).
[[nodiscard]] bool hasColor();
/// The letters of a line; 0 when nobody looks at it.
[[nodiscard]] qsizetype columns();

/// Everything up to the end, of standard input if not of another file; nothing when that is more than `limit` bytes or
/// cannot be read.
[[nodiscard]] std::optional<QByteArray> readAll(qint64 limit, int file = 0);
/// The next line of standard input without its end; nothing at the end.
[[nodiscard]] std::optional<QString> readLine();

/// False when it cannot be written.
[[nodiscard]] bool write(QByteArrayView bytes);
/// One line of text, out at once.
[[nodiscard]] bool printLine(QStringView line);
/// To standard error, as "tessaly: …".
void complain(QStringView text);

} // namespace Clipboard::Command::Terminal
