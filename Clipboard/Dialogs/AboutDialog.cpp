#include "AboutDialog.h"

#include "DialogButton.h"

namespace Clipboard {

AboutDialog::AboutDialog(bool composited, const QString& hotKey, QWidget* parent)
    : DialogCard(composited, {QLatin1String("layers"), 24, Theme::accent}, parent)
{
    const QString text = tr("Version %1\nA clipboard history for your desktop.\nFree software under the MIT licence.")
                             .arg(QLatin1String(TESSALY_VERSION));
    setTexts(tr("Tessaly"), hotKey.isEmpty() ? text : text + u'\n' + tr("%1 opens it.").arg(hotKey));
    setWindowTitle(tr("About Tessaly"));
    connect(addButton(tr("Close"), tr("esc"), false), &QAbstractButton::clicked, this, &QDialog::accept);
}

} // namespace Clipboard
