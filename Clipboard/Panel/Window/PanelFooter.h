#pragma once

#include <QString>
#include <QWidget>

namespace Clipboard {

class MenuButton;

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
    /// Where the menu of the button belongs, in the footer's coordinates.
    [[nodiscard]] QRect menuAnchor() const;

signals:
    void menuRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString countText() const;
    void updateName();
    void paintNotice(QPainter& painter, const QRectF& band) const;
    void paintKeys(QPainter& painter, const QRectF& band) const;

    MenuButton* m_menu;
    qsizetype m_count = 0;
    QString m_notice;
};

} // namespace Clipboard
