#pragma once

#include "DialogCard.h"

namespace Clipboard {

/// Name, version, purpose and licence of the program.
class AboutDialog final : public DialogCard
{
    Q_OBJECT
public:
    /// `composited`: see WindowSystem::isCompositing().
    /// `hotKey` opens the panel, as it is shown; empty when none does.
    AboutDialog(bool composited, const QString& hotKey, QWidget* parent = nullptr);
};

} // namespace Clipboard
