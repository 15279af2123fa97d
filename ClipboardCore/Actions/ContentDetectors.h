#pragma once

#include "Support/Utf8Text.h"

#include <QTimeZone>

#include <optional>

/// What a copied text is, and what it can be turned into.
///
/// Each function answers for any text: when it is not of the kind, is malformed or passes a bound, there is no result,
/// and never a part of one. All but epochDate(), slug() and strippedTrackers() refuse a text of more than `sizeLimit`
/// bytes before they look at it. "Trimmed" is without the Unicode white space at both ends; characters are those of
/// Graphemes. No regular expression is used: every test is one scan in one direction that never steps back, so no text
/// can make one slow.
namespace ClipboardCore::ContentDetectors {

/// In bytes of UTF-8, white space included: what can be parsed while somebody waits for the list of actions.
inline constexpr qsizetype sizeLimit = qsizetype(256) * 1024;

/// No pretty form grows beyond this: deep nesting can make indentation a thousand times the text.
inline constexpr qsizetype resultLimit = 32 * sizeLimit;

/// A JSON object or array (RFC 8259), one member or element a line, indented by two blanks. Members are ordered by the
/// code points of their keys; equal keys stay, in their order, so that no reader sees another value than before.
/// Numbers keep their digits; what need not be escaped is not; an escaped surrogate without its partner stays escaped.
/// Nesting deeper than 512 is no result.
[[nodiscard]] std::optional<Utf8Text> prettyJSON(const Utf8Text& text);
/// The same without any white space between tokens.
[[nodiscard]] std::optional<Utf8Text> minifiedJSON(const Utf8Text& text);

/// The text in a Base64 text (RFC 4648, section 4) of at least 8 characters, padding included; not empty.
[[nodiscard]] std::optional<Utf8Text> base64Decoded(const Utf8Text& text);

/// `text`, not trimmed, with its percent escapes (RFC 3986, section 2.1) replaced; it has at least one, and none that
/// is malformed. "+" stays.
[[nodiscard]] std::optional<Utf8Text> urlDecoded(const Utf8Text& text);

/// A Unix time of 10 digits (seconds) or 13 (milliseconds), from 2001 to 2099, as an RFC 3339 time to the second in
/// `timeZone`. A time zone that is not valid counts as UTC.
[[nodiscard]] std::optional<QString> epochDate(const Utf8Text& text, const QTimeZone& timeZone);

/// The claims of a JSON Web Token (RFC 7519), as prettyJSON() writes them. Neither the header nor the signature is
/// looked at.
[[nodiscard]] std::optional<Utf8Text> jwtPayload(const Utf8Text& text);

/// `text`, a URL (RFC 3986; letters of other scripts may stand unescaped, RFC 3987), without the query parameters that
/// only serve to follow people. All its other bytes stay. Nothing when there is no such parameter.
[[nodiscard]] std::optional<Utf8Text> strippedTrackers(const Utf8Text& text);

/// A text of one line and at most 80 characters as lower-case words joined by hyphens; it has at least one letter.
[[nodiscard]] std::optional<Utf8Text> slug(const Utf8Text& text);

/// A well-formed XML 1.0 document, one node a line, indented by two blanks. An element with text of its own stays as it
/// is, with all that is in it, and so do comments, CDATA sections, processing instructions, the document type and every
/// tag. Entities are never expanded. More than 512 open elements are no result.
[[nodiscard]] std::optional<Utf8Text> formattedXML(const Utf8Text& text);

} // namespace ClipboardCore::ContentDetectors
