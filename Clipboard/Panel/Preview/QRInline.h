#pragma once

#include <QImage>
#include <QWidget>

namespace Clipboard {

class TextBlock;

/// A QR code that was made of the entry, with a line that says so.
class QRInline final : public QWidget
{
    Q_OBJECT
public:
    static constexpr int height = 184;

    explicit QRInline(QWidget* parent);

    /// A code of square modules, dark on light.
    void setImage(const QImage& image);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void paintModules(QPainter& painter) const;

    QImage m_modules; // a pixel a module
    TextBlock* m_caption;
};

} // namespace Clipboard
