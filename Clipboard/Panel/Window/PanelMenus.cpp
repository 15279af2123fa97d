#include "PanelMenus.h"

#include "HistoryViewModel.h"
#include "InlineMenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>

#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;

namespace {

// What the toolkit looks up to write the keys of the menus.
[[maybe_unused]] constexpr const char* deleteKey = QT_TRANSLATE_NOOP("QShortcut", "Del");

QString text(const char* source)
{
    return QCoreApplication::translate("PanelMenus", source);
}

/// The command with the entry that is selected by then.
auto onSelected(void (HistoryViewModel::*command)(const ClipItem&))
{
    return [command](HistoryViewModel& viewModel) {
        if (const auto item = viewModel.selectedItem())
            (viewModel.*command)(*item);
    };
}

QAction* separator()
{
    auto* action = new QAction;
    action->setSeparator(true);
    return action;
}

} // namespace

PanelMenus::PanelMenus(HistoryViewModel& viewModel, std::function<QList<QAction*>()> program, QWidget* panel)
    : m_viewModel(viewModel)
    , m_program(std::move(program))
    , m_panel(panel)
{
}

void PanelMenus::openProgramMenu(const QRect& anchor)
{
    close();
    if (m_program)
        m_menu = new InlineMenu(m_program(), anchor, m_panel);
}

void PanelMenus::openEntryMenu(const QRect& anchor)
{
    close();
    if (!m_viewModel.selectedItem())
        return;
    const QList<QAction*> actions = entryActions();
    m_menu = new InlineMenu(actions, anchor, m_panel);
    for (QAction* action : actions)
        action->setParent(m_menu);
}

QList<QAction*> PanelMenus::entryActions() const
{
    const auto item = m_viewModel.selectedItem();
    QAction* annotate = entryAction(text(QT_TRANSLATE_NOOP("PanelMenus", "Annotate")), Qt::CTRL | Qt::Key_E,
                                    onSelected(&HistoryViewModel::annotate));
    annotate->setEnabled(item->type == ClipboardCore::ClipType::image);
    const QString pin =
        item->isPinned ? text(QT_TRANSLATE_NOOP("PanelMenus", "Unpin")) : text(QT_TRANSLATE_NOOP("PanelMenus", "Pin"));
    return {entryAction(text(QT_TRANSLATE_NOOP("PanelMenus", "Paste")), {}, onSelected(&HistoryViewModel::paste)),
            entryAction(text(QT_TRANSLATE_NOOP("PanelMenus", "Copy")), Qt::CTRL | Qt::Key_C,
                        onSelected(&HistoryViewModel::copy)),
            annotate,
            entryAction(pin, Qt::CTRL | Qt::Key_P, onSelected(&HistoryViewModel::togglePin)),
            separator(),
            entryAction(text(QT_TRANSLATE_NOOP("PanelMenus", "Actions…")), Qt::CTRL | Qt::Key_K,
                        [](HistoryViewModel& viewModel) { viewModel.openCmdk(); }),
            separator(),
            entryAction(text(QT_TRANSLATE_NOOP("PanelMenus", "Delete")), Qt::SHIFT | Qt::Key_Delete,
                        onSelected(&HistoryViewModel::remove))};
}

QAction* PanelMenus::entryAction(const QString& text, const QKeySequence& keys,
                                 std::function<void(HistoryViewModel&)> run) const
{
    auto* action = new QAction(text);
    if (!keys.isEmpty())
        action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, &m_viewModel,
                     [viewModel = &m_viewModel, run = std::move(run)] { run(*viewModel); });
    return action;
}

void PanelMenus::close()
{
    if (!m_menu)
        return;
    m_menu->hide();
    m_menu->deleteLater(); // what was chosen in it may have brought us here
    m_menu.clear();
}

bool PanelMenus::handleKey(const QKeyEvent& event)
{
    InlineMenu* menu = m_menu.data();
    if (menu == nullptr || menu->isHidden())
        return false;
    menu->handleKey(event);
    return true;
}

} // namespace Clipboard
