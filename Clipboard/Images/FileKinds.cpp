#include "FileKinds.h"

#include "History/CopiedFile.h"
#include "OffMainThread.h"

namespace Clipboard {

namespace {

// A history's worth.
constexpr qsizetype maxKnown = 500;

FileKinds::Kind lookAt(const QString& path)
{
    const auto status = ClipboardCore::CopiedFile::status(path.toUtf8());
    if (!status)
        return FileKinds::Kind::gone;
    return status->isFolder ? FileKinds::Kind::folder : FileKinds::Kind::file;
}

} // namespace

FileKinds::FileKinds(QObject* parent)
    : QObject(parent)
    , m_known(maxKnown)
{
    m_pool.setMaxThreadCount(2); // one that waits for a server does not hold up the other
}

FileKinds::~FileKinds()
{
    m_pool.clear();
    m_pool.waitForDone();
}

FileKinds::Kind FileKinds::kind(const QString& path)
{
    const Known* known = m_known.object(path);
    if ((known == nullptr || known->round != m_round) && !m_looking.contains(path))
        look(path);
    return known != nullptr ? known->kind : Kind::unknown;
}

void FileKinds::look(const QString& path)
{
    m_looking.insert(path);
    runOffMainThread(
        m_pool, this, [path] { return lookAt(path); },
        [this, path, round = m_round](Kind kind) {
            m_looking.remove(path);
            const Known* known = m_known.object(path);
            const bool isNews = known == nullptr || known->kind != kind;
            m_known.insert(path, std::make_unique<Known>(Known{kind, round}).release());
            if (isNews)
                emit found(path);
        });
}

} // namespace Clipboard
