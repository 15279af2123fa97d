#include "ContentReading.h"

#include "SelectionLimits.h"
#include "SelectionText.h"
#include "UriList.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

namespace {

constexpr const char* uriListTarget = "text/uri-list";
constexpr const char* copiedFilesTarget = "x-special/gnome-copied-files";
constexpr const char* htmlTarget = "text/html";

} // namespace

ContentReading::ContentReading(const Options& options)
    : m_options(options)
{
}

void ContentReading::begin(const std::vector<QByteArray>& offered)
{
    reset();
    for (const QByteArray& name : offered) {
        if (!name.isEmpty())
            m_content.types.insert(QString::fromLatin1(name));
    }
    if (!m_content.types.intersects(m_options.secretTargets))
        planContent(offered);
}

void ContentReading::reset()
{
    m_steps.clear();
    m_isFound = false;
    m_content = {};
    m_kept.clear();
}

std::optional<QByteArray> ContentReading::wanted() const
{
    return m_steps.empty() ? std::nullopt : std::optional(m_steps.front().target);
}

qint64 ContentReading::maxBytes() const
{
    return m_isFound ? maxCompanionBytes : maxSelectionBytes;
}

ContentReading::Found ContentReading::take(const Form& form)
{
    if (m_steps.empty())
        return Found::nothing;
    const Step step = m_steps.front();
    m_steps.pop_front();
    if (!takeContent(step, form))
        return Found::nothing;
    if (std::exchange(m_isFound, true))
        return Found::companion;
    planCompanions(step.kind);
    return Found::content;
}

void ContentReading::giveUp()
{
    if (!m_steps.empty())
        m_steps.pop_front();
}

void ContentReading::giveUpKind()
{
    if (m_steps.empty())
        return;
    const Kind mute = m_steps.front().kind;
    std::erase_if(m_steps, [mute](const Step& step) { return step.kind == mute; });
}

void ContentReading::finish()
{
    m_steps.clear();
}

void ContentReading::planContent(const std::vector<QByteArray>& offered)
{
    const auto add = [&](Kind kind, const QByteArray& target) {
        if (std::ranges::find(offered, target) != offered.end())
            m_steps.push_back({kind, target});
    };
    add(Kind::Files, uriListTarget);
    add(Kind::Files, copiedFilesTarget);
    add(Kind::PNG, "image/png");
    add(Kind::TIFF, "image/tiff");
    for (const char* target : SelectionText::targets)
        add(Kind::Text, target);
}

/// Content has been found: the steps left are replaced by what is worth keeping beside it.
void ContentReading::planCompanions(Kind kind)
{
    const auto left = std::exchange(m_steps, {});
    const auto addFirst = [&](Kind wanted) {
        const auto found = std::ranges::find(left, wanted, &Step::kind);
        if (found != left.end())
            m_steps.push_back(*found);
    };
    if (kind == Kind::Files)
        addFirst(Kind::Files);
    // A table is a picture and a text, too: where it is pasted decides which is wanted.
    if (kind != Kind::Text)
        addFirst(Kind::Text);
    if (kind != Kind::Files && m_content.types.contains(QLatin1String(htmlTarget)))
        m_steps.push_back({Kind::Other, htmlTarget});
}

bool ContentReading::takeContent(const Step& step, const Form& form)
{
    if (form.bytes.isEmpty() || form.format != 8)
        return false;
    if (step.kind != Kind::Text) {
        m_kept.push_back(verbatimForm(step.target, form.type, form.format, form.bytes));
        if (m_isFound)
            return true;
    }
    switch (step.kind) {
    case Kind::Files:
        m_content.fileURLs = UriList::localFiles(form.bytes, m_options.hostName);
        return !m_content.fileURLs.isEmpty();
    case Kind::PNG:
        m_content.png = form.bytes;
        return true;
    case Kind::TIFF:
        m_content.tiff = form.bytes;
        return true;
    case Kind::Text: {
        auto text = SelectionText::decode(form.type, form.bytes);
        if (!text || text->isEmpty() || text->size() > maxSelectionBytes) // a byte may become three
            return false;
        for (auto& kept : formsOfText(*text))
            m_kept.push_back(std::move(kept));
        if (!m_isFound)
            m_content.text = std::move(text);
        return true;
    }
    case Kind::Other:
        break;
    }
    return false;
}

} // namespace Clipboard
