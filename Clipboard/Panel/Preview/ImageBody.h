#pragma once

#include "PreviewBody.h"

namespace Clipboard {

class Thumbs;

/// A picture, fitted into a ground of fixed height.
class ImageBody final : public PreviewBody
{
    Q_OBJECT
public:
    ImageBody(Thumbs& thumbs, QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Thumbs& m_thumbs;
    QString m_path;
};

} // namespace Clipboard
