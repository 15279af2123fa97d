#pragma once

#include "PreviewBody.h"

#include <QIcon>

namespace Clipboard {

/// A file by its icon and name.
class FileBody final : public PreviewBody
{
    Q_OBJECT
public:
    FileBody(const Workspace& workspace, QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Workspace& m_workspace;
    QIcon m_icon;
    QString m_name;
};

} // namespace Clipboard
