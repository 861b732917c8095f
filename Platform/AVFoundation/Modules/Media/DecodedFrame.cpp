#include "Platform/AVFoundation/Modules/Media/DecodedFrame.h"

#include <gst/video/video.h>

namespace platform {

namespace {

class DecodedFrame final : public VideoFrame {
public:
    // Keeps the buffer only: the sink changes the sample for its next frame, and complains while another holds it.
    explicit DecodedFrame(GstSample* sample)
    {
        GstVideoInfo info;
        GstCaps* caps = gst_sample_get_caps(sample);
        GstBuffer* buffer = gst_sample_get_buffer(sample);
        isMapped = caps && buffer && gst_video_info_from_caps(&info, caps)
            && GST_VIDEO_INFO_FORMAT(&info) == GST_VIDEO_FORMAT_I420 && gst_video_frame_map(&mapped, &info, buffer, GST_MAP_READ);
        if (!isMapped)
            return;
        const auto plane = [&](int i) { return static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&mapped, i)); };
        planes_ = { plane(0), plane(1), plane(2), GST_VIDEO_FRAME_PLANE_STRIDE(&mapped, 0),
            GST_VIDEO_FRAME_PLANE_STRIDE(&mapped, 1), GST_VIDEO_FRAME_PLANE_STRIDE(&mapped, 2), info.width, info.height,
            info.colorimetry.matrix != GST_VIDEO_COLOR_MATRIX_BT601, info.colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255 };
        if (info.par_n > 0 && info.par_d > 0)
            pixelAspect_ = double(info.par_n) / info.par_d;
        const auto time = gst_segment_to_stream_time(gst_sample_get_segment(sample), GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
        if (GST_CLOCK_TIME_IS_VALID(time))
            time_ = double(time) / GST_SECOND;
    }
    ~DecodedFrame() override
    {
        if (isMapped)
            gst_video_frame_unmap(&mapped);
    }

    bool isMapped = false;

private:
    GstVideoFrame mapped {}; // holds its buffer
};

} // namespace

std::shared_ptr<const VideoFrame> makeDecodedFrame(void* sample)
{
    auto* const taken = static_cast<GstSample*>(sample);
    auto frame = std::make_shared<DecodedFrame>(taken);
    gst_sample_unref(taken);
    return frame->isMapped ? frame : nullptr;
}

} // namespace platform
