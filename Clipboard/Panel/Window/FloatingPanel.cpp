#include "FloatingPanel.h"

#include "Accessibility.h"
#include "HistoryViewModel.h"
#include "KeyTranslation.h"
#include "Motion.h"
#include "PanelView.h"
#include "SearchField.h"
#include "Theme.h"
#include "Thumbs.h"
#include "WindowSystem.h"

#include <QKeyEvent>
#include <QLoggingCategory>
#include <QPaintEvent>
#include <QPainter>
#include <QVariantAnimation>
#include <QWindow>

#include <algorithm>
#include <utility>

using ClipboardCore::KeyCode;

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(timing, "tessaly.timing", QtWarningMsg)

} // namespace

FloatingPanel::FloatingPanel(const Services& services)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint)
    , m_services(services)
    , m_surface(panelShadow, Theme::panel)
    , m_geometry(0, 0, Theme::panelWidth, Theme::panelHeight)
{
    Surface::prepare(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Tessaly"));
    Accessibility::setRole(this, QAccessible::Window);
    setObjectName(QStringLiteral("FloatingPanel"));
    connect(&services.windows, &WindowSystem::userWorked, this, [this] {
        if (m_open && m_isOnScreen && !isActiveWindow() && !m_view->isDragging())
            dismiss();
    });
    connect(&services.windows, &WindowSystem::compositingChanged, this, &FloatingPanel::applyCompositing);
}

FloatingPanel::~FloatingPanel() = default;

void FloatingPanel::prepare()
{
    if (m_view != nullptr)
        return;
    m_view = new PanelView(m_services.viewModel, m_services.workspace, m_services.thumbs, m_services.programMenu, this);
    connect(m_view, &PanelView::dragFinished, this, [this] {
        if (!isActiveWindow())
            dismiss(); // where the entry was dropped has taken the keyboard meanwhile
    });
    m_entrance = new QVariantAnimation(this);
    m_entrance->setStartValue(0.0);
    m_entrance->setEndValue(1.0);
    m_entrance->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_entrance, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { applyEntrance(value.toReal()); });
    winId(); // makes the native window, on which the next lines set what must be set before it is shown
    windowHandle()->installEventFilter(this);
    m_services.windows.prepare(windowHandle(), WindowSystem::Role::panel);
    applyCompositing();
    Motion::followDesktop();
}

void FloatingPanel::setPanelGeometry(const QRect& panel)
{
    m_geometry = panel;
    setGeometry(panel.marginsAdded(m_surface.margins()));
}

void FloatingPanel::applyCompositing()
{
    m_surface.setComposited(m_services.windows.isCompositing());
    setContentsMargins(m_surface.margins());
    setPanelGeometry(m_geometry);
    if (windowHandle() != nullptr)
        m_services.windows.setShadow(windowHandle(), m_surface.margins());
    layOutView();
    update();
}

void FloatingPanel::open()
{
    prepare();
    m_services.windows.rememberFrontWindow();
    m_services.thumbs.forgetFailures();
    m_view->sync();
    m_open = true;
    m_isOnScreen = false;
    m_mayInsist = true;
    startEntrance();
    show();
    m_services.windows.activate(windowHandle());
}

void FloatingPanel::startEntrance()
{
    m_entrance->stop();
    const int duration = m_surface.isComposited() ? Motion::duration(Theme::panelInDuration) : 0;
    applyEntrance(duration > 0 ? 0 : 1);
    if (duration == 0)
        return;
    m_entrance->setDuration(duration);
    m_entrance->start();
}

void FloatingPanel::applyEntrance(qreal progress)
{
    if (m_services.windows.canFade())
        setWindowOpacity(progress);
    const int below = qRound((1 - progress) * Theme::panelRise);
    const QPoint place = windowPlace() + QPoint(0, below);
    if (pos() != place)
        move(place);
}

QPoint FloatingPanel::windowPlace() const
{
    return m_geometry.marginsAdded(m_surface.margins()).topLeft();
}

void FloatingPanel::dismiss()
{
    if (!m_open)
        return;
    m_open = false; // hiding delivers the loss of activation, which asks for this again
    emit willClose();
    m_entrance->stop();
    hide();
    m_services.windows.restoreFrontWindow();
    emit closed();
}

bool FloatingPanel::event(QEvent* event)
{
    const bool isDragging = m_view != nullptr && m_view->isDragging();
    const bool hasLostKeyboard = event->type() == QEvent::WindowDeactivate && m_open && m_isOnScreen && !isDragging;
    if (hasLostKeyboard && m_services.windows.isFocusAtPointer())
        qCDebug(timing, "panel-left-open");
    else if (hasLostKeyboard)
        dismiss();
    return QWidget::event(event);
}

void FloatingPanel::closeEvent(QCloseEvent* event)
{
    dismiss();
    event->ignore();
}

bool FloatingPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Expose)
        m_isOnScreen = windowHandle()->isExposed();
    if (event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

bool FloatingPanel::handleKey(const QKeyEvent& event)
{
    if (m_view->activeField()->isComposing())
        return false;
    m_view->sync(); // navigation reads the frames
    if (m_view->handleMenuKey(event))
        return true;
    ClipboardCore::KeyEvent key = translateKey(event);
    if (key.code == KeyCode::keypadEnter)
        key.code = KeyCode::return_;
    const bool handled = m_services.viewModel.handleKey(key) || copyMarked(key);
    m_view->sync();
    return handled;
}

bool FloatingPanel::copyMarked(const ClipboardCore::KeyEvent& key)
{
    if (key.code != KeyCode::c || !key.command || m_view->activeField()->hasSelectedText())
        return false;
    HistoryViewModel& model = m_services.viewModel;
    const auto item = model.selectedItem();
    const QString marked = m_view->selectedPreviewText();
    if (!marked.isEmpty())
        model.copyMarked(marked, item);
    else if (item && !model.cmdkOpen())
        model.copy(*item);
    return true;
}

bool FloatingPanel::focusNextPrevChild(bool /*next*/)
{
    return false; // arrows lead to what has focus; the keyboard stays with the field that is in front
}

void FloatingPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !m_view->activeField()->isComposing())
        return dismiss();
    QWidget::keyPressEvent(event);
}

/// Some window managers first reckon with a frame of theirs, leave it out and the window where it stood inside: asked
/// again, they put it in its place. One that moves it then as well has its reasons.
void FloatingPanel::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    const bool isMovedByOthers = m_isOnScreen && m_entrance->state() != QVariantAnimation::Running;
    if (m_open && isMovedByOthers && event->pos() != windowPlace() && std::exchange(m_mayInsist, false))
        move(windowPlace());
}

void FloatingPanel::resizeEvent(QResizeEvent* event)
{
    layOutView();
    QWidget::resizeEvent(event);
}

void FloatingPanel::layOutView()
{
    if (m_view == nullptr)
        return;
    m_view->setGeometry(rect().marginsRemoved(m_surface.margins()));
    m_view->setCornerRadius(m_surface.radius());
}

void FloatingPanel::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const QRect card = rect().marginsRemoved(m_surface.margins());
    const int edge = std::max(m_surface.radius(), 1);
    if (card.adjusted(edge, edge, -edge, -edge).contains(event->rect()))
        painter.fillRect(event->rect(), Theme::panel);
    else
        m_surface.paint(painter, card);
}

} // namespace Clipboard
