#pragma once

#include <QByteArrayView>

/// Whether a piece of an XML document is well-formed by itself (XML 1.0, fifth edition; numbers are those of its
/// productions). A piece comes with its delimiters, which are known to be there, and is well-formed UTF-8. Each byte is
/// looked at a fixed number of times.
namespace ClipboardCore::XMLSyntax {

/// Which entities a document may refer to.
enum class Entities {
    predefined, // &lt; &gt; &amp; &apos; &quot;
    any,        // for a document type that may declare more, here or elsewhere
};

[[nodiscard]] bool isBlank(char c);                                         // 3
[[nodiscard]] bool hasOnlyCharacters(QByteArrayView document);              // 2; the pieces below take it for granted
[[nodiscard]] bool isText(QByteArrayView text, Entities entities);          // 14 and 67: what is between markup
[[nodiscard]] bool isComment(QByteArrayView comment);                       // 15
[[nodiscard]] bool isInstruction(QByteArrayView instruction);               // 16
[[nodiscard]] bool isDeclaration(QByteArrayView declaration);               // 23
[[nodiscard]] bool isOpeningTag(QByteArrayView tag, Entities entities);     // 40 and 44
[[nodiscard]] bool isPair(QByteArrayView openTag, QByteArrayView closeTag); // 42, of the same name

} // namespace ClipboardCore::XMLSyntax
