#include "LayerLog.h"

#include <algorithm>

namespace Clipboard::Testing {

namespace {

// Other windows have numbers of their own.
constexpr quint32 layers = 0x80000000;

} // namespace

void LayerLog::take(const QByteArray& words)
{
    const QByteArrayList all = words.split(' ');
    const quint32 id = layers | all.value(1).toUInt();
    const auto hasID = [id](const Desktop::Window& window) { return window.id == id; };
    if (all.first() == "focused") {
        m_focused = id;
        return;
    }
    if (all.first() != "shown" && m_focused == id)
        m_focused = 0;
    if (all.first() == "unfocused")
        return;
    m_shown.removeIf(hasID);
    if (all.first() == "shown")
        show(all);
}

/// "shown", its number, whether it takes the keyboard, four numbers of its place and its title, which may have blanks.
void LayerLog::show(const QByteArrayList& words)
{
    const auto number = [&words](qsizetype at) { return words.value(at).toInt(); };
    m_shown.append({layers | words.value(1).toUInt(), QRect(number(3), number(4), number(5), number(6)),
                    QString::fromUtf8(words.mid(7).join(' ')), words.value(2) == "without-keyboard"});
}

std::optional<Desktop::Window> LayerLog::focused() const
{
    const auto found = std::ranges::find(m_shown, m_focused, &Desktop::Window::id);
    return found == m_shown.end() ? std::nullopt : std::optional(*found);
}

} // namespace Clipboard::Testing
