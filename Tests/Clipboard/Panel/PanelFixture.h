#pragma once

#include "Fakes.h"
#include "FloatingPanel.h"
#include "IconCache.h"
#include "Motion.h"
#include "PanelView.h"
#include "SearchField.h"
#include "Theme.h"
#include "Thumbs.h"
#include "ViewModelFixture.h"

#include <QTest>

namespace Clipboard::Testing {

/// A panel over a view model, on a desktop that is faked. Keys go through its native window, as a user's do.
struct PanelFixture : ViewModelFixture
{
    FakeWindowSystem windows;
    FakeWorkspace workspace;
    IconCache icons{workspace};
    Thumbs thumbs;
    QList<QAction*> programMenu;
    FloatingPanel panel{{model, windows, workspace, thumbs, [this] { return programMenu; }}};

    PanelFixture() { Motion::setReduced(true); }

    /// Opens the panel and waits until it has the keyboard.
    [[nodiscard]] bool open()
    {
        model.panelWillShow(std::nullopt);
        panel.setPanelGeometry({60, 40, Theme::panelWidth, Theme::panelHeight});
        panel.open();
        return QTest::qWaitForWindowActive(&panel, patience) && QTest::qWaitForWindowExposed(&panel, patience);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(panel.windowHandle(), key, modifiers);
    }
    void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(panel.windowHandle(), character.toLatin1());
    }
    [[nodiscard]] PanelView* view() const { return panel.findChild<PanelView*>(); }
    [[nodiscard]] QString typed() const { return view()->activeField()->text(); }
    /// The colour at a place of the panel, its shadow's margin aside.
    [[nodiscard]] QColor colorAt(const QPoint& place) const
    {
        return view()->window()->grab().toImage().pixelColor(view()->mapTo(&panel, place));
    }
    [[nodiscard]] QRect frame(const ClipboardCore::FocusKey& key) const { return model.frames.value(key).toRect(); }
    /// An action that copies its own label.
    [[nodiscard]] static ClipboardCore::SmartAction action(const QString& label)
    {
        using namespace ClipboardCore;
        return {label, [label] { return SmartActionResult{{SmartActionEffect::Kind::copy, label}, label}; }};
    }
    [[nodiscard]] QStringList numbered(int count) const
    {
        QStringList texts;
        for (int i = 0; i < count; ++i)
            texts.append(QStringLiteral("entry %1").arg(i));
        return texts;
    }
};

} // namespace Clipboard::Testing
