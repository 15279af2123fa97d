#include "X11Workspace.h"

#include "WindowIcon.h"

#include <QLocale>
#include <QMimeDatabase>
#include <QStandardPaths>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// The side of an application's icon in the panel, at twice the density.
constexpr int iconSize = 64;
// Icons of windows kept at the same time; more programs than anybody copies from in a day.
constexpr qsizetype maxWindowIcons = 64;
// Application ids are names, not texts.
constexpr uint32_t maxIdWords = 256;

QStringList applicationFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

QList<QDateTime> changeTimes(const QStringList& folders)
{
    QList<QDateTime> times;
    for (const QString& folder : folders)
        times.append(QFileInfo(folder).lastModified());
    return times;
}

std::optional<QString> optionalText(const QString& text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace

X11Workspace::X11Workspace(std::shared_ptr<X11::X11Session> session)
    : m_session(std::move(session))
    , m_entries(std::make_shared<DesktopEntries>())
{
    connect(m_session.get(), &X11::X11Session::eventReceived, this, &X11Workspace::handle);
    readEntries();
    activeWindowChanged();
}

X11Workspace::~X11Workspace() = default;

void X11Workspace::handle(const xcb_generic_event_t* event)
{
    if ((event->response_type & 0x7fU) != XCB_PROPERTY_NOTIFY)
        return;
    const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    if (change->window == m_session->root() && change->atom == m_session->connection().atom("_NET_ACTIVE_WINDOW"))
        activeWindowChanged();
}

/// Looks at the new window while it is there: at the time of a copy it may be gone already.
void X11Workspace::activeWindowChanged()
{
    const xcb_window_t window = m_session->activeWindow();
    if (window == XCB_WINDOW_NONE) {
        if (m_frontmost)
            m_beforeNone = std::exchange(m_frontmost, std::nullopt);
        return;
    }
    if (m_session->isOurs(window)) {
        // A window manager may name none for a moment while it passes the focus on to us.
        if (!m_frontmost)
            m_frontmost = m_beforeNone;
        return;
    }
    m_frontmost = traitsOf(window);
    readEntriesAgainIfChanged();
    // Without the entries its id is not known; entriesRead() comes here again.
    if (m_entries->isEmpty() && m_reading.valid())
        return;
    if (const auto id = applicationOf(*m_frontmost).bundleID; id && !m_windowIcons.contains(*id))
        keepWindowIcon(window, *id);
}

DesktopEntries::Traits X11Workspace::traitsOf(xcb_window_t window) const
{
    auto& connection = m_session->connection();
    DesktopEntries::Traits traits;
    const auto windowClass = m_session->windowClass(window);
    traits.windowClass = QString::fromUtf8(windowClass.name);
    traits.windowInstance = QString::fromUtf8(windowClass.instance);
    const auto id =
        connection.property(window, connection.atom("_GTK_APPLICATION_ID"), connection.atom("UTF8_STRING"), maxIdWords);
    if (id && id->format == 8)
        traits.applicationID = QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(id.get())),
                                                 xcb_get_property_value_length(id.get()));
    const auto pid = connection.words(window, connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 1);
    if (!pid.empty())
        traits.executable = QFileInfo(u"/proc/%1/exe"_s.arg(pid.front())).symLinkTarget().section(u'/', -1);
    return traits;
}

void X11Workspace::keepWindowIcon(xcb_window_t window, const QString& bundleID)
{
    auto& connection = m_session->connection();
    const auto words = connection.words(window, connection.atom("_NET_WM_ICON"), XCB_ATOM_CARDINAL, X11::maxIconWords);
    const QImage image = X11::windowIcon(words, iconSize);
    if (m_windowIcons.size() >= maxWindowIcons)
        m_windowIcons.clear();
    m_windowIcons.insert(bundleID, image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image)));
}

std::optional<Workspace::Application> X11Workspace::frontmostApplication() const
{
    if (!m_frontmost)
        return {};
    return applicationOf(*m_frontmost);
}

Workspace::Application X11Workspace::applicationOf(const DesktopEntries::Traits& traits) const
{
    if (const auto* entry = entries().find(traits))
        return {optionalText(entry->name), entry->id};
    const QString& name = traits.windowClass.isEmpty() ? traits.windowInstance : traits.windowClass;
    return {optionalText(name), optionalText(name)};
}

QIcon X11Workspace::applicationIcon(const QString& bundleID) const
{
    const auto* entry = entries().find(bundleID);
    const QString name = entry == nullptr ? QString() : entry->icon;
    QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    return icon.isNull() ? m_windowIcons.value(bundleID) : icon;
}

QIcon X11Workspace::fileIcon(const QString& path) const
{
    // Without icons for types there is no need to learn the types.
    QIcon plain = QIcon::fromTheme(u"text-x-generic"_s);
    if (plain.isNull())
        return {};
    if (path.endsWith(u'/')) {
        QIcon folder = QIcon::fromTheme(u"folder"_s);
        return folder.isNull() ? QIcon::fromTheme(u"inode-directory"_s) : folder;
    }
    const auto types = QMimeDatabase().mimeTypesForFileName(path.section(u'/', -1));
    if (types.isEmpty())
        return plain;
    QIcon icon = QIcon::fromTheme(types.first().iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(types.first().genericIconName());
    return icon.isNull() ? plain : icon;
}

/// A few hundred small files, perhaps from a cold disk: read on another thread. The future waits for it when this
/// object goes.
void X11Workspace::readEntries()
{
    const QStringList folders = applicationFolders();
    m_foldersChanged = changeTimes(folders);
    m_reading = std::async(std::launch::async, [this, folders, language = QLocale().name()]() -> EntriesPointer {
        auto entries = std::make_shared<DesktopEntries>(folders, language);
        QMetaObject::invokeMethod(this, &X11Workspace::entriesRead, Qt::QueuedConnection);
        return entries;
    });
}

void X11Workspace::entriesRead()
{
    if (m_reading.valid())
        m_entries = m_reading.get();
    activeWindowChanged();
}

/// Programs are installed rarely, and the next one to come to the front may be new.
void X11Workspace::readEntriesAgainIfChanged()
{
    if (!m_reading.valid() && changeTimes(applicationFolders()) != m_foldersChanged)
        readEntries();
}

const DesktopEntries& X11Workspace::entries() const
{
    // Only a copy within milliseconds of the start has to wait; later ones take what is there.
    if (m_entries->isEmpty() && m_reading.valid())
        m_entries = m_reading.get();
    return *m_entries;
}

} // namespace Clipboard
