#pragma once

#include "Platform/Images/ImageTarget.h"

#include <list>
#include <map>
#include <memory>
#include <string>

namespace platform {

// What was loaded lately: pictures ready to be shown, and the files that they came from, so that another size of them needs no
// second load. Both have a bound in bytes; what was used longest ago goes first. A picture that is being shown somewhere is found
// beyond the bound too. Main thread.
class ImageMemory {
public:
    ImageMemory(std::size_t mostPictureBytes, std::size_t mostFileBytes);

    std::shared_ptr<const CGImage> find(const std::string& address, const ImageTarget& target);
    // The largest one of that address, to stand in for another size; null for none.
    std::shared_ptr<const CGImage> findAnySize(const std::string& address);
    void keep(const std::string& address, const ImageTarget& target, const std::shared_ptr<const CGImage>& picture);

    std::shared_ptr<const Data> findFile(const std::string& address);
    void keepFile(const std::string& address, const std::shared_ptr<const Data>& bytes);
    void forgetFile(const std::string& address);

    std::size_t pictureBytes() const { return pictureBytes_; } // kept by itself
    std::size_t fileBytes() const { return fileBytes_; }

private:
    struct Picture {
        std::string address;
        ImageTarget target;
        std::shared_ptr<const CGImage> picture; // null when only somebody else holds it
        std::weak_ptr<const CGImage> shown;
    };
    struct File {
        std::string address;
        std::shared_ptr<const Data> bytes;
    };

    std::shared_ptr<const CGImage> use(std::list<Picture>::iterator entry);
    void trim();

    const std::size_t mostPictureBytes;
    const std::size_t mostFileBytes;
    std::size_t pictureBytes_ = 0;
    std::size_t fileBytes_ = 0;
    std::list<Picture> pictures; // used last first; a few dozen
    std::list<File> files;
};

} // namespace platform
