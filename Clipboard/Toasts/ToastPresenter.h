#pragma once

#include "Support/ToastText.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace Clipboard {

class ToastView;
class WindowSystem;

/// Shows short notices near the bottom of the screen where the user works, one at a time, without taking focus or
/// clicks. The composition root owns the one instance. Main thread only.
class ToastPresenter final : public QObject
{
    Q_OBJECT
public:
    explicit ToastPresenter(WindowSystem& windows, QObject* parent = nullptr);
    ~ToastPresenter() override;

    /// The instance that the composition root made; it must exist.
    [[nodiscard]] static ToastPresenter& shared();

    /// Replaces the notice that is shown, at once, and hides this one 1.9 s after its own start.
    void show(const ClipboardCore::ToastText& text);
    /// The same, but it stays until the next notice replaces it: for what has yet to end, and will say so.
    void showUntilNext(const QString& text);

    /// The notice on screen; null when there is none.
    [[nodiscard]] const ToastView* current() const { return m_view.get(); }

signals:
    void shown(const QString& text);
    void hidden();

private:
    void replace(const ClipboardCore::ToastText& text);
    void hide();

    WindowSystem& m_windows;
    std::unique_ptr<ToastView> m_view;
    QTimer m_hideTimer{this};
};

} // namespace Clipboard
