#pragma once

#include "History/ClipItem.h"

#include <QMimeData>

#include <future>
#include <memory>

namespace Clipboard {

/// An entry on its way into another program: a text as text, a file as its URL, a picture as PNG and as its file's URL.
class EntryMimeData final : public QMimeData
{
    Q_OBJECT
public:
    /// Null when the entry's file is gone.
    [[nodiscard]] static std::unique_ptr<EntryMimeData> make(const ClipboardCore::ClipItem& item);

    [[nodiscard]] QStringList formats() const override;

protected:
    [[nodiscard]] QVariant retrieveData(const QString& format, QMetaType type) const override;

private:
    EntryMimeData() = default;

    std::shared_future<QByteArray> m_picture; // read while the pointer is on its way
};

} // namespace Clipboard
