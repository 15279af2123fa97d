#include "AtomNames.h"

#include "Xcb.h"

#include <algorithm>

namespace Clipboard::Testing {

AtomNames::AtomNames(xcb_connection_t* connection)
    : m_connection(connection)
{
}

xcb_atom_t AtomNames::atom(const QByteArray& name)
{
    const std::scoped_lock lock(m_mutex);
    xcb_atom_t& known = m_atoms[name];
    if (known == XCB_ATOM_NONE)
        known = Xcb::atom(m_connection, name);
    return known;
}

QByteArray AtomNames::name(xcb_atom_t atom)
{
    const std::scoped_lock lock(m_mutex);
    QByteArray name = m_atoms.key(atom);
    if (name.isEmpty()) {
        name = Xcb::atomName(m_connection, atom);
        m_atoms.insert(name, atom);
    }
    return name;
}

QByteArrayList AtomNames::namesIn(const QByteArray& atoms)
{
    QByteArrayList names;
    for (const xcb_atom_t atom : atomsIn(atoms))
        names.append(name(atom));
    return names;
}

QByteArray AtomNames::bytesOf(const std::vector<xcb_atom_t>& atoms)
{
    return {reinterpret_cast<const char*>(atoms.data()), static_cast<qsizetype>(atoms.size() * sizeof(xcb_atom_t))};
}

std::vector<xcb_atom_t> AtomNames::atomsIn(const QByteArray& bytes)
{
    std::vector<xcb_atom_t> atoms(static_cast<size_t>(bytes.size()) / sizeof(xcb_atom_t));
    std::copy_n(bytes.constData(), atoms.size() * sizeof(xcb_atom_t), reinterpret_cast<char*>(atoms.data()));
    return atoms;
}

} // namespace Clipboard::Testing
