#pragma once

#include <QProxyStyle>

namespace Clipboard {

/// The toolkit's built-in style without what the program draws itself.
class ProgramStyle final : public QProxyStyle
{
    Q_OBJECT
public:
    ProgramStyle();

    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace Clipboard
