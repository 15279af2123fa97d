#pragma once

#include "Fakes.h"
#include "History/JSONHistoryStore.h"
#include "HistoryViewModel.h"
#include "PasteService.h"

#include <QTemporaryDir>

namespace Clipboard::Testing {

/// A view model over a store of its own, with the desktop faked.
struct ViewModelFixture
{
    QTemporaryDir folder;
    FakePasteboard pasteboard;
    FakeKeystrokeSender keystrokes;
    QStringList toasts;
    QStringList standing;                        // those of them that stay until the next
    QList<ClipboardCore::SmartAction> catalogue; // for every entry, unless:
    std::function<QList<ClipboardCore::SmartAction>(const ClipboardCore::ClipItem&)> catalogueOf;
    int catalogueReads = 0;
    QList<ClipboardCore::SmartActionEffect> effects;
    std::function<void(const ClipboardCore::SmartActionEffect&)> perform; // when it is more than noted
    int ownChanges = 0;
    int closeRequests = 0;
    double newest = 1000; // when the first entry is copied; 1 s is between two

    PasteService pasteService{keystrokes, [this](const QString& text) { toasts.append(text); }};
    ClipboardCore::JSONHistoryStore store{folder.filePath(QStringLiteral("history.json")), 500, 1000.0};
    HistoryViewModel model{store,
                           {pasteboard, pasteService, [this](const QString& text) { toasts.append(text); },
                            [this](const ClipboardCore::ClipItem& item) {
                                ++catalogueReads;
                                return catalogueOf ? catalogueOf(item) : catalogue;
                            },
                            [this](const ClipboardCore::SmartActionEffect& effect, HistoryViewModel&) {
                                effects.append(effect);
                                if (perform)
                                    perform(effect);
                            },
                            [this](const QString& text) {
                                toasts.append(text);
                                standing.append(text);
                            }}};

    ViewModelFixture()
    {
        model.markOwnChange = [this] { ++ownChanges; };
        model.onRequestClose = [this] { ++closeRequests; };
    }

    /// Adds entries so that the first one given is the newest.
    void fill(const QList<ClipboardCore::ClipItem>& items)
    {
        double time = newest;
        for (ClipboardCore::ClipItem item : items) {
            item.createdAt = --time;
            (void)store.add(item);
        }
        model.refresh();
        model.panelWillShow(std::nullopt);
    }
    /// Text entries with these contents, the first one the newest.
    void fillTexts(const QStringList& texts)
    {
        QList<ClipboardCore::ClipItem> items;
        for (const QString& text : texts)
            items.append(item(ClipboardCore::ClipType::text, text));
        fill(items);
    }

    [[nodiscard]] static ClipboardCore::ClipItem item(ClipboardCore::ClipType type, const QString& content)
    {
        return {QUuid::createUuid(), type, content, std::nullopt, std::nullopt, 0, false};
    }

    [[nodiscard]] QString selected() const
    {
        const auto item = model.selectedItem();
        return item ? item->content.toString() : QString();
    }
    [[nodiscard]] QStringList visible() const { return contents(model.visible()); }
    [[nodiscard]] QStringList stored() const { return contents(store.items()); }
    [[nodiscard]] const ClipboardCore::ClipItem& entry(qsizetype index) const { return model.visible().at(index); }

    [[nodiscard]] static QStringList contents(const QList<ClipboardCore::ClipItem>& items)
    {
        QStringList texts;
        for (const auto& item : items)
            texts.append(item.content.toString());
        return texts;
    }
};

} // namespace Clipboard::Testing
