#include "Platform/CoreGraphics/ImageCodecs.h"

#include <bit>
#include <csetjmp>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

namespace platform {
namespace {
constexpr int mostScans = 500; // of a progressive file; honest ones have a dozen, and each costs as much as a whole picture
constexpr long mostMemory = 512l << 20; // bytes; 64 million pixels of a progressive file take 384 MiB

struct Failure {
    jpeg_error_mgr manager; // first, so that the library's pointer to it is a pointer to this
    std::jmp_buf back;
    char message[JMSG_LENGTH_MAX];
};

[[noreturn]] void fail(j_common_ptr decoder)
{
    auto* failure = reinterpret_cast<Failure*>(decoder->err);
    decoder->err->format_message(decoder, failure->message);
    std::longjmp(failure->back, 1);
}

// Only missing data is fatal; what the library calls a warning otherwise (a wrong marker length, say) shows as a picture.
void judgeWarning(j_common_ptr decoder, int level)
{
    const int code = decoder->err->msg_code;
    if (level < 0 && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER))
        fail(decoder);
}

enum class Step : unsigned char { readHeader, readRows };

void judgeProgress(j_common_ptr decoder)
{
    if (reinterpret_cast<j_decompress_ptr>(decoder)->input_scan_number <= mostScans)
        return;
    auto* failure = reinterpret_cast<Failure*>(decoder->err);
    std::snprintf(failure->message, sizeof failure->message, "picture has more than %d scans", mostScans);
    std::longjmp(failure->back, 1);
}

// How many times smaller it may be unpacked.
unsigned divisorFor(const jpeg_decompress_struct& decoder, const PixelSize& enough)
{
    unsigned divisor = 1;
    while (divisor < 8 && int(decoder.image_width / (2 * divisor)) >= enough.width
        && int(decoder.image_height / (2 * divisor)) >= enough.height)
        divisor *= 2;
    return divisor;
}

// Holds nothing with a destructor: the library leaves it by a long jump. The caller destroys the decoder.
bool run(jpeg_decompress_struct& decoder, Failure& failure, Step step, const std::optional<PixelSize>& enough, Bitmap* bitmap)
{
    if (setjmp(failure.back))
        return false;
    if (step == Step::readHeader) {
        jpeg_read_header(&decoder, TRUE);
        decoder.scale_num = 1;
        decoder.scale_denom = enough ? divisorFor(decoder, *enough) : 1;
        jpeg_calc_output_dimensions(&decoder);
        return true;
    }
    decoder.out_color_space = std::endian::native == std::endian::little ? JCS_EXT_BGRA : JCS_EXT_ARGB;
    jpeg_start_decompress(&decoder);
    while (decoder.output_scanline < decoder.output_height) {
        auto* row = reinterpret_cast<JSAMPROW>(bitmap->row(int(decoder.output_scanline)));
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    return true;
}
}

bool codecs::looksLikeJPEG(Bytes bytes)
{
    return bytes.count >= 3 && bytes.data[0] == 0xff && bytes.data[1] == 0xd8 && bytes.data[2] == 0xff;
}

std::shared_ptr<Bitmap> codecs::readJPEG(Bytes bytes, const std::optional<PixelSize>& enough, std::string& reason)
{
    jpeg_decompress_struct decoder {};
    Failure failure {};
    decoder.err = jpeg_std_error(&failure.manager);
    failure.manager.error_exit = fail;
    failure.manager.emit_message = judgeWarning;
    jpeg_create_decompress(&decoder);
    jpeg_progress_mgr progress {};
    progress.progress_monitor = judgeProgress;
    decoder.progress = &progress;
    decoder.mem->max_memory_to_use = mostMemory;
    jpeg_mem_src(&decoder, bytes.data, static_cast<unsigned long>(bytes.count));

    std::shared_ptr<Bitmap> bitmap;
    bool done = run(decoder, failure, Step::readHeader, enough, nullptr);
    if (done) {
        const double pixels = double(decoder.image_width) * decoder.image_height;
        if (pixels <= maximumPixels)
            bitmap = Bitmap::make(int(decoder.output_width), int(decoder.output_height), PixelFormat::xrgb);
        if (!bitmap)
            std::snprintf(failure.message, sizeof failure.message, "picture of %u by %u pixels is too large", decoder.image_width,
                decoder.image_height);
        done = bitmap && run(decoder, failure, Step::readRows, {}, bitmap.get());
    }
    jpeg_destroy_decompress(&decoder);
    if (done)
        return bitmap;
    reason = failure.message;
    return nullptr;
}

} // namespace platform
