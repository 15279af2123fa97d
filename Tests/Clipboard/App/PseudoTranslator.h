#pragma once

#include <QTranslator>

namespace Clipboard::Testing {

/// A language that nobody speaks: the English wording with accents, between « and », and a third longer. What is drawn
/// without its accents did not come from the catalogue; what has lost its » was cut.
class PseudoTranslator final : public QTranslator
{
    Q_OBJECT
public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* source, const char* /*disambiguation*/,
                                    int /*number*/) const override
    {
        constexpr double growth = 0.3;
        QString text = QString::fromUtf8(source);
        const bool namesKeys = text.contains(u'⌘') || text == QLatin1String("esc") || text == QLatin1String("Ctrl");
        const auto length = static_cast<double>(text.size());
        text = accented(text.replace(QLatin1String("⌘"), QLatin1String("Ctrl+")));
        if (namesKeys)
            return text; // key caps are as short in every language
        const auto more = static_cast<qsizetype>(length * growth) - 2;
        return u'«' + text + QString(std::max<qsizetype>(0, more), u'ö') + u'»';
    }

private:
    /// All vowels but those that stand for a number.
    [[nodiscard]] static QString accented(QString text)
    {
        constexpr QStringView plain = u"AaCcEeIiOoUuYyNnSs";
        constexpr QStringView marked = u"ÅåÇçÉéÎîÖöÛûŸÿÑñŠš";
        for (qsizetype i = 0; i < text.size(); ++i) {
            const qsizetype place = plain.indexOf(text.at(i));
            if (place >= 0 && (i == 0 || text.at(i - 1) != u'%'))
                text[i] = marked.at(place);
        }
        return text;
    }
};

} // namespace Clipboard::Testing
