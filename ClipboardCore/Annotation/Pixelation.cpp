#include "Annotation/Pixelation.h"

#include "Annotation/DrawingContext.h"

#include <QRect>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

namespace ClipboardCore {
namespace {

constexpr size_t components = 4;

size_t bytes(int pixels)
{
    return static_cast<size_t>(pixels) * components;
}

/// Down the columns first: this loop has no step between neighbours, so that it runs over many bytes at once.
/// 32 bits hold the sum: a block is a hundredth of the longest side wide, and no picture in memory is large enough.
void addUpColumns(const Picture& picture, const QRect& block, std::vector<std::uint32_t>& sums)
{
    std::ranges::fill(sums, 0);
    for (int y = block.top(); y <= block.bottom(); ++y) {
        const auto row = picture.row(y).subspan(bytes(block.left()), bytes(block.width()));
        std::ranges::transform(row, sums, sums.begin(), std::plus<std::uint32_t>());
    }
}

void writeMeans(const std::vector<std::uint32_t>& sums, const QRect& block, std::span<std::uint8_t> pixel)
{
    std::array<std::uint32_t, components> totals{};
    for (size_t i = 0; i < bytes(block.width()); ++i)
        totals.at(i % components) += sums[i];
    const auto count = static_cast<std::uint32_t>(block.width() * block.height());
    std::ranges::transform(totals, pixel.begin(),
                           [count](std::uint32_t total) { return static_cast<std::uint8_t>(total / count); });
}

} // namespace

std::shared_ptr<const Picture> pixelated(const Picture& picture, int blockSize)
{
    const QRect area(QPoint(), picture.size());
    const int columns = (area.width() + blockSize - 1) / blockSize;
    const int rows = (area.height() + blockSize - 1) / blockSize;
    const auto context = picture.rgbaContext({columns, rows});
    if (!context)
        return nullptr;
    std::vector<std::uint32_t> sums(bytes(std::min(blockSize, area.width())));
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const QRect block = QRect(column * blockSize, row * blockSize, blockSize, blockSize).intersected(area);
            addUpColumns(picture, block, sums);
            writeMeans(sums, block, context->row(row).subspan(bytes(column), components));
        }
    }
    return context->takePicture();
}

} // namespace ClipboardCore
