#include "Platform/CoreGraphics/ImageCodecs.h"

#include <bit>
#include <csetjmp>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

namespace platform {
namespace {
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

// Holds nothing with a destructor: the library leaves it by a long jump. The caller destroys the decoder.
bool run(jpeg_decompress_struct& decoder, Failure& failure, Step step, Bitmap* bitmap)
{
    if (setjmp(failure.back))
        return false;
    if (step == Step::readHeader) {
        jpeg_read_header(&decoder, TRUE);
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

std::shared_ptr<Bitmap> codecs::readJPEG(Bytes bytes, std::string& reason)
{
    jpeg_decompress_struct decoder {};
    Failure failure {};
    decoder.err = jpeg_std_error(&failure.manager);
    failure.manager.error_exit = fail;
    failure.manager.emit_message = judgeWarning;
    jpeg_create_decompress(&decoder);
    jpeg_mem_src(&decoder, bytes.data, static_cast<unsigned long>(bytes.count));

    std::shared_ptr<Bitmap> bitmap;
    bool done = run(decoder, failure, Step::readHeader, nullptr);
    if (done) {
        const double pixels = double(decoder.image_width) * decoder.image_height;
        if (pixels <= maximumPixels)
            bitmap = Bitmap::make(int(decoder.image_width), int(decoder.image_height), PixelFormat::xrgb);
        if (!bitmap)
            std::snprintf(failure.message, sizeof failure.message, "picture of %u by %u pixels is too large", decoder.image_width,
                decoder.image_height);
        done = bitmap && run(decoder, failure, Step::readRows, bitmap.get());
    }
    jpeg_destroy_decompress(&decoder);
    if (done)
        return bitmap;
    reason = failure.message;
    return nullptr;
}

} // namespace platform
