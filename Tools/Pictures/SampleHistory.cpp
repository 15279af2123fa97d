#include "SampleHistory.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

struct Application
{
    const char* name;
    const char* identifier;
    const char* color;
    const char* sign; // an SVG path on a grid of 24
};

constexpr Application applications[] = {
    {"Terminal", "terminal", "#30343D", "M6 8l4 4-4 4M12 16h6"},
    {"Code Desk", "code-desk", "#3A4A7A", "M9 8l-4 4 4 4M15 8l4 4-4 4"},
    {"Web Reader", "web-reader", "#1F6B5C", "M5 12h14M12 5a7 7 0 1 0 .01 0M12 5c-4 4-4 10 0 14M12 5c4 4 4 10 0 14"},
    {"Sketchbook", "sketchbook", "#7C4468", "M7 17l1-4 8-8 3 3-8 8z"},
    {"Files", "files", "#2B5F8A", "M5 7h5l2 2h7v9H5z"},
};

constexpr qint64 minute = 60;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;
constexpr qint64 referenceDate = 978'307'200; // 2001-01-01, where the file's times begin

struct Entry
{
    QString type;
    QString content;
    const char* application = nullptr;
    qint64 age = 0; // seconds
    bool isPinned = false;
};

const QString retry = uR"(const retry = async (fn, n = 3) => {
  for (let i = 0; ; i += 1) {
    try {
      return await fn(i);
    } catch (err) {
      if (i + 1 >= n) throw err;
      await pause(200 * 2 ** i);
    }
  }
};)"_s;

const QString order = uR"({"order": 48213, "status": "packed",
 "customer": {"name": "Mira Halloran", "since": 2021},
 "items": [
  {"sku": "LMP-20", "qty": 2, "price": 29.0},
  {"sku": "OAK-114", "qty": 1, "price": 124.5},
  {"sku": "HK-7", "qty": 4, "price": 9.2}],
 "delivery": 4.9, "total": 224.2})"_s;

const QString slug = uR"(def slug(path: str) -> str:
    name = path.rsplit("/", 1)[-1]
    return "-".join(name.lower().split())
)"_s;

QList<Entry> shownEntries(const QString& pictures, const QString& documents)
{
    return {
        {u"code"_s, retry, "Code Desk", 4 * day + hour, true},
        {u"text"_s, order, "Terminal", 5},
        {u"link"_s, u"https://fieldnotes.example/essays/tidal-power?utm_source=newsletter&utm_campaign=spring-2026"_s,
         "Web Reader", 2 * minute},
        {u"color"_s, u"#E2725B"_s, "Sketchbook", 6 * minute},
        {u"image"_s, pictures + u"/landscape.png"_s, "Sketchbook", 11 * minute},
        {u"file"_s, documents + u"/Harbour survey 2026.pdf"_s, "Files", 38 * minute},
        {u"text"_s, u"Thanks for the draft — two notes on the second page, then it can go out."_s, "Web Reader", hour},
        {u"code"_s, slug, "Code Desk", 3 * hour},
        {u"link"_s, u"https://tides.example/stations/cuxhaven"_s, "Web Reader", 26 * hour},
        {u"image"_s, pictures + u"/order.png"_s, "Web Reader", 2 * day},
    };
}

/// What stands below: it makes the counts and the scroll bar what a history of some weeks has.
QList<Entry> olderEntries(const QString& pictures, const QString& documents)
{
    struct Kind
    {
        QString type;
        int count;
        QString content;
    };
    const Kind kinds[] = {
        {u"text"_s, 59, u"Note %1: the ferry leaves at noon"_s},
        {u"link"_s, 22, u"https://fieldnotes.example/essays/%1"_s},
        {u"image"_s, 15, pictures + u"/landscape.png"_s},
        {u"color"_s, 8, u"#5A%1E2"_s},
        {u"code"_s, 10, u"let tide = %1;"_s},
        {u"file"_s, 4, documents + u"/Sheet %1.pdf"_s},
    };
    QList<Entry> entries;
    for (const Kind& kind : kinds) {
        for (int i = 0; i < kind.count; ++i) {
            const QString content =
                kind.content.contains(u"%1"_s) ? kind.content.arg(10 + i, 2, 10, QLatin1Char('0')) : kind.content;
            entries.append({kind.type, content, "Files", (3 + entries.size()) * day});
        }
    }
    return entries;
}

QJsonObject coded(const Entry& entry, double now)
{
    const auto* application = std::ranges::find_if(
        applications, [&](const Application& known) { return qstrcmp(known.name, entry.application) == 0; });
    return {{u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
            {u"type"_s, entry.type},
            {u"content"_s, entry.content},
            {u"sourceApp"_s, QLatin1StringView(application->name)},
            {u"bundleID"_s, QLatin1StringView(application->identifier)},
            {u"createdAt"_s, now - static_cast<double>(entry.age)},
            {u"isPinned"_s, entry.isPinned}};
}

bool write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write(content) == content.size();
}

bool writeApplications(const QString& home)
{
    const QString entries = home + u"/.local/share/applications"_s;
    const QString icons = home + u"/icons"_s;
    bool done = QDir().mkpath(entries) && QDir().mkpath(icons);
    for (const Application& application : applications) {
        const QString identifier = QLatin1StringView(application.identifier);
        const QString icon = icons + u'/' + identifier + u".svg"_s;
        const QByteArray drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24"><rect width="24" )"
                                   R"(height="24" fill=")" +
                                   QByteArray(application.color) + R"("/><path d=")" + application.sign +
                                   R"(" fill="none" stroke="#FFFFFF" stroke-width="1.75" stroke-linecap="round" )"
                                   R"(stroke-linejoin="round"/></svg>)";
        done = done && write(icon, drawing) &&
               write(entries + u'/' + identifier + u".desktop"_s,
                     "[Desktop Entry]\nType=Application\nName=" + QByteArray(application.name) +
                         "\nExec=true\nIcon=" + icon.toUtf8() + '\n');
    }
    return done;
}

/// The faces that the interface was drawn with, whatever this machine prefers.
bool writeFonts(const QString& home)
{
    const auto prefer = [](const char* generic, const char* face) {
        return QByteArray("<alias binding=\"strong\"><family>") + generic + "</family><prefer><family>" + face +
               "</family></prefer></alias>";
    };
    const QString folder = home + u"/.config/fontconfig"_s;
    return QDir().mkpath(folder) &&
           write(folder + u"/fonts.conf"_s, "<fontconfig>" + prefer("sans-serif", "Inter") +
                                                prefer("monospace", "JetBrains Mono") + "</fontconfig>");
}

bool draw(const QString& drawing, const QSize& size, const QString& picture)
{
    QImageReader reader(drawing);
    reader.setScaledSize(size);
    return reader.read().save(picture);
}

} // namespace

bool writeSampleHistory(const QString& dataFolder, const QString& home, const QString& drawings)
{
    const QString pictures = dataFolder + u"/images"_s;
    const QString documents = home + u"/Documents"_s;
    if (!QDir().mkpath(pictures) || !QDir().mkpath(documents) || !writeApplications(home) || !writeFonts(home) ||
        !write(documents + u"/Harbour survey 2026.pdf"_s, "%PDF-1.4\n") ||
        !draw(drawings + u"/landscape.svg"_s, {1920, 1080}, pictures + u"/landscape.png"_s) ||
        !draw(drawings + u"/order.svg"_s, orderPicture, pictures + u"/order.png"_s))
        return false;
    const auto now = static_cast<double>(QDateTime::currentSecsSinceEpoch() - referenceDate);
    QJsonArray history;
    for (const Entry& entry : shownEntries(pictures, documents) + olderEntries(pictures, documents))
        history.append(coded(entry, now));
    return write(dataFolder + u"/history.json"_s, QJsonDocument(history).toJson(QJsonDocument::Compact));
}

} // namespace Clipboard::Testing
