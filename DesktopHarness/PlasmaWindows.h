#pragma once

#include "Desktop.h"
#include "WaylandClient.h"

#include <map>

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace Clipboard::Testing {

/// The windows that the compositor of Plasma manages, those of X11 among them.
class PlasmaWindows
{
public:
    struct Entry
    {
        Desktop::Window window;
        QString application;
        bool isActive = false;
    };

    explicit PlasmaWindows(VirtualSession& session);
    ~PlasmaWindows();
    Q_DISABLE_COPY_MOVE(PlasmaWindows)

    /// As they are now.
    [[nodiscard]] QList<Entry> all();

private:
    void add(org_kde_plasma_window* handle);

    WaylandClient m_client;
    org_kde_plasma_window_management* m_manager = nullptr;
    std::map<org_kde_plasma_window*, Entry> m_windows;
    quint32 m_lastID = 0;
};

} // namespace Clipboard::Testing
