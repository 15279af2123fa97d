#include "Annotation/AnnotationTool.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace ClipboardCore {
namespace {

constexpr const char* context = "AnnotationTool";

struct Traits
{
    std::optional<Annotation::Kind> kind;
    const char* label;
    const char* hint;
    QLatin1StringView symbolName;
    char16_t shortcutLetter;
};

// By the order of AnnotationTool.
constexpr std::array<Traits, allAnnotationTools.size()> traitsByTool{{
    {std::nullopt, QT_TRANSLATE_NOOP("AnnotationTool", "Crop"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Drag the edges to crop, or inside to move the crop"),
     QLatin1StringView("crop"), u'C'},
    {Annotation::Kind::arrow, QT_TRANSLATE_NOOP("AnnotationTool", "Arrow"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Drag to draw an arrow"), QLatin1StringView("arrow.up.right"), u'A'},
    {Annotation::Kind::rectangle, QT_TRANSLATE_NOOP("AnnotationTool", "Rectangle"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Drag to draw a rectangle"), QLatin1StringView("rectangle"), u'R'},
    {Annotation::Kind::text, QT_TRANSLATE_NOOP("AnnotationTool", "Text"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Click to add text, double-click text to edit it"),
     QLatin1StringView("textformat"), u'T'},
    {Annotation::Kind::highlight, QT_TRANSLATE_NOOP("AnnotationTool", "Highlighter"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Drag to highlight"), QLatin1StringView("highlighter"), u'H'},
    {Annotation::Kind::pixelate, QT_TRANSLATE_NOOP("AnnotationTool", "Pixelate"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Drag to pixelate"), QLatin1StringView("checkerboard.rectangle"), u'P'},
    {Annotation::Kind::counter, QT_TRANSLATE_NOOP("AnnotationTool", "Counter"),
     QT_TRANSLATE_NOOP("AnnotationTool", "Click to number a step"), QLatin1StringView("1.circle"), u'N'},
}};

const Traits& traits(AnnotationTool tool)
{
    return traitsByTool.at(static_cast<size_t>(tool));
}

} // namespace

std::optional<Annotation::Kind> annotationKind(AnnotationTool of)
{
    return traits(of).kind;
}

QString label(AnnotationTool of)
{
    return QCoreApplication::translate(context, traits(of).label);
}

QString toolTip(AnnotationTool of)
{
    return u"%1 (%2)"_s.arg(label(of), shortcutLetter(of));
}

QString hint(AnnotationTool of)
{
    return QCoreApplication::translate(context, traits(of).hint);
}

QLatin1StringView symbolName(AnnotationTool of)
{
    return traits(of).symbolName;
}

QChar shortcutLetter(AnnotationTool of)
{
    return traits(of).shortcutLetter;
}

} // namespace ClipboardCore
