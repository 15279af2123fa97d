#pragma once

#include "SelectionContent.h"
#include "SelectionForms.h"

#include <deque>
#include <optional>
#include <vector>

namespace Clipboard {

/// What is read of a copy, form by form, whatever the way by which the forms come: the first of file list, picture and
/// text that holds something, then a few small forms of it that are kept for the day when its owner ends. Nothing of
/// what is marked as secret.
class ContentReading final
{
public:
    struct Options
    {
        /// Targets whose mere presence means that nothing else may be read.
        QSet<QString> secretTargets;
        QByteArray hostName;
    };
    /// One form as it was handed over.
    struct Form
    {
        QByteArray type; // the encoding of a text; mostly the target itself
        int format = 8;  // bits of a unit
        QByteArray bytes;
    };
    enum class Found { nothing, content, companion };

    explicit ContentReading(const Options& options);

    /// Begins with the targets that an owner offers.
    void begin(const std::vector<QByteArray>& offered);
    void reset();

    /// The target to ask for next; nothing when all is read.
    [[nodiscard]] std::optional<QByteArray> wanted() const;
    /// How large the answer may be.
    [[nodiscard]] qint64 maxBytes() const;
    /// Takes the answer. With the first that is of use the content is complete; what follows are its companions.
    Found take(const Form& form);
    /// There is no answer, or one that is of no use.
    void giveUp();
    /// Its owner is mute about what was asked for: a second form of the same kind is no better, another kind may be.
    void giveUpKind();
    /// Asks for nothing more.
    void finish();

    [[nodiscard]] const SelectionContent& content() const { return m_content; }
    /// Everything that was read.
    [[nodiscard]] const SelectionForms& keptForms() const { return m_kept; }

private:
    enum class Kind { Files, PNG, TIFF, Text, Other };

    struct Step
    {
        Kind kind = Kind::Other;
        QByteArray target;
    };

    void planContent(const std::vector<QByteArray>& offered);
    void planCompanions(Kind kind);
    /// False when the bytes are of no use.
    bool takeContent(const Step& step, const Form& form);

    Options m_options;
    std::deque<Step> m_steps; // those still to do; the first one is under way
    bool m_isFound = false;
    SelectionContent m_content;
    SelectionForms m_kept;
};

} // namespace Clipboard
