#pragma once

#include "DialogCard.h"

namespace Clipboard {

/// Name, version, purpose and licence of the program.
class AboutDialog final : public DialogCard
{
    Q_OBJECT
public:
    /// `composited`: see WindowSystem::isCompositing().
    explicit AboutDialog(bool composited, QWidget* parent = nullptr);
};

} // namespace Clipboard
