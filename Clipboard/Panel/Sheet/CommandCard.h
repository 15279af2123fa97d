#pragma once

#include "Actions/SmartActions.h"
#include "Surface.h"

#include <QList>
#include <QStringList>
#include <QUuid>
#include <QWidget>

namespace Clipboard {

class CommandRow;
class FileKinds;
class HistoryViewModel;
class OverlayScrollArea;
class SearchField;
class Thumbs;

/// The card of the command sheet: the entry, a filter, the matching actions and what the keys do.
class CommandCard final : public QWidget
{
    Q_OBJECT
public:
    CommandCard(HistoryViewModel& viewModel, Thumbs& thumbs, FileKinds& files, QWidget* parent);

    /// Takes over entry, filter, actions and highlight. The card is as high as they need, but not above `room`: then
    /// the actions scroll.
    void sync(int room);
    [[nodiscard]] SearchField* filterField() const { return m_filter; }

    /// The card without its shadow, in widget coordinates.
    [[nodiscard]] QRect cardRect() const;
    /// The margin that holds the shadow.
    [[nodiscard]] QMargins margins() const { return m_surface.margins(); }

protected:
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void rebuildRows(const QList<ClipboardCore::SmartAction>& actions);
    void layOut(int room);
    void paintHeader(QPainter& painter, const QRectF& band) const;
    void paintLegend(QPainter& painter, const QRectF& band) const;
    [[nodiscard]] int listHeight(int room) const;

    HistoryViewModel& m_viewModel;
    Thumbs& m_thumbs;
    FileKinds& m_files;
    Surface m_surface;
    SearchField* m_filter;
    QWidget* m_page;
    OverlayScrollArea* m_scroll;
    QUuid m_item; // whose actions the rows are
    QStringList m_labels;
    QList<CommandRow*> m_rows;
};

} // namespace Clipboard
