#include "TesseractLanguages.h"

#include <QByteArrayList>
#include <QLocale>

#include <algorithm>
#include <array>

namespace Clipboard {

namespace {

// A word that reads badly in one language is read again in the next; more than these make a page slow for little.
constexpr qsizetype maxUserLanguages = 2;

struct Exception
{
    QLocale::Language language;
    QLocale::Script script; // AnyScript matches all
    const char* name;
};

// Everywhere else Tesseract's names are the three letters of ISO 639-2/T.
constexpr std::array exceptions{
    Exception{QLocale::Chinese, QLocale::TraditionalHanScript, "chi_tra"},
    Exception{QLocale::Chinese, QLocale::AnyScript, "chi_sim"},
    Exception{QLocale::NorwegianBokmal, QLocale::AnyScript, "nor"},
    Exception{QLocale::NorwegianNynorsk, QLocale::AnyScript, "nor"},
    Exception{QLocale::Serbian, QLocale::LatinScript, "srp_latn"},
    Exception{QLocale::Uzbek, QLocale::CyrillicScript, "uzb_cyrl"},
    Exception{QLocale::Azerbaijani, QLocale::CyrillicScript, "aze_cyrl"},
    Exception{QLocale::Kurdish, QLocale::AnyScript, "kmr"},
};

QByteArray tesseractName(const QLocale& locale)
{
    if (locale.language() == QLocale::C)
        return {};
    const auto* exception = std::ranges::find_if(exceptions, [&](const Exception& candidate) {
        return candidate.language == locale.language() &&
               (candidate.script == QLocale::AnyScript || candidate.script == locale.script());
    });
    if (exception != exceptions.end())
        return exception->name;
    return QLocale::languageToCode(locale.language(), QLocale::ISO639Part2T).toLatin1();
}

} // namespace

QByteArray tesseractLanguages(const QStringList& uiLanguages)
{
    QByteArrayList names;
    for (const QString& language : uiLanguages) {
        const QByteArray name = tesseractName(QLocale(language));
        if (!name.isEmpty() && !names.contains(name) && names.size() < maxUserLanguages)
            names.append(name);
    }
    if (!names.contains("eng"))
        names.append("eng");
    return names.join('+');
}

} // namespace Clipboard
