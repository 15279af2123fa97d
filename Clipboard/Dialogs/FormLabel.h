#pragma once

#include "Fonts.h"

#include <QLabel>

namespace Clipboard {

/// A text of a form, which may be wrapped.
class FormLabel final : public QLabel
{
    Q_OBJECT
public:
    enum class Style { section, label, help, word };

    FormLabel(const QString& text, Style style, QWidget* parent);
};

} // namespace Clipboard
