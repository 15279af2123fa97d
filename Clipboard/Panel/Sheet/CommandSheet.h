#pragma once

#include <QWidget>

class QVariantAnimation;

namespace Clipboard {

class AppearEffect;
class CommandCard;
class FileKinds;
class HistoryViewModel;
class SearchField;
class Thumbs;

/// The palette of smart actions, over the whole panel. A click beside its card closes it.
class CommandSheet final : public QWidget
{
    Q_OBJECT
public:
    CommandSheet(HistoryViewModel& viewModel, Thumbs& thumbs, FileKinds& files, QWidget* parent);

    /// Takes over whether it is open, and what it shows.
    void sync();
    [[nodiscard]] SearchField* filterField() const;

    /// The corners of the panel, which the backdrop follows.
    void setCornerRadius(int radius);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void fade();
    void showProgress(qreal progress);

    HistoryViewModel& m_viewModel;
    CommandCard* m_card;
    AppearEffect* m_effect;
    QVariantAnimation* m_animation;
    int m_cornerRadius;
    bool m_open = false; // while it fades out it is still shown
    qreal m_progress = 0;
};

} // namespace Clipboard
