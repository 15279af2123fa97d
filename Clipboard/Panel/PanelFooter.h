#pragma once

#include <QWidget>

namespace Clipboard {

/// The bottom of the panel: what the keys do, and how many entries are listed.
class PanelFooter final : public QWidget
{
    Q_OBJECT
public:
    explicit PanelFooter(QWidget* parent);

    /// The number of entries listed; with none, the hints are dimmed.
    void setCount(qsizetype count);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString countText() const;
    qsizetype m_count = 0;
};

} // namespace Clipboard
