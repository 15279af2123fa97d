#pragma once

#include <QString>
#include <QWidget>

namespace Clipboard {

/// The bottom of the panel: what the keys do or what is wrong, and how many entries are listed.
class PanelFooter final : public QWidget
{
    Q_OBJECT
public:
    explicit PanelFooter(QWidget* parent);

    /// The number of entries listed; with none, the hints are dimmed.
    void setCount(qsizetype count);
    /// Stands in place of the hints, unless it is empty.
    void setNotice(const QString& notice);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString countText() const;
    void updateName();
    void paintNotice(QPainter& painter, const QRectF& band) const;
    void paintKeys(QPainter& painter, const QRectF& band) const;

    qsizetype m_count = 0;
    QString m_notice;
};

} // namespace Clipboard
