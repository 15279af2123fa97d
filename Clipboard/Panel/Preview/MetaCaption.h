#pragma once

#include "History/ClipItem.h"

#include <QCache>
#include <QIcon>
#include <QThreadPool>
#include <QWidget>

#include <optional>

namespace Clipboard {

/// One line about an entry: its source, its age and its size. What takes time to find out appears when it is known;
/// what the disk says of a file is looked at again each time that the entry is shown.
class MetaCaption final : public QWidget
{
    Q_OBJECT
public:
    static constexpr int height = 16;

    explicit MetaCaption(QWidget* parent);
    ~MetaCaption() override;

    void setItem(const ClipboardCore::ClipItem& item);
    /// The parts as they are known now: source, age, and what the type adds.
    [[nodiscard]] QStringList parts() const;

signals:
    void partsChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void findDetails();
    void keepDetails(const QUuid& id, const QStringList& found);
    void sync();
    void paintIcon(QPainter& painter) const;

    std::optional<ClipboardCore::ClipItem> m_item;
    QIcon m_icon;
    QCache<QUuid, QStringList> m_details;
    QThreadPool m_pool;
};

} // namespace Clipboard
