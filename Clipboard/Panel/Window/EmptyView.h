#pragma once

#include "EmptyContent.h"

#include <QWidget>

namespace Clipboard {

/// What the panel shows instead of list and preview when no entry is listed. It is read out when it appears and when
/// its words change.
class EmptyView final : public QWidget
{
    Q_OBJECT
public:
    explicit EmptyView(QWidget* parent);

    void setContent(const EmptyContent& content);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    EmptyContent m_content;
};

} // namespace Clipboard
