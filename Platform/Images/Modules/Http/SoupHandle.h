#pragma once

#include <libsoup/soup.h>

#include <memory>

namespace platform::http {

// Lets go of what the library handed out.
struct Unref {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GSource* source) const
    {
        g_source_destroy(source);
        g_source_unref(source);
    }
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename T> using Handle = std::unique_ptr<T, Unref>;

} // namespace platform::http
