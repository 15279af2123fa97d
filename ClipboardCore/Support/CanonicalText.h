#pragma once

#include <QByteArrayView>
#include <QHashFunctions>

/// Texts compared by canonical equivalence (UAX #15): two texts are equal when their canonical decompositions are.
namespace ClipboardCore::CanonicalText {

/// Costs a byte comparison, plus the decomposition of what follows the first difference when that is not plain.
[[nodiscard]] bool equal(QByteArrayView a, QByteArrayView b);

/// How much of each end of a text its key sees, in code points of the decomposition.
inline constexpr size_t keyWindow = 256;

/// A number that is the same for equal texts. It is made of the first and last `keyWindow` code points of the
/// decomposition, so it costs the same for every size; texts that differ only in between share a key.
[[nodiscard]] size_t key(QByteArrayView text, size_t seed = 0);

} // namespace ClipboardCore::CanonicalText
