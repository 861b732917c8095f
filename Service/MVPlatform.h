#pragma once

// The kit lives in namespace mv and reads the platform's names as its own.
namespace platform {
}
namespace mv {
using namespace platform;
}
