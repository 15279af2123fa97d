#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

#include <mutex>
#include <vector>
#include <xcb/xcb.h>

namespace Clipboard::Testing {

/// The atoms that a client has met, by their names; each is asked for once. Any thread may ask.
class AtomNames final
{
public:
    explicit AtomNames(xcb_connection_t* connection);

    /// Made when it does not exist yet.
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name);
    [[nodiscard]] QByteArray name(xcb_atom_t atom);
    /// Those of atoms as they stand in a property.
    [[nodiscard]] QByteArrayList namesIn(const QByteArray& atoms);

    [[nodiscard]] static QByteArray bytesOf(const std::vector<xcb_atom_t>& atoms);
    [[nodiscard]] static std::vector<xcb_atom_t> atomsIn(const QByteArray& bytes);

private:
    xcb_connection_t* m_connection;
    std::mutex m_mutex; // guards what follows
    QHash<QByteArray, xcb_atom_t> m_atoms;
};

} // namespace Clipboard::Testing
