#pragma once

#include <QString>

#include <functional>

namespace ClipboardCore {

/// What running a smart action asks the application to do.
struct SmartActionEffect
{
    enum class Kind { copy, openURL, revealInFinder, copyFileToDesktop, recognizeText, copyQRCode, copyMarkdownLink };
    Kind kind = Kind::copy;
    QString payload;
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
    QString label;
    std::function<SmartActionResult()> run;
};

} // namespace ClipboardCore
