#include "ScreenProbe.h"

#include "Bench.h"

#include <QFile>
#include <QtEndian>

#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

constexpr auto interval =
    std::chrono::microseconds(100);                    // between two looks; oftener, it would take the machine's time
constexpr auto quiet = std::chrono::milliseconds(250); // longer than anything that moves stands still
constexpr int lineDistance = 7;                        // pixels; no line of text falls between two of them
constexpr std::size_t pixelBytes = 4;

/// The fields of a window dump's header that matter here, by their place; each has four bytes, the highest first
/// (X11/XWDFile.h).
enum Field : std::size_t { headerBytes = 0, bytesPerLine = 12, colors = 19 };
constexpr std::size_t colorBytes = 12;

} // namespace

ScreenProbe::ScreenProbe(const QString& folder, QRect area)
{
    const int file = open(QFile::encodeName(folder + u"/Xvfb_screen0"_s).constData(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0)
        giveUp(u"The server does not show its memory."_s);
    m_fileBytes = static_cast<std::size_t>(status.st_size);
    m_file = mmap(nullptr, m_fileBytes, PROT_READ, MAP_SHARED, file, 0);
    close(file);
    if (m_file == MAP_FAILED)
        giveUp(u"The server's memory cannot be read."_s);
    const auto* bytes = static_cast<const char*>(m_file);
    const auto field = [bytes](Field number) -> std::size_t {
        return qFromBigEndian<quint32>(bytes + number * sizeof(quint32));
    };
    const char* pixels = bytes + field(headerBytes) + field(colors) * colorBytes;
    const auto length = static_cast<std::size_t>(area.width()) * pixelBytes;
    m_lines.reserve(static_cast<std::size_t>(area.height()) / lineDistance + 1);
    for (int y = area.top(); y <= area.bottom(); y += lineDistance) {
        const std::size_t offset = static_cast<std::size_t>(y) * field(bytesPerLine);
        m_lines.push_back(
            {pixels + offset + static_cast<std::size_t>(area.left()) * pixelBytes, std::vector<char>(length)});
    }
}

ScreenProbe::~ScreenProbe()
{
    stop();
    munmap(m_file, m_fileBytes);
}

void ScreenProbe::start()
{
    static_cast<void>(look());
    m_sight.reset();
    m_lastChange = Clock::now();
    m_stop = false;
    m_thread = std::thread([this] { watch(); });
}

std::optional<ScreenProbe::Sight> ScreenProbe::finish()
{
    while (Clock::now() - m_lastChange.load() < quiet)
        std::this_thread::sleep_for(quiet / 10);
    stop();
    return m_sight;
}

void ScreenProbe::stop()
{
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
}

void ScreenProbe::watch()
{
    while (!m_stop) {
        if (look()) {
            const Clock::time_point now = Clock::now();
            m_sight = Sight{m_sight ? m_sight->first : now, now};
            m_lastChange = now;
        }
        std::this_thread::sleep_for(interval);
    }
}

/// Whether a line looks different from the last time.
bool ScreenProbe::look()
{
    bool changed = false;
    for (Line& line : m_lines) {
        if (std::memcmp(line.seen.data(), line.pixels, line.seen.size()) != 0) {
            std::memcpy(line.seen.data(), line.pixels, line.seen.size());
            changed = true;
        }
    }
    return changed;
}

} // namespace Clipboard::Benchmarks
