// The core's own figures: loading, saving, searching, and what a huge text costs on the main thread.
// One line each: name, value, unit, goal, separated by tabs.

#include "../Figures.h"
#include "History/HistoryJournal.h"
#include "History/JSONHistoryStore.h"
#include "History/SearchIndex.h"
#include "History/TypeDetector.h"
#include "SodiumSeal.h"
#include "Support/Graphemes.h"
#include "Support/Utf8.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Figures::median;
using Figures::report;

namespace {

constexpr qsizetype hugeSize = qsizetype(50) * 1000 * 1000;
constexpr qsizetype entryCount = 500;
// Larger texts are folded in the background; the measurement waits for them.
constexpr auto foldedAtOnce = qsizetype(64) * 1024;

/// Words of letters in lines of about 70 characters; always the same for the same seed.
QByteArray words(qsizetype size, unsigned seed, bool cyrillic = false)
{
    std::minstd_rand random(seed);
    QByteArray text;
    text.reserve(size + 16);
    qsizetype lineStart = 0;
    while (text.size() < size) {
        for (auto letters = 2 + random() % 8; letters > 0; --letters) {
            if (cyrillic)
                text.append('\xD0').append(static_cast<char>((random() % 12 == 0 ? 0x90 : 0xB0) + random() % 16));
            else
                text.append(static_cast<char>((random() % 12 == 0 ? 'A' : 'a') + random() % 26));
        }
        const bool isLineEnd = text.size() - lineStart > 70;
        text.append(isLineEnd ? '\n' : ' ');
        if (isLineEnd)
            lineStart = text.size();
    }
    text.truncate(Utf8::prefix(text, size).size());
    return text;
}

ClipItem entry(const QByteArray& content, double createdAt)
{
    return {QUuid::createUuid(), ClipType::text, Utf8Text::fromUtf8(content), u"Terminal"_s, u"xterm"_s,
            createdAt,           false};
}

QList<ClipItem> history(qsizetype size, bool cyrillic = false)
{
    QList<ClipItem> items;
    for (qsizetype i = 0; i < entryCount; ++i)
        items.append(entry(words(size, static_cast<unsigned>(i) + 1, cyrillic), 8e8 - double(i) / 7));
    return items;
}

void measureStore(const QString& folder)
{
    const QString path = folder + u"/history.json"_s;
    JSONHistoryStore store(path, entryCount, 3600);
    for (const ClipItem& item : history(20'000))
        static_cast<void>(store.add(item));

    report(u"save of 500 × 20 KB, flushed to disk"_s, median(9, [&] { static_cast<void>(store.save()); }), u"-"_s);
    report(u"load of 500 × 20 KB"_s, median(9, [&] { const JSONHistoryStore loaded(path, entryCount, 3600); }),
           u"≤ 15"_s);

    double time = 9e8;
    unsigned seed = 1000;
    const auto change = [&] { static_cast<void>(store.add(entry(words(20'000, ++seed), ++time))); };
    QElapsedTimer timer;
    std::vector<double> saves;
    for (int i = 0; i < 50; ++i) {
        change();
        timer.start();
        store.saveAsync();
        saves.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(saves.begin(), saves.end());
    report(u"saveAsync at 500 × 20 KB"_s, saves[saves.size() / 2], u"≤ 0.2"_s);
    report(u"saveAsync at 500 × 20 KB, longest of 50"_s, saves.back(), u"-"_s);

    const ClipItem added = entry(words(20'000, ++seed), ++time);
    timer.start();
    static_cast<void>(store.add(added));
    report(u"add of 20 KB at 500 × 20 KB"_s, static_cast<double>(timer.nsecsElapsed()) / 1e6, u"≤ 0.2"_s);
}

/// The same for files that are encrypted, and what a copy takes until it is in either journal.
void measureSealed(const QString& folder)
{
    const Sealing sealing{Clipboard::SodiumSeal::make(Clipboard::SodiumSeal::newKey()), true};
    const QString path = folder + u"/sealed.json"_s;
    const auto open = [&] {
        auto store = std::make_unique<JSONHistoryStore>(path, entryCount, 3600);
        bool isOpen = false;
        store->setSealing(sealing, [&isOpen](const auto& /*evicted*/) { isOpen = true; });
        while (!isOpen)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return store;
    };
    {
        const auto store = open();
        for (const ClipItem& item : history(20'000))
            static_cast<void>(store->add(item));
        report(u"save of 500 × 20 KB, encrypted, flushed to disk"_s,
               median(9, [&] { static_cast<void>(store->save()); }), u"-"_s);
    }
    report(u"load of 500 × 20 KB, encrypted"_s, median(9, [&] { open(); }), u"-"_s);

    HistoryJournal plain(folder + u"/plain.journal"_s);
    HistoryJournal sealed(folder + u"/sealed.journal"_s);
    sealed.setSeal(sealing.seal);
    const QList<HistoryOperation> copy{{9e8, HistoryOperation::Put{entry(words(20'000, 1), 9e8)}}};
    report(u"20 KB into the journal"_s, median(99, [&] { static_cast<void>(plain.append(copy)); }), u"-"_s);
    report(u"20 KB into the journal, encrypted"_s, median(99, [&] { static_cast<void>(sealed.append(copy)); }), u"-"_s);
}

void measureHuge(const QString& folder)
{
    const QByteArray bytes = words(hugeSize, 1);
    QByteArray accented = words(hugeSize / 2, 1, true);
    accented.replace(0, 2, "e\xCC\x81");

    report(u"checking 50 MB for UTF-8"_s, median(5, [&] { static_cast<void>(Utf8Text::fromUtf8(bytes)); }), u"-"_s);
    const Utf8Text text = Utf8Text::fromUtf8(bytes);
    report(u"title of 50 MB"_s, median(9, [&] { static_cast<void>(Graphemes::prefix(text, 200)); }), u"≤ 0.1"_s);
    report(u"type of 50 MB"_s, median(9, [&] { static_cast<void>(TypeDetector::classify(text)); }), u"≤ 1"_s);
    const Utf8Text link = Utf8Text::fromUtf8("https://example.org/" + QByteArray(hugeSize, 'x'));
    report(u"type of a 50 MB link"_s, median(5, [&] { static_cast<void>(TypeDetector::classify(link)); }), u"≤ 16"_s);

    const Utf8Text blank = Utf8Text::fromUtf8(QByteArray(hugeSize, ' '));
    report(u"type of 50 MB of blanks"_s, median(5, [&] { static_cast<void>(TypeDetector::classify(blank)); }),
           u"≤ 16"_s);

    JSONHistoryStore store(folder + u"/huge.json"_s, entryCount, 3600);
    for (const ClipItem& item : history(20'000))
        static_cast<void>(store.add(item));
    static_cast<void>(store.add(entry(bytes, 9e8)));
    QByteArray copy = bytes;
    copy.detach();
    report(u"add of a 50 MB duplicate"_s, median(5, [&] { static_cast<void>(store.add(entry(copy, 9e8 + 1))); }),
           u"≤ 30"_s);
    static_cast<void>(store.add(entry(accented, 9e8)));
    QByteArray composed = accented;
    composed.replace(0, 3, "\xC3\xA9");
    report(u"add of a 25 MB Cyrillic duplicate"_s,
           median(5, [&] { static_cast<void>(store.add(entry(composed, 9e8 + 1))); }), u"-"_s);
}

void measureSearch(const QString& name, const QList<ClipItem>& items, const QString& goal)
{
    report(u"first search in "_s + name + u", folding included"_s,
           median(3,
                  [&] {
                      SearchIndex fresh;
                      fresh.setItems(items);
                      static_cast<void>(fresh.match(u"zzzq"_s));
                  }),
           u"-"_s);

    SearchIndex index;
    index.setItems(items);
    int ready = 0;
    index.onReady([&ready] { ++ready; });
    static_cast<void>(index.match(u"zzzq"_s));
    index.prepare();
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 2000 && ready < entryCount && items.front().content.byteCount() > foldedAtOnce)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);

    // None is in the texts, so all of them are searched; between them something else, so that nothing is narrowed.
    const QList<QString> queries{u"7"_s, u"zzzq"_s, u"the end"_s, u"e.e"_s, u"привет!"_s};
    for (const QString& query : queries)
        report(u"search for “%1” in %2"_s.arg(query, name),
               median(
                   9, [&] { static_cast<void>(index.match(query)); },
                   [&] { static_cast<void>(index.match(u"\U0001F512"_s)); }),
               goal);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QTemporaryDir folder;
    folder.setAutoRemove(!qEnvironmentVariableIsSet("KEEP"));
    measureStore(folder.path());
    measureSealed(folder.path());
    measureHuge(folder.path());
    measureSearch(u"500 × 200 B"_s, history(200), u"≤ 1"_s);
    measureSearch(u"500 × 20 KB"_s, history(20'000), u"≤ 2"_s);
    measureSearch(u"500 × 20 KB of Cyrillic"_s, history(20'000, true), u"≤ 2"_s);
    if (!QCoreApplication::arguments().contains(u"--short"_s))
        measureSearch(u"500 × 200 KB"_s, history(200'000), u"≤ 20"_s);
    return 0;
}
