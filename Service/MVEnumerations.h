#pragma once

#include "Service/MVPlatform.h"

namespace mv {

enum class MVBroadcastStatus { live, upcoming, completed };

// The role of the viewer who is signed in to the service, if any.
enum class MVCurrentUserType { user, guest, anonymous };

enum class MVBroadCastListSortOrder { ASC, DESC };

enum class MVProductsFeaturedUpdateType { featured, unfeatured };

// How the host's video fills its view.
enum class MVVideoStreamRenderMode { scaleAspectFill, scaleAspectFit };

// Carried by the connection event; the kit never looks at it.
enum class MVConnectionStatus { connected, connecting, disconnected };

} // namespace mv
