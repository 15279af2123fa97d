#pragma once

#include "DialogCard.h"

namespace Clipboard {

/// Asks whether the history is to be emptied; accepted() is the consent.
class ClearHistoryDialog final : public DialogCard
{
    Q_OBJECT
public:
    /// `composited`: see WindowSystem::isCompositing().
    explicit ClearHistoryDialog(bool composited, QWidget* parent = nullptr);
};

} // namespace Clipboard
