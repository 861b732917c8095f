#include "Platform/CoreGraphics/SvgModule.h"
#include "Platform/Foundation/ModuleExport.h"

#include <cairo.h>
#include <cmath>
#include <librsvg/rsvg.h>

namespace platform {
namespace {
struct Unref {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(GError* error) const { g_error_free(error); }
};
template <typename T> using Handle = std::unique_ptr<T, Unref>;

class RsvgDrawing final : public SvgDrawing {
public:
    explicit RsvgDrawing(Handle<RsvgHandle> parsed)
        : handle(std::move(parsed))
    {
        rsvg_handle_set_dpi(handle.get(), 96);
        findSize();
    }

    double width() const override { return size[0]; }
    double height() const override { return size[1]; }

    bool render(std::uint8_t* pixels, int pixelWidth, int pixelHeight, int stride) override
    {
        const Handle<cairo_surface_t> surface(
            cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_ARGB32, pixelWidth, pixelHeight, stride));
        const Handle<cairo_t> context(cairo_create(surface.get()));
        // The library keeps the proportions inside the viewport it is given; the stretching is ours.
        cairo_scale(context.get(), pixelWidth / size[0], pixelHeight / size[1]);
        const RsvgRectangle viewport { 0, 0, size[0], size[1] };
        GError* failure = nullptr;
        const bool drawn = rsvg_handle_render_document(handle.get(), context.get(), &viewport, &failure);
        const Handle<GError> error(failure);
        cairo_surface_flush(surface.get());
        return drawn && cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
    }

private:
    void findSize()
    {
        if (rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &size[0], &size[1]) && size[0] > 0 && size[1] > 0)
            return;
        gboolean hasWidth = FALSE, hasHeight = FALSE, hasViewBox = FALSE;
        RsvgLength lengths[2];
        RsvgRectangle viewBox {};
        rsvg_handle_get_intrinsic_dimensions(
            handle.get(), &hasWidth, &lengths[0], &hasHeight, &lengths[1], &hasViewBox, &viewBox);
        const bool usable = hasViewBox && viewBox.width > 0 && viewBox.height > 0;
        size[0] = usable ? viewBox.width : 100; // CSS would say 300 by 150; a square suits icons better
        size[1] = usable ? viewBox.height : 100;
    }

    Handle<RsvgHandle> handle;
    double size[2] = { 0, 0 };
};

class Rsvg final : public SvgModule {
public:
    std::unique_ptr<SvgDrawing> parse(const std::uint8_t* bytes, std::size_t count, std::string& reason) override
    {
        GError* failure = nullptr;
        // Without a base address the drawing can refer to no other file.
        Handle<RsvgHandle> handle(rsvg_handle_new_from_data(bytes, count, &failure));
        const Handle<GError> error(failure);
        if (!handle) {
            reason = error ? error->message : "cannot be parsed";
            return nullptr;
        }
        return std::make_unique<RsvgDrawing>(std::move(handle));
    }
};
}
} // namespace platform

MIVORA_EXPORT_MODULE(platform::SvgModule, platform::Rsvg);
