#pragma once

#include "History/ClipType.h"

#include <QHashFunctions>
#include <QUuid>

#include <array>
#include <optional>
#include <variant>

namespace ClipboardCore {

/// The buttons of the preview pane, in their order.
enum class ItemAction { paste, copy, annotate, pin, delete_ };
inline constexpr std::array allItemActions{ItemAction::paste, ItemAction::copy, ItemAction::annotate, ItemAction::pin,
                                           ItemAction::delete_};

enum class FocusMove { up, down, left, right };

/// The three regions of the panel.
enum class FocusBand { header, list, preview };

/// The identity of one focusable element of the panel.
class FocusKey
{
public:
    struct Chip // a filter chip; no type stands for all types
    {
        std::optional<ClipType> type;
        bool operator==(const Chip&) const = default;
    };
    struct Row
    {
        QUuid id;
        bool operator==(const Row&) const = default;
    };
    struct Button
    {
        ItemAction action;
        bool operator==(const Button&) const = default;
    };
    struct Action // the n-th smart action chip, from 0
    {
        int index;
        bool operator==(const Action&) const = default;
    };

    [[nodiscard]] static FocusKey chip(std::optional<ClipType> type) { return FocusKey{Chip{type}}; }
    [[nodiscard]] static FocusKey row(const QUuid& id) { return FocusKey{Row{id}}; }
    [[nodiscard]] static FocusKey button(ItemAction action) { return FocusKey{Button{action}}; }
    [[nodiscard]] static FocusKey action(int index) { return FocusKey{Action{index}}; }

    [[nodiscard]] FocusBand band() const;
    /// The payload when the key is of that case, else null: key.as<FocusKey::Row>().
    template <typename Case>
    [[nodiscard]] const Case* as() const
    {
        return std::get_if<Case>(&m_value);
    }

    bool operator==(const FocusKey&) const = default;
    friend size_t qHash(const FocusKey& key, size_t seed) noexcept;

private:
    using Value = std::variant<Chip, Row, Button, Action>;
    explicit FocusKey(Value value)
        : m_value(value)
    {
    }
    Value m_value;
};

[[nodiscard]] size_t qHash(const FocusKey& key, size_t seed = 0) noexcept;

} // namespace ClipboardCore
