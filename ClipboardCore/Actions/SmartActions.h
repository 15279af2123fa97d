#pragma once

#include "History/ClipItem.h"

#include <QList>
#include <QString>

#include <functional>

namespace ClipboardCore {

/// What running a smart action asks the application to do.
struct SmartActionEffect
{
    enum class Kind { copy, openURL, revealInFinder, copyFileToDesktop, recognizeText, copyQRCode, copyMarkdownLink };
    Kind kind = Kind::copy;
    Utf8Text payload; // of any size: it is never turned into another form on the main thread
    bool operator==(const SmartActionEffect&) const = default;
};

/// One effect and the notice that goes with it.
struct SmartActionResult
{
    SmartActionEffect effect;
    QString toast;
    bool operator==(const SmartActionResult&) const = default;
};

/// Something that can be done with an entry. Running it has no side effect; it only says what to do.
struct SmartAction
{
    QString label; // names the action everywhere; only what is drawn is translated
    /// A pure function of the entry. May be called on any thread, and again; takes its time for a large entry, so never
    /// on the main thread.
    std::function<SmartActionResult()> run;
};

/// The catalogue of actions.
namespace SmartActions {

/// What can be done with `item` now, in the order in which it is shown. Whether an action is offered is decided here,
/// and what that took to find out is kept in it; what is always offered does its work when it runs, so that the list
/// costs no more for a large text. Files are not looked for.
[[nodiscard]] QList<SmartAction> actions(const ClipItem& item);

} // namespace SmartActions

} // namespace ClipboardCore
