#include "Platform/Images/ImageMemory.h"

#include <algorithm>

namespace platform {

namespace {

std::size_t bytesOf(const CGImage& picture) { return picture.pixels() ? picture.pixels()->byteCount() : 0; }

} // namespace

ImageMemory::ImageMemory(std::size_t mostPictureBytes, std::size_t mostFileBytes)
    : mostPictureBytes(mostPictureBytes)
    , mostFileBytes(mostFileBytes)
{
}

std::shared_ptr<const CGImage> ImageMemory::find(const std::string& address, const ImageTarget& target)
{
    const auto found = std::find_if(pictures.begin(), pictures.end(),
        [&](const Picture& entry) { return entry.target == target && entry.address == address; });
    return found == pictures.end() ? nullptr : use(found);
}

std::shared_ptr<const CGImage> ImageMemory::findAnySize(const std::string& address)
{
    auto best = pictures.end();
    double mostPixels = 0;
    for (auto entry = pictures.begin(); entry != pictures.end(); ++entry) {
        const auto picture = entry->address == address ? entry->shown.lock() : nullptr;
        if (picture && picture->width() * picture->height() > mostPixels) {
            mostPixels = picture->width() * picture->height();
            best = entry;
        }
    }
    return best == pictures.end() ? nullptr : best->shown.lock();
}

void ImageMemory::keep(const std::string& address, const ImageTarget& target, const std::shared_ptr<const CGImage>& picture)
{
    std::erase_if(pictures, [&](const Picture& entry) {
        const bool goes = entry.shown.expired() || (entry.target == target && entry.address == address);
        if (goes && entry.picture)
            pictureBytes_ -= bytesOf(*entry.picture);
        return goes;
    });
    pictures.push_front({ address, target, picture, picture });
    pictureBytes_ += bytesOf(*picture);
    trim();
}

std::shared_ptr<const Data> ImageMemory::findFile(const std::string& address)
{
    const auto found = std::find_if(files.begin(), files.end(), [&](const File& file) { return file.address == address; });
    if (found == files.end())
        return nullptr;
    files.splice(files.begin(), files, found);
    return found->bytes;
}

void ImageMemory::keepFile(const std::string& address, const std::shared_ptr<const Data>& bytes)
{
    forgetFile(address);
    if (bytes->size() > mostFileBytes / 2)
        return; // would drive out everything else
    files.push_front({ address, bytes });
    fileBytes_ += bytes->size();
    for (; fileBytes_ > mostFileBytes; files.pop_back())
        fileBytes_ -= files.back().bytes->size();
}

void ImageMemory::forgetFile(const std::string& address)
{
    std::erase_if(files, [&](const File& file) {
        const bool goes = file.address == address;
        if (goes)
            fileBytes_ -= file.bytes->size();
        return goes;
    });
}

// Makes it the one used last, and holds it again if there is room.
std::shared_ptr<const CGImage> ImageMemory::use(std::list<Picture>::iterator entry)
{
    auto picture = entry->shown.lock();
    if (!picture)
        return nullptr;
    pictures.splice(pictures.begin(), pictures, entry);
    if (!entry->picture) {
        entry->picture = picture;
        pictureBytes_ += bytesOf(*picture);
        trim();
    }
    return picture;
}

void ImageMemory::trim()
{
    for (auto entry = pictures.rbegin(); entry != pictures.rend() && pictureBytes_ > mostPictureBytes; ++entry) {
        if (entry->picture) {
            pictureBytes_ -= bytesOf(*entry->picture);
            entry->picture = nullptr;
        }
    }
}

} // namespace platform
