#pragma once

#include <QtGlobal>

#include <functional>

namespace Clipboard {

/// Ends the program in order when its display is gone, as it is at the end of most sessions: the toolkit would leave at
/// once, or through exit(), where objects that are needed may have been destroyed before. Where the display comes back
/// the program starts anew. One at a time; main thread.
class DisplayLoss final
{
public:
    /// `isLost` may be asked on any thread; `save` is called on the main one, with no display any more, and then
    /// `isBack`, which may wait for one.
    DisplayLoss(std::function<bool()> isLost, std::function<void()> save, std::function<bool()> isBack);
    ~DisplayLoss();
    Q_DISABLE_COPY_MOVE(DisplayLoss)

private:
    static void hear(QtMsgType type, const QMessageLogContext& context, const QString& message);
    static void leave();

    std::function<bool()> m_isLost;
    std::function<void()> m_save;
    std::function<bool()> m_isBack;
};

} // namespace Clipboard
