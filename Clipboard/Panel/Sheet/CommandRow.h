#pragma once

#include "Theme.h"

#include <QAbstractButton>
#include <QByteArray>

#include <optional>

namespace Clipboard {

/// One smart action in the command sheet.
class CommandRow final : public QAbstractButton
{
    Q_OBJECT
public:
    static constexpr int height = 38;

    /// `label`: of the action. `ordinal`: 1 to 9 for the rows that a number key runs. `tint` colours the symbol.
    CommandRow(const QString& label, std::optional<int> ordinal, const QColor& tint, QWidget* parent);

    void setSelected(bool selected);

signals:
    /// The pointer has moved over the row, not the row under a pointer that rests.
    void pointedAt();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QString keys() const;

    QByteArray m_icon;
    std::optional<int> m_ordinal;
    QColor m_tint;
    bool m_selected = false;
};

} // namespace Clipboard
