#include "Platform/AVFoundation/Modules/Media/MediaWorker.h"

#include <gst/gst.h>

#include <thread>
#include <utility>

namespace platform {

struct MediaWorker::Impl {
    GMainContext* const context = g_main_context_new();

    void run()
    {
        g_main_context_push_thread_default(context);
        gst_init(nullptr, nullptr); // takes 20 ms, so not on the caller's thread
        for (;;)
            g_main_context_iteration(context, TRUE);
    }
};

MediaWorker::MediaWorker()
    : impl(new Impl)
{
    std::thread([this] { impl->run(); }).detach();
}

MediaWorker& MediaWorker::shared()
{
    static MediaWorker& worker = *new MediaWorker;
    return worker;
}

void MediaWorker::post(std::function<void()> task)
{
    using Task = std::function<void()>;
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](void* posted) -> gboolean {
            (*static_cast<Task*>(posted))();
            return G_SOURCE_REMOVE;
        },
        new Task(std::move(task)), [](void* posted) { delete static_cast<Task*>(posted); });
    g_source_attach(source, impl->context);
    g_source_unref(source); // which the context holds
}

} // namespace platform
