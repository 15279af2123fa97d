#pragma once

#include "Theme.h"

#include <QAbstractButton>

#include <optional>

namespace Clipboard {

/// One smart action in the command sheet.
class CommandRow final : public QAbstractButton
{
    Q_OBJECT
public:
    static constexpr int height = 38;

    /// `ordinal`: 1 to 9 for the rows that a number key runs. `tint` colours the sign.
    CommandRow(const QString& label, std::optional<int> ordinal, const QColor& tint, QWidget* parent);

    void setSelected(bool selected);

signals:
    void entered();

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;

private:
    [[nodiscard]] QString keys() const;

    std::optional<int> m_ordinal;
    QColor m_tint;
    bool m_selected = false;
};

} // namespace Clipboard
