#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QLatin1String>

#include <functional>

namespace ClipboardCore {

/// Writes compact JSON (RFC 8259) piece by piece, so that a document never is in memory as a whole.
///
/// The caller opens and closes containers in order; commas and colons come by themselves. Texts are well-formed UTF-8
/// and stay so: only what must be escaped is, and "/".
class JSONWriter final
{
public:
    using Sink = std::function<void(QByteArrayView)>;

    /// `sink` takes the bytes, some hundred kilobytes at a time.
    explicit JSONWriter(Sink sink);

    void beginArray();
    void endArray();
    void beginObject();
    void endObject();
    void key(QLatin1String name);
    void string(QByteArrayView utf8);
    /// The shortest digits that read back as the same number. `value` is finite.
    void number(double value);
    void boolean(bool value);
    /// Hands over what is still held back. To be called once, at the end.
    void finish();

    /// `utf8` as the inside of a JSON string.
    static void escape(QByteArrayView utf8, const Sink& sink);

private:
    void beginValue();
    void put(QByteArrayView bytes);

    Sink m_sink;
    QByteArray m_held;
    bool m_needsComma = false;
};

} // namespace ClipboardCore
