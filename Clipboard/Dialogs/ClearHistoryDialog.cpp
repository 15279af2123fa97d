#include "ClearHistoryDialog.h"

#include "DialogButton.h"

using namespace Qt::StringLiterals;

namespace Clipboard {

ClearHistoryDialog::ClearHistoryDialog(bool composited, QWidget* parent)
    : DialogCard(composited, {QLatin1String("warn"), 24, Theme::warning}, parent)
{
    setTexts(tr("Clear clipboard history?"), tr("This removes all unpinned items. Pinned items are kept."));
    connect(addButton(tr("Clear"), u"⏎"_s, true), &QAbstractButton::clicked, this, &QDialog::accept);
    connect(addButton(tr("Cancel"), tr("esc"), false), &QAbstractButton::clicked, this, &QDialog::reject);
}

} // namespace Clipboard
