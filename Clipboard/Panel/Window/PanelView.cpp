#include "PanelView.h"

#include "ClipItemTexts.h"
#include "CommandSheet.h"
#include "EmptyView.h"
#include "FileKinds.h"
#include "FilterChips.h"
#include "FrameReport.h"
#include "HistoryList.h"
#include "HistoryViewModel.h"
#include "PanelFooter.h"
#include "PanelHeader.h"
#include "PreviewPane.h"
#include "SearchField.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>

#include <chrono>
#include <utility>

namespace Clipboard {

namespace {

// Ages are whole minutes; half of one is never far off.
constexpr std::chrono::seconds ageRefresh{30};
constexpr int seam = 1;
constexpr int outline = 1;

} // namespace

PanelView::PanelView(HistoryViewModel& viewModel, const Workspace& workspace, Thumbs& thumbs,
                     std::function<QList<QAction*>()> programMenu, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_files(new FileKinds(this))
    , m_header(new PanelHeader(viewModel, this))
    , m_list(new HistoryList(viewModel, thumbs, *m_files, this))
    , m_preview(new PreviewPane(viewModel, {workspace, thumbs, *m_files}, this))
    , m_empty(new EmptyView(this))
    , m_footer(new PanelFooter(this))
    , m_sheet(new CommandSheet(viewModel, thumbs, *m_files, this))
    , m_menus(viewModel, std::move(programMenu), this)
{
    m_ages.setInterval(ageRefresh);
    connect(&m_ages, &QTimer::timeout, this, &PanelView::refreshAges);
    connect(m_list, &HistoryList::dragFinished, this, &PanelView::dragFinished);
    connect(m_list, &HistoryList::menuRequested, this,
            [this](const QPoint& place) { openEntryMenu(m_list->mapTo(this, place)); });
    connect(m_footer, &PanelFooter::menuRequested, this, &PanelView::openProgramMenu);
    connectViewModel();
    m_viewModel.searchCaret = [this]() -> std::optional<HistoryViewModel::SearchCaret> {
        const SearchField* field = m_header->searchField();
        if (!field->hasFocus())
            return std::nullopt;
        return HistoryViewModel::SearchCaret{field->cursorPosition(), field->selectionLength(), field->text().size()};
    };
}

PanelView::~PanelView()
{
    m_viewModel.searchCaret = nullptr;
}

void PanelView::connectViewModel()
{
    const HistoryViewModel* model = &m_viewModel;
    connect(model, &HistoryViewModel::visibleChanged, this, [this] { changed(entries); });
    connect(model, &HistoryViewModel::selectedIDChanged, this, [this] { changed(selection); });
    connect(model, &HistoryViewModel::focusChanged, this, [this] { changed(state); });
    connect(model, &HistoryViewModel::queryChanged, this, [this] { changed(state); });
    connect(model, &HistoryViewModel::filterChanged, this, [this] { changed(state); });
    connect(model, &HistoryViewModel::countsChanged, this, [this] { changed(state); });
    connect(model, &HistoryViewModel::cmdkOpenChanged, this, [this] { changed(state | keyboard | sheet); });
    connect(model, &HistoryViewModel::cmdkIndexChanged, this, [this] { changed(sheet); });
    connect(model, &HistoryViewModel::cmdkQueryChanged, this, [this] { changed(sheet); });
    connect(model, &HistoryViewModel::focusTokenChanged, this, [this] { changed(keyboard); });
    connect(model, &HistoryViewModel::qrPreviewChanged, this, [this] { changed(selection); });
    connect(model, &HistoryViewModel::noticeChanged, this, [this] { changed(notice); });
    connect(model, &HistoryViewModel::smartActionsChanged, this, [this] { changed(actions); });
    connect(model, &HistoryViewModel::previewScrolled, m_preview, &PreviewPane::scroll);
    connect(m_preview, &PreviewPane::framesChanged, this, [this] { changed(places); });
}

void PanelView::changed(unsigned what)
{
    m_changed |= what;
    if (m_syncPending || !isVisible())
        return;
    m_syncPending = true;
    QMetaObject::invokeMethod(this, &PanelView::sync, Qt::QueuedConnection);
}

void PanelView::sync()
{
    m_syncPending = false;
    const unsigned what = std::exchange(m_changed, 0U);
    if (what == 0)
        return;
    if (what & entries)
        syncEntries();
    if (what & (entries | selection)) {
        m_list->syncSelection((what & entries) == 0 && isVisible());
        m_preview->syncItem();
    }
    if (what & actions)
        m_preview->syncActions();
    m_header->sync();
    m_preview->syncFocus();
    if (what & state)
        m_list->refreshSelectedRow();
    if (what & notice)
        m_footer->setNotice(m_viewModel.notice());
    if (what & (sheet | entries | selection | actions))
        m_sheet->sync(); // it follows its entry
    if (what & keyboard)
        activeField()->setFocus(Qt::OtherFocusReason);
    publishFrames();
    m_list->announceFocus();
}

void PanelView::syncEntries()
{
    m_list->reload();
    m_footer->setCount(m_viewModel.visible().size());
    const bool isEmpty = m_viewModel.visible().isEmpty();
    m_list->setVisible(!isEmpty);
    m_preview->setVisible(!isEmpty);
    // What the search may yet find is not said to be missing.
    const bool isKnownEmpty = isEmpty && !m_viewModel.isSearching();
    if (isKnownEmpty)
        syncEmptyView();
    m_empty->setVisible(isKnownEmpty);
    if (m_isEmpty != isEmpty)
        update();
    m_isEmpty = isEmpty;
}

void PanelView::syncEmptyView()
{
    if (!m_viewModel.query().isEmpty())
        m_empty->setContent(
            {QLatin1String("search"), tr("No Results"), tr("Nothing matches “%1”").arg(m_viewModel.query())});
    else if (const auto filter = m_viewModel.filter())
        m_empty->setContent(
            {Theme::typeIcon(*filter), meta(*filter).label, tr("Nothing of this type has been copied yet.")});
    else
        m_empty->setContent({QLatin1String("clipboard"), tr("Nothing Copied Yet"),
                             tr("Copy something — it will show up here."), m_viewModel.welcome});
}

void PanelView::publishFrames()
{
    QHash<ClipboardCore::FocusKey, QRectF> frames;
    m_header->chips()->addFrames(frames, this);
    if (!m_isEmpty) {
        m_list->addFrames(frames, this);
        m_preview->addFrames(frames, this);
    }
    m_viewModel.frames = std::move(frames);
}

SearchField* PanelView::activeField() const
{
    return m_viewModel.cmdkOpen() ? m_sheet->filterField() : m_header->searchField();
}

bool PanelView::handleMenuKey(const QKeyEvent& event)
{
    if (m_menus.handleKey(event))
        return true;
    const bool isForEntry =
        event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
    const bool isForProgram = event.key() == Qt::Key_F10 && event.modifiers() == Qt::NoModifier;
    if (m_viewModel.cmdkOpen() || !(isForEntry || isForProgram))
        return false;
    const auto selected = m_viewModel.selectedID();
    if (isForProgram)
        openProgramMenu();
    else if (selected)
        openEntryMenu(m_viewModel.frames.value(ClipboardCore::FocusKey::row(*selected)).center().toPoint());
    return true;
}

void PanelView::openProgramMenu()
{
    m_menus.openProgramMenu(m_footer->menuAnchor().translated(m_footer->pos()));
}

void PanelView::openEntryMenu(const QPoint& place)
{
    m_menus.openEntryMenu({place, QSize(1, 1)});
}

void PanelView::setCornerRadius(int radius)
{
    m_sheet->setCornerRadius(radius);
}

bool PanelView::isDragging() const
{
    return m_list->isDragging();
}

QString PanelView::selectedPreviewText() const
{
    return m_isEmpty ? QString() : m_preview->selectedText();
}

QRect PanelView::contentRect() const
{
    return {0, Theme::headerHeight, width(), height() - Theme::headerHeight - Theme::footerHeight};
}

void PanelView::resizeEvent(QResizeEvent* event)
{
    const QRect content = contentRect();
    m_header->setGeometry(0, 0, width(), Theme::headerHeight - seam);
    m_list->setGeometry(0, content.top(), Theme::listWidth - seam, content.height());
    m_preview->setGeometry(Theme::listWidth, content.top(), width() - Theme::listWidth - outline, content.height());
    m_empty->setGeometry(content);
    m_footer->setGeometry(0, content.bottom() + 1 + seam, width(), Theme::footerHeight - seam);
    m_sheet->setGeometry(rect());
    changed(selection | state | sheet);
    QWidget::resizeEvent(event);
}

void PanelView::showEvent(QShowEvent* event)
{
    m_files->refresh();
    sync(); // parts that were hidden have their sizes only now
    m_ages.start();
    QWidget::showEvent(event);
}

void PanelView::hideEvent(QHideEvent* event)
{
    m_ages.stop();
    m_menus.close();
    QWidget::hideEvent(event);
}

void PanelView::refreshAges()
{
    m_list->refreshRows();
    m_preview->update();
}

void PanelView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRect content = contentRect();
    const int seamWidth = width() - 2 * outline;
    painter.fillRect(outline, content.top() - seam, seamWidth, seam, Theme::seam);
    painter.fillRect(outline, content.bottom() + 1, seamWidth, seam, Theme::seam);
    if (!m_isEmpty)
        painter.fillRect(Theme::listWidth - seam, content.top(), seam, content.height(), Theme::seam);
    reportFrame(this, "panel-painted");
}

} // namespace Clipboard
