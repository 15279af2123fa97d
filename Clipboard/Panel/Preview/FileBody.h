#pragma once

#include "FileKinds.h"
#include "PreviewBody.h"

#include <QIcon>

namespace Clipboard {

class Workspace;

/// A file or a folder by its icon and name, dimmed when it is gone.
class FileBody final : public PreviewBody
{
    Q_OBJECT
public:
    FileBody(const Workspace& workspace, FileKinds& files, QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void syncKind();

    const Workspace& m_workspace;
    FileKinds& m_files;
    QString m_path;
    FileKinds::Kind m_kind = FileKinds::Kind::unknown;
    QIcon m_icon;
    QString m_name;
};

} // namespace Clipboard
