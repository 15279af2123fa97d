#include "Soak.h"

#include "ProcessFigures.h"

#include <QColor>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QSet>
#include <QThread>

#include <csignal>

using namespace Qt::StringLiterals;
using Clipboard::Testing::ForeignClient;
using Clipboard::Testing::RunningTessaly;

namespace Clipboard::Benchmarks {

namespace {

constexpr qsizetype cap = 500; // entries that the program keeps
constexpr qsizetype mostPinned = 20;
constexpr qsizetype hugeText = 2'000'000; // bytes
constexpr int files = 40;
constexpr int warmUp = 10;            // the part of all copies after which memory is compared
constexpr unsigned long settle = 100; // ms
constexpr quint32 escapeKey = 0xff1b; // as X11/keysymdef.h numbers it

int countOf(qint64 process, const QString& what)
{
    return static_cast<int>(QDir(u"/proc/%1/%2"_s.arg(process).arg(what))
                                .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                                .size());
}

} // namespace

void SoakModel::copy(const QString& type, const QString& content)
{
    const auto known = std::ranges::find_if(
        m_entries, [&](const Entry& entry) { return entry.type == type && entry.content == content; });
    Entry entry{type, content, false, ++m_time};
    if (known != m_entries.end()) {
        entry.isPinned = known->isPinned;
        m_entries.erase(known);
    }
    insert(entry);
    // The last one is the oldest that is not pinned, unless all are.
    while (m_entries.size() > cap && !m_entries.last().isPinned)
        m_entries.removeLast();
}

void SoakModel::togglePin(qsizetype place)
{
    Entry entry = m_entries.takeAt(place);
    entry.isPinned = !entry.isPinned;
    insert(entry);
}

void SoakModel::insert(const Entry& entry)
{
    const auto after = [&](const Entry& other) {
        return other.isPinned == entry.isPinned ? other.time <= entry.time : entry.isPinned;
    };
    m_entries.insert(std::ranges::find_if(m_entries, after), entry);
}

Soak::Soak()
    : m_keyboard(m_bench.session.display())
    , m_owner(m_bench.session)
    , m_bus(
          QDBusConnection::connectToBus(m_bench.session.environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s), u"soak"_s))
{
    for (int i = 0; i < files; ++i) {
        QFile file(m_bench.session.homePath(u"file-%1.txt"_s.arg(i)));
        if (!file.open(QFile::WriteOnly))
            giveUp(file.errorString());
    }
}

void Soak::run(int copies)
{
    const qint64 process = m_bench.tessaly.processID();
    double memory = 0;
    int descriptors = 0;
    int threads = 0;
    for (m_copies = 0; m_copies < copies; ++m_copies) {
        step();
        if (m_copies == copies / warmUp) {
            QThread::msleep(settle);
            memory = ProcessFigures::proportionalMemory(process);
            descriptors = countOf(process, u"fd"_s);
            threads = countOf(process, u"task"_s);
        }
    }
    QThread::msleep(settle);
    const QString what = u"soak of %1 copies: "_s.arg(copies);
    const double after = ProcessFigures::proportionalMemory(process);
    row(what + u"memory after a tenth"_s, memory, u"MB PSS"_s, {});
    row(what + u"memory at the end, beside that"_s, after / memory, u"×"_s, u"≤ 1.1"_s);
    row(what + u"descriptors more than after a tenth"_s, QString::number(countOf(process, u"fd"_s) - descriptors), {},
        u"0"_s);
    row(what + u"threads more than after a tenth"_s, QString::number(countOf(process, u"task"_s) - threads), {},
        u"0"_s);
    compare(what);
}

void Soak::step()
{
    copySomething();
    if (m_random.bounded(40) == 0)
        changeSomething();
    if (m_random.bounded(400) == 0)
        lookAround();
    if (m_random.bounded(20'000) == 0) {
        call(u"Clear"_s, false);
        m_model.clear();
    }
}

/// Of all kinds; most of them new, some of them known, some of them secret.
void Soak::copySomething()
{
    const QString number = QString::number(m_copies);
    const quint32 kind = m_random.bounded(100U);
    if (kind < 45) {
        copyText(u"text"_s, u"entry number %1 of a long life"_s.arg(number));
    } else if (kind < 60) {
        copyText(u"link"_s, u"https://example.org/pages/"_s + number);
    } else if (kind < 65) {
        copyText(u"color"_s, QColor::fromRgb(m_random.generate()).name(QColor::HexRgb).toUpper());
    } else if (kind < 75 && !m_model.entries().isEmpty()) {
        const SoakModel::Entry known = m_model.entries().at(m_random.bounded(m_model.entries().size()));
        if (known.type == "image"_L1)
            copyPicture(known.content);
        else if (known.type == "file"_L1)
            copyFile(known.content);
        else
            copyText(known.type, known.content);
    } else if (kind < 85) {
        copyPicture(QColor::fromRgb(m_random.generate()).name(QColor::HexRgb));
    } else if (kind < 95) {
        copyFile(m_bench.session.homePath(u"file-%1.txt"_s.arg(m_random.bounded(files))));
    } else if (kind < 99) {
        m_owner.copy({{"UTF8_STRING", {.bytes = "a secret"}}, {"x-kde-passwordManagerHint", {.bytes = "secret"}}});
    } else {
        copyText(u"text"_s,
                 (u"huge "_s + number)
                     .leftJustified(hugeText / 10 + static_cast<qsizetype>(m_random.bounded(quint32{hugeText})), u'.'));
    }
}

void Soak::copyText(const QString& type, const QString& text)
{
    copy(type, text, {{"UTF8_STRING", {.bytes = text.toUtf8()}}});
}

void Soak::copyPicture(const QString& color)
{
    copy(u"image"_s, color, {{"image/png", {.bytes = pictureOf(QColor(color).rgb())}}});
}

void Soak::copyFile(const QString& path)
{
    copy(u"file"_s, path, {{"text/uri-list", {.bytes = "file://" + QFile::encodeName(path) + "\r\n"}}});
}

void Soak::copy(const QString& type, const QString& content, const QHash<QByteArray, ForeignClient::Answer>& answers)
{
    m_bench.tessaly.moments().clear();
    m_owner.copy(answers);
    (void)m_bench.until("captured", Clock::now());
    m_model.copy(type, content);
}

/// Pins, unpins or deletes an entry.
void Soak::changeSomething()
{
    if (m_model.entries().isEmpty())
        return;
    const qsizetype place = m_random.bounded(m_model.entries().size());
    const QString name = QString::number(place + 1);
    if (m_random.bounded(2) == 0) {
        call(u"Delete"_s, name);
        m_model.remove(place);
    } else if (m_model.entries().at(place).isPinned) {
        call(u"Unpin"_s, name);
        m_model.togglePin(place);
    } else if (m_model.pinned() < mostPinned) {
        call(u"Pin"_s, name);
        m_model.togglePin(place);
    }
}

/// Calls the panel up, searches for something and goes away.
void Soak::lookAround()
{
    m_bench.showPanel(m_keyboard);
    for (const char letter : QByteArray("number 7"))
        m_keyboard.press({static_cast<quint32>(letter)}); // ASCII codes are key symbols
    m_keyboard.press({escapeKey});
    m_keyboard.press({escapeKey});
    if (!m_bench.tessaly.waitForPanel(false))
        giveUp(u"The panel did not go away."_s);
}

void Soak::call(const QString& method, const QVariant& argument)
{
    QDBusMessage message = QDBusMessage::createMethodCall(u"com.tessaly.Tessaly"_s, u"/com/tessaly/Tessaly"_s,
                                                          u"com.tessaly.Tessaly"_s, method);
    message.setArguments({argument});
    const QDBusMessage answer = m_bus.call(message);
    if (answer.type() != QDBusMessage::ReplyMessage)
        giveUp(u"%1: %2"_s.arg(method, answer.errorMessage()));
}

/// Ends the program in order, and compares what it leaves behind with the model.
void Soak::compare(const QString& what)
{
    m_bench.tessaly.stop(SIGTERM);
    const std::optional<QList<RunningTessaly::Entry>> history = m_bench.tessaly.history();
    if (!history)
        giveUp(u"The history cannot be read."_s);
    int differences = static_cast<int>(qAbs(history->size() - m_model.entries().size()));
    QSet<QString> pictures;
    for (qsizetype i = 0; i < qMin(history->size(), m_model.entries().size()); ++i) {
        const RunningTessaly::Entry& kept = history->at(i);
        const SoakModel::Entry& wanted = m_model.entries().at(i);
        const bool isPicture = kept.type == "image"_L1;
        if (isPicture)
            pictures.insert(kept.content);
        const QString content = isPicture ? QImage(kept.content).pixelColor(0, 0).name(QColor::HexRgb) : kept.content;
        if (kept.type != wanted.type || content != wanted.content || kept.isPinned != wanted.isPinned)
            ++differences;
    }
    row(what + u"entries that are not as they should be"_s, QString::number(differences), {}, u"0"_s);
    QSet<QString> present;
    for (const QFileInfo& file : QDir(m_bench.tessaly.dataFolder() + u"/images"_s).entryInfoList(QDir::Files))
        present.insert(file.filePath());
    row(what + u"pictures on the disk that no entry names"_s, QString::number((present - pictures).size()), {}, u"0"_s);
    row(what + u"pictures named that are gone"_s, QString::number((pictures - present).size()), {}, u"0"_s);
}

void soakRows(Effort effort)
{
    Soak().run(effort.times(200'000, 2000));
}

} // namespace Clipboard::Benchmarks
