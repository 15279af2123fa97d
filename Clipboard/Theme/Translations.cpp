#include "Translations.h"

#include <QCoreApplication>
#include <QTranslator>

using namespace Qt::StringLiterals;

static void registerCatalogue()
{
    Q_INIT_RESOURCE(translations);
}

namespace Clipboard {

void installTranslations(QCoreApplication& application, const QLocale& locale)
{
    registerCatalogue();
    auto* wording = new QTranslator(&application);
    if (wording->load(u":/translations/tessaly_en.qm"_s))
        QCoreApplication::installTranslator(wording);
    auto* language = new QTranslator(&application);
    if (language->load(locale, u"tessaly"_s, u"_"_s, u":/translations"_s) &&
        language->language() != wording->language())
        QCoreApplication::installTranslator(language);
}

} // namespace Clipboard
