#include "Platform/AVFoundation/VideoKernelsAVX2.h"

#ifdef MIVORA_VIDEO_KERNELS_AVX2

#include <algorithm>
#include <immintrin.h>

#define WITH_AVX2 __attribute__((target("avx2")))

namespace platform::videoKernels::avx2 {

namespace {

WITH_AVX2 inline __m256i load(const void* from) { return _mm256_loadu_si256(static_cast<const __m256i*>(from)); }
WITH_AVX2 inline void store(void* to, __m256i value) { _mm256_storeu_si256(static_cast<__m256i*>(to), value); }

WITH_AVX2 inline __m256i mixed(const Sample* upper, const Sample* lower, __m256i share)
{
    const __m256i above = load(upper);
    return _mm256_add_epi16(above, _mm256_mulhrs_epi16(_mm256_sub_epi16(load(lower), above), share));
}

} // namespace

bool isSupported()
{
    static const bool supported = __builtin_cpu_supports("avx2");
    return supported;
}

WITH_AVX2 void stretch(Sample* to, const std::uint8_t* row, const Block* blocks, int blockCount)
{
    static_assert(blockSize == 16);
    for (int i = 0; i < blockCount; ++i) {
        const auto* bytes = reinterpret_cast<const __m128i*>(row + blocks[i].first);
        const __m256i pairs = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(_mm_loadu_si128(bytes)), load(blocks[i].pairs));
        const __m256i below0 = _mm256_maddubs_epi16(pairs, load(blocks[i].weights));
        store(to + i * blockSize, _mm256_sub_epi16(_mm256_setzero_si256(), below0));
    }
}

WITH_AVX2 void color(std::uint32_t* to, const Neighbours& light, const Neighbours& tint, int tintStride, int count)
{
    const __m256i lightShare = _mm256_set1_epi16(Sample(light.share)), tintShare = _mm256_set1_epi16(Sample(tint.share));
    const __m256i opaque = _mm256_set1_epi16(255);
    // The processor itself looks ahead to the end of a page; long rows of one picture go on in the next.
    constexpr int page = 1024; // pixels
    const bool goesOn = count > page / 2;
    // The last sixteen may begin within those before.
    for (int next = 0; next < count; next += leastCount) {
        const int i = std::min(next, count - leastCount);
        const __m256i both = mixed(light.upper + i, light.lower + i, lightShare);
        const Sample *upper = tint.upper + i, *lower = tint.lower + i;
        const __m256i red = _mm256_srai_epi16(_mm256_add_epi16(both, mixed(upper, lower, tintShare)), 5);
        const __m256i green
            = _mm256_srai_epi16(_mm256_add_epi16(both, mixed(upper + tintStride, lower + tintStride, tintShare)), 5);
        const __m256i blue
            = _mm256_srai_epi16(_mm256_add_epi16(both, mixed(upper + 2 * tintStride, lower + 2 * tintStride, tintShare)), 5);
        // In each half: eight blue bytes and eight red ones, eight green ones and eight of alpha; then pair by pair.
        const __m256i blueRed = _mm256_packus_epi16(blue, red), greenAlpha = _mm256_packus_epi16(green, opaque);
        const __m256i blueGreen = _mm256_unpacklo_epi8(blueRed, greenAlpha), redAlpha = _mm256_unpackhi_epi8(blueRed, greenAlpha);
        const __m256i first = _mm256_unpacklo_epi16(blueGreen, redAlpha), second = _mm256_unpackhi_epi16(blueGreen, redAlpha);
        if (goesOn)
            __builtin_prefetch(to + i + page, 1);
        store(to + i, _mm256_permute2x128_si256(first, second, 0x20));
        store(to + i + 8, _mm256_permute2x128_si256(first, second, 0x31));
    }
}

} // namespace platform::videoKernels::avx2

#endif
