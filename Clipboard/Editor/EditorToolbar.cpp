#include "EditorToolbar.h"

#include "Accessibility.h"
#include "ColorButton.h"
#include "ExitButton.h"
#include "SignButton.h"

#include <QGuiApplication>
#include <QPainter>

#include <array>

using ClipboardCore::AnnotationColor;
using ClipboardCore::AnnotationSize;
using ClipboardCore::AnnotationTool;
using ClipboardCore::EditorExit;

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr int padding = 12;
constexpr int groupGap = 12; // on both sides of a seam
constexpr int buttonGap = 2;
constexpr int seamHeight = 24;

// In the order of the tools.
constexpr std::array<QLatin1String, ClipboardCore::allAnnotationTools.size()> toolIcons{
    QLatin1String("crop"),        QLatin1String("arrow"),    QLatin1String("rectangle"), QLatin1String("texttool"),
    QLatin1String("highlighter"), QLatin1String("pixelate"), QLatin1String("counter")};

// In the order of the palette and of the sizes.
constexpr std::array colorNames{
    QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Red"),   QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Yellow"),
    QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Green"), QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Blue"),
    QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Black"), QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "White")};
constexpr std::array sizeNames{QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Small"),
                               QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Medium"),
                               QT_TRANSLATE_NOOP("Clipboard::EditorToolbar", "Large")};
constexpr std::array sizeDiscs{5, 9, 14};

static_assert(colorNames.size() == ClipboardCore::AnnotationPalette::colors.size());
static_assert(sizeNames.size() == ClipboardCore::allAnnotationSizes.size());

template <typename Button>
int groupWidth(const QList<Button*>& group, int gap)
{
    int width = -gap;
    for (const Button* button : group)
        width += button->controlSize().width() + gap;
    return width;
}

/// Places a group from `left` on and answers where it ends.
template <typename Button>
int layOut(const QList<Button*>& group, int left, int gap)
{
    constexpr int room = EditorToolbar::height - 1;
    for (Button* button : group) {
        const QSize size = button->controlSize();
        button->setControlGeometry({QPoint(left, (room - size.height() + 1) / 2), size});
        left += size.width() + gap;
    }
    return left - gap;
}

} // namespace

EditorToolbar::EditorToolbar(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(u"EditorToolbar"_s);
    setAccessibleName(tr("Tools"));
    Accessibility::setRole(this, QAccessible::ToolBar);
    addTools();
    addColors();
    addSizes();
    addHistory();
    addExits();
    setExitsIconOnly(true);
    m_leastWidth = neededWidth();
}

void EditorToolbar::addTools()
{
    for (const AnnotationTool tool : ClipboardCore::allAnnotationTools) {
        const QLatin1String icon = toolIcons.at(static_cast<size_t>(tool));
        auto* button = new SignButton(ClipboardCore::label(tool), icon, this);
        button->setIsChoice();
        button->setObjectName(u"Tool."_s + icon);
        button->setTip(ClipboardCore::toolTip(tool), {});
        connect(button, &QAbstractButton::clicked, this, [this, tool] { emit toolChosen(tool); });
        m_tools.append(button);
    }
}

void EditorToolbar::addColors()
{
    for (size_t i = 0; i < colorNames.size(); ++i) {
        const AnnotationColor& color = ClipboardCore::AnnotationPalette::colors.at(i);
        auto* button = new ColorButton(tr(colorNames.at(i)), color, this);
        button->setObjectName(u"Color."_s + color.id);
        button->setTip(button->text(), {});
        connect(button, &QAbstractButton::clicked, this, [this, color] { emit colorChosen(color); });
        m_colors.append(button);
    }
}

void EditorToolbar::addSizes()
{
    for (const AnnotationSize size : ClipboardCore::allAnnotationSizes) {
        const auto i = static_cast<size_t>(size);
        auto* button = new SignButton(tr(sizeNames.at(i)), sizeDiscs.at(i), this);
        button->setIsChoice();
        button->setObjectName(u"Size."_s + rawValue(size));
        button->setTip(button->text(), {});
        connect(button, &QAbstractButton::clicked, this, [this, size] { emit sizeChosen(size); });
        m_sizes.append(button);
    }
}

void EditorToolbar::addHistory()
{
    auto* undo = new SignButton(tr("Undo"), QLatin1String("undo"), this);
    undo->setObjectName(u"Undo"_s);
    undo->setTip(undo->text(), tr("⌘Z"));
    connect(undo, &QAbstractButton::clicked, this, &EditorToolbar::undoChosen);
    auto* redo = new SignButton(tr("Redo"), QLatin1String("redo"), this);
    redo->setObjectName(u"Redo"_s);
    redo->setTip(redo->text(), tr("⇧⌘Z"));
    connect(redo, &QAbstractButton::clicked, this, &EditorToolbar::redoChosen);
    m_history = {undo, redo};
}

void EditorToolbar::addExits()
{
    constexpr std::array exits{std::pair(EditorExit::paste, QLatin1String("Exit.paste")),
                               std::pair(EditorExit::copy, QLatin1String("Exit.copy")),
                               std::pair(EditorExit::save, QLatin1String("Exit.save"))};
    for (const auto& [exit, name] : exits) {
        auto* button = new ExitButton(exit, this);
        button->setObjectName(name);
        connect(button, &QAbstractButton::clicked, this, [this, exit = exit] { leave(exit); });
        m_exits.append(button);
    }
}

void EditorToolbar::leave(EditorExit exit)
{
    if (exit == EditorExit::save && QGuiApplication::keyboardModifiers() & Qt::ShiftModifier)
        emit saveAsChosen();
    else
        emit exitChosen(exit);
}

void EditorToolbar::sync(const ClipboardCore::AnnotationSession& session, bool areExitsEnabled)
{
    // Whatever a click made of a button, the session decides.
    for (const AnnotationTool tool : ClipboardCore::allAnnotationTools)
        m_tools[static_cast<qsizetype>(tool)]->setChecked(tool == session.tool());
    for (size_t i = 0; i < colorNames.size(); ++i)
        m_colors[static_cast<qsizetype>(i)]->setChecked(ClipboardCore::AnnotationPalette::colors.at(i) ==
                                                        session.color());
    for (const AnnotationSize size : ClipboardCore::allAnnotationSizes)
        m_sizes[static_cast<qsizetype>(size)]->setChecked(size == session.size());
    m_history[0]->setEnabled(session.canUndo());
    m_history[1]->setEnabled(session.canRedo());
    for (ExitButton* button : std::as_const(m_exits))
        button->setEnabled(areExitsEnabled);
}

void EditorToolbar::setExitsIconOnly(bool areIconOnly)
{
    for (ExitButton* button : std::as_const(m_exits))
        button->setIconOnly(areIconOnly);
}

int EditorToolbar::neededWidth() const
{
    int width = padding;
    for (const Group* group : {&m_tools, &m_colors, &m_sizes, &m_history})
        width += groupWidth(*group, buttonGap) + 2 * groupGap + 1;
    return width + groupWidth(m_exits, Theme::spacing) + padding;
}

void EditorToolbar::resizeEvent(QResizeEvent* event)
{
    setExitsIconOnly(false);
    setExitsIconOnly(neededWidth() > width());
    int left = padding;
    for (const Group* group : {&m_tools, &m_colors, &m_sizes, &m_history})
        left = layOut(*group, left, buttonGap) + groupGap + 1 + groupGap;
    // On a screen that is too small even so, rather cut off than over the others.
    left = std::max(left - groupGap, width() - padding - groupWidth(m_exits, Theme::spacing));
    layOut(m_exits, left, Theme::spacing);
    QWidget::resizeEvent(event);
}

void EditorToolbar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), Theme::panel);
    painter.fillRect(QRect(0, QWidget::height() - 1, width(), 1), Theme::seam);
    for (const Group* group : {&m_colors, &m_sizes, &m_history}) {
        const int left = group->first()->controlRectIn(this).left() - groupGap - 1;
        painter.fillRect(QRect(left, (height - 1 - seamHeight + 1) / 2, 1, seamHeight), Theme::seam);
    }
}

} // namespace Clipboard
