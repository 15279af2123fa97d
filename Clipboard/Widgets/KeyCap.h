#pragma once

#include "Theme.h"

#include <QPointF>
#include <QSizeF>
#include <QString>

class QPainter;

/// The drawn key of hints, menus and tooltips. Its text may hold the signs ↑ ↓ ⏎ ⌫, which become drawings.
namespace Clipboard::KeyCap {

struct Look
{
    QColor fill = Theme::control;
    QColor line = Theme::controlLine;
    QColor text = Theme::text2;
};

inline constexpr Look normal{};
inline constexpr Look off{Theme::faint, Theme::controlLine, Theme::text3};
inline constexpr Look selected{Theme::kbdSel, Theme::kbdSelLine, Theme::text};
inline constexpr Look danger{Theme::dangerCap, Theme::dangerCapLine, Theme::onDanger};
inline constexpr Look tooltip{Theme::tipCap, Theme::tipCapLine, Theme::tipCapText};

[[nodiscard]] QSizeF size(const QString& keys);
void draw(QPainter& painter, const QPointF& topLeft, const QString& keys, const Look& look = normal);

} // namespace Clipboard::KeyCap
