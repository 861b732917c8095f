#pragma once

#include "Platform/Foundation/NSTimer.h"

#include <fstream>
#include <memory>
#include <string>

namespace showroom {

class CannedService;

// What happens in a shop that somebody uses, in JSON, a line each as it happens: the service's calls ("call"), and how loud the
// host was ("sound", the loudest sample, 0 to 1, of a second in which anything sounded). Main thread.
class ShopLog final {
public:
    // Begins the file anew; calls made so far come first. The service outlives the log.
    ShopLog(const std::string& path, CannedService& service);
    ~ShopLog();
    ShopLog(const ShopLog&) = delete;
    ShopLog& operator=(const ShopLog&) = delete;

    bool isWritable() const { return bool(file); }

private:
    void writeCall(const std::string& call);
    void listen();

    CannedService& service;
    std::ofstream file;
    std::shared_ptr<platform::NSTimer> timer;
};

} // namespace showroom
