#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>

#include <optional>

namespace Clipboard {

/// What was read of a selection: the names of all targets that its owner offers, and the first of file list, picture
/// and text that it has. Empty for a selection without an owner or whose owner does not answer.
struct SelectionContent
{
    QSet<QString> types;
    QList<QUrl> fileURLs;
    std::optional<QByteArray> png;
    std::optional<QByteArray> tiff;
    std::optional<QByteArray> text; // UTF-8

    friend bool operator==(const SelectionContent&, const SelectionContent&) = default;
};

/// One change of the clipboard by another program, complete.
struct SelectionSnapshot
{
    SelectionContent content;
    quint64 writesBefore = 0; // how many writes of our own it came after
    bool isInitial = false;   // what was there when the engine started, or started again: no change
    bool isTakenBack = false; // nothing, for its program took back what was there
};

} // namespace Clipboard
