#include "Platform/CoreGraphics/RowWeights.h"

#include "Platform/CoreGraphics/ProcessorClones.h"

namespace platform::pixels {

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace loops {

MIVORA_CLONES void weighRow(std::uint16_t* sums, const std::uint8_t* bytes, int count, std::uint16_t weight)
{
    for (int i = 0; i < count; ++i)
        sums[i] = std::uint16_t(sums[i] + bytes[i] * weight);
}

MIVORA_CLONES void roundRow(std::uint8_t* bytes, const std::uint16_t* sums, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = std::uint8_t((sums[i] + 128u) >> 8);
}

} // namespace loops

void weighRow(std::uint16_t* sums, const std::uint8_t* bytes, int count, std::uint16_t weight)
{
    loops::weighRow(sums, bytes, count, weight);
}
void roundRow(std::uint8_t* bytes, const std::uint16_t* sums, int count) { loops::roundRow(bytes, sums, count); }

} // namespace platform::pixels
