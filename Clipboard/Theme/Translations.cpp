#include "Translations.h"

#include <QCoreApplication>
#include <QTranslator>

using namespace Qt::StringLiterals;

static void registerCatalogue()
{
    Q_INIT_RESOURCE(translations);
}

namespace Clipboard {

void installTranslations(QCoreApplication& application)
{
    registerCatalogue();
    auto* translator = new QTranslator(&application);
    if (translator->load(u":/translations/tessaly_en.qm"_s))
        QCoreApplication::installTranslator(translator);
}

} // namespace Clipboard
